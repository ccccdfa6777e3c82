// board/CLogParser.cpp
// The boards' log format: text cut into records, a record read into a message.

#include "board/CLogParser.h"

#include "platform/text/DateTime.h"
#include "platform/text/Number.h"

#include <QStringMatcher>

using namespace Qt::StringLiterals;

namespace
{
constexpr QStringView Separator = u"\r\n===--+--+--+--+--+--+--+--+--+--+--+--+--===\r\n";
constexpr qsizetype LineEndSize = 2;

/// Lengths of the labels that header lines begin with.
constexpr qsizetype NumberLabel = 7;
constexpr qsizetype SubjectLabel = 6;
constexpr qsizetype HomePageLabel = 10;
constexpr qsizetype MailLabel = 7;
constexpr qsizetype NameLabel = 7;
constexpr qsizetype DateLabel = 7;
constexpr qsizetype ReplyLabel = 8;

/// Longest body that serves as the subject of a two-sided board's message whole, and what is kept of a longer one.
constexpr qsizetype MaxSubject = 50;
constexpr qsizetype CutSubject = 47;

/// Takes the header lines off the front of a record. A line without its line end is missing, as is all after it.
class CLineReader
{
public:
    explicit CLineReader(QStringView Record)
        : m_rest(Record)
    {}

    /// The next line behind its label, empty when it is shorter than that.
    QStringView Line(qsizetype Label)
    {
        qsizetype end = m_rest.indexOf(u'\r');
        while (end >= 0 && m_rest.sliced(end + 1, qMin<qsizetype>(1, m_rest.size() - end - 1)) != u"\n")
            end = m_rest.indexOf(u'\r', end + 1);
        if (end < 0) {
            m_isComplete = false;
            return {};
        }
        const QStringView line = m_rest.first(end);
        m_rest = m_rest.sliced(end + LineEndSize);
        return line.sliced(qMin(Label, line.size()));
    }

    bool IsComplete() const { return m_isComplete; }
    QStringView Rest() const { return m_rest; }

private:
    QStringView m_rest;
    bool m_isComplete = true;
};

/// The board writes "2002/01/15（火） 12:34"; the day of the week goes before the rest is read.
std::optional<double> ParseDate(QStringView Text)
{
    const qsizetype open = Text.indexOf(u'（');
    const qsizetype close = Text.indexOf(u'）');
    if (open < 0 || close < 0)
        return {};
    QString date = Text.first(open).toString();
    date += Text.sliced(close + 1);
    return text::TextToDate(date);
}

std::optional<qint32> ParseReply(QStringView Text) { return Text.isEmpty() ? 0 : text::TextToLong(Text); }

QString SubjectFromBody(const QString& Body)
{
    return Body.size() > MaxSubject ? Body.first(CutSubject) + u"..."_s : Body;
}
} // namespace

CRecordCutter::CRecordCutter(QStringView Text)
    : m_text(Text)
{}

std::optional<QStringView> CRecordCutter::Next()
{
    static const QStringMatcher matcher(Separator);
    const qsizetype from = m_place;
    const qsizetype found = matcher.indexIn(m_text, from);
    if (found >= 0) {
        m_place = found + Separator.size();
        return m_text.sliced(from, found - from);
    }
    const QStringView rest = m_text.sliced(from);
    const QStringView unended = Separator.chopped(LineEndSize);
    m_place = m_text.size();
    if (!rest.endsWith(unended)) {
        m_rest = rest;
        return {};
    }
    return rest.chopped(unended.size());
}

QStringView CRecordCutter::SeparatorLine() { return Separator.sliced(LineEndSize).chopped(LineEndSize); }

CLogParser::CLogParser(qint32 BBS_ID, bool TwoSided, bool Read)
    : m_board(BBS_ID)
    , m_twoSided(TwoSided)
    , m_read(Read)
{}

std::optional<CMessage> CLogParser::Parse(QStringView Record) const
{
    CLineReader lines(Record);
    const auto number = text::TextToLong(lines.Line(NumberLabel));
    const QStringView subject = m_twoSided ? QStringView() : lines.Line(SubjectLabel);
    const QStringView homePage = lines.Line(HomePageLabel);
    const QStringView mail = lines.Line(MailLabel);
    const QStringView name = lines.Line(NameLabel);
    const auto date = ParseDate(lines.Line(DateLabel));
    const auto reply = ParseReply(lines.Line(ReplyLabel));
    lines.Line(0); // announces the body and says nothing
    if (!lines.IsComplete() || !number || *number < 1 || !date || !reply)
        return {};
    CMessage message{.BBS_ID = m_board,
                     .ID = *number,
                     .Subject = subject.toString(),
                     .HomePage = homePage.toString(),
                     .Mail = mail.toString(),
                     .PostName = name.toString(),
                     .PostDate = *date,
                     .InReplyTo = *reply,
                     .Body = lines.Rest().toString(),
                     .Read = m_read};
    if (m_twoSided)
        message.Subject = SubjectFromBody(message.Body);
    return message;
}
