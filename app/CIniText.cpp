// app/CIniText.cpp
// Goes through the file line by line as bytes; only headings and the lines of a section are decoded.

#include "app/CIniText.h"

#include "platform/text/Codepage932.h"

#include <QHash>
#include <QSet>
#include <QStringDecoder>

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr char Utf16Mark[] = "\xFF\xFE";
constexpr char Utf8Mark[] = "\xEF\xBB\xBF";

/// Blanks around names and values; the old end-of-file sign counts as one.
constexpr bool IsBlank(QChar Unit)
{
    return Unit == u' ' || Unit == u'\t' || Unit == u'\v' || Unit == u'\f' || Unit == QChar(0x1A);
}

QString Trimmed(QStringView Text)
{
    while (!Text.isEmpty() && IsBlank(Text.front()))
        Text = Text.sliced(1);
    while (!Text.isEmpty() && IsBlank(Text.back()))
        Text.chop(1);
    return Text.toString();
}

/// Name of the section that Line (trimmed) opens: up to its last "]". A "[" without a "]" is an ordinary line.
std::optional<QString> HeadingOf(const QString& Line)
{
    const qsizetype end = Line.lastIndexOf(u']');
    if (!Line.startsWith(u'[') || end < 0)
        return std::nullopt;
    return Trimmed(QStringView(Line).sliced(1, end - 1));
}

/// "key = value" without the blanks around the sign.
QString Tidied(const QString& Line)
{
    const qsizetype sign = Line.indexOf(u'=');
    if (sign < 0)
        return Line;
    return Trimmed(QStringView(Line).first(sign)) + u'=' + Trimmed(QStringView(Line).sliced(sign + 1));
}

/// NUL ends a line too: it cannot be part of a name or a value.
constexpr bool IsLineEnd(char Unit) { return Unit == '\r' || Unit == '\n' || Unit == '\0'; }

} // namespace

CIniText::CIniText(QByteArray Bytes)
    : m_bytes(std::move(Bytes))
    , m_encoding(m_bytes.startsWith(Utf16Mark)  ? Encoding::Utf16
                 : m_bytes.startsWith(Utf8Mark) ? Encoding::Utf8
                                                : Encoding::Codepage932)
{
    if (m_encoding == Encoding::Utf16)
        m_bytes.chop(m_bytes.size() % 2); // half a unit would shift whatever is written behind it
}

qsizetype CIniText::MarkSize() const
{
    switch (m_encoding) {
    case Encoding::Utf16:
        return 2;
    case Encoding::Utf8:
        return 3;
    default:
        return 0;
    }
}

/// No second byte of a double-byte character is a line end, so bytes can be searched for one.
CIniText::Line CIniText::LineAt(qsizetype Place) const
{
    const qsizetype unit = UnitSize();
    const auto unitAt = [&](qsizetype At) -> char {
        const bool isWide = unit == 2 && (At + 1 >= m_bytes.size() || m_bytes[At + 1] != 0);
        return isWide ? 'x' : m_bytes[At];
    };
    qsizetype end = Place;
    while (end < m_bytes.size() && !IsLineEnd(unitAt(end)))
        end += unit;
    end = std::min(end, m_bytes.size());
    qsizetype next = std::min(end + unit, m_bytes.size());
    if (next < m_bytes.size() && unitAt(end) == '\r' && unitAt(next) == '\n')
        next += unit;
    const QByteArrayView bytes(m_bytes);
    return {bytes.sliced(Place, end - Place), bytes.sliced(Place, next - Place)};
}

QString CIniText::Decode(QByteArrayView Text) const
{
    switch (m_encoding) {
    case Encoding::Utf16:
        return QStringDecoder(QStringDecoder::Utf16LE)(Text);
    case Encoding::Utf8:
        return QString::fromUtf8(Text);
    default:
        return text::From932(Text);
    }
}

QByteArray CIniText::Encode(const QString& Text) const
{
    switch (m_encoding) {
    case Encoding::Utf16:
        return QStringEncoder(QStringEncoder::Utf16LE)(Text);
    case Encoding::Utf8:
        return Text.toUtf8();
    default:
        return text::To932(text::WithWindowsForms(Text));
    }
}

bool CIniText::CanHold(const QString& Text) const
{
    const bool isUnicode = m_encoding != Encoding::Codepage932;
    return Decode(Encode(Text)) == (isUnicode ? Text : text::WithWindowsForms(Text));
}

QByteArray CIniText::EncodeLines(const QStringList& Lines) const
{
    QByteArray bytes;
    for (const QString& line : Lines)
        bytes += Encode(line + u"\r\n"_s);
    return bytes;
}

std::vector<CIniText::Section> CIniText::Sections() const
{
    std::vector<Section> sections;
    QSet<QString> known;
    bool isInside = false;
    for (qsizetype place = MarkSize(); place < m_bytes.size();) {
        const Line bytes = LineAt(place);
        place += bytes.Whole.size();
        const QString line = Trimmed(Decode(bytes.Text));
        if (const std::optional<QString> heading = HeadingOf(line)) {
            isInside = !heading->isEmpty() && !known.contains(heading->toCaseFolded());
            known.insert(heading->toCaseFolded());
            if (isInside)
                sections.push_back({*heading, {}});
        } else if (isInside && !line.isEmpty() && !line.startsWith(u';')) {
            sections.back().Lines.append(Tidied(line));
        }
    }
    return sections;
}

void CIniText::Write(const std::vector<Section>& Sections)
{
    QHash<QString, const Section*> waiting;
    for (const Section& section : Sections)
        waiting.insert(section.Name.toCaseFolded(), &section);

    QByteArray result = m_bytes.left(MarkSize());
    const auto endLine = [&] {
        if (result.size() > MarkSize() && !result.endsWith(Encode(u"\n"_s)))
            result += Encode(u"\r\n"_s);
    };
    bool isReplaced = false; // the lines here belong to a section that is written anew
    for (qsizetype place = MarkSize(); place < m_bytes.size();) {
        const Line bytes = LineAt(place);
        place += bytes.Whole.size();
        const std::optional<QString> heading = HeadingOf(Trimmed(Decode(bytes.Text)));
        const Section* const section = heading ? waiting.take(heading->toCaseFolded()) : nullptr;
        isReplaced = heading ? section != nullptr : isReplaced;
        if (!isReplaced || heading)
            result += bytes.Whole;
        if (section != nullptr) {
            endLine();
            result += EncodeLines(section->Lines);
        }
    }
    for (const Section& section : Sections) {
        if (waiting.take(section.Name.toCaseFolded()) == nullptr)
            continue;
        endLine();
        result += EncodeLines(QStringList(u'[' + section.Name + u']') + section.Lines);
    }
    m_bytes = result;
}
