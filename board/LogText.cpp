// board/LogText.cpp
// Bytes of a saved log made into the text that the boards' own pages have.

#include "board/LogText.h"

#include "board/CLogParser.h"
#include "platform/text/Codepage932.h"

#include <QStringDecoder>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype Portion = 1024 * 1024; ///< bytes decoded between two questions whether to go on

constexpr qsizetype Utf8MarkSize = 3;

using CDecode = QString (*)(QByteArrayView);

QString FromUtf8(QByteArrayView Bytes) { return QString::fromUtf8(Bytes); }

/// Takes a piece off the front of Rest, about a megabyte that ends with a line: LF is part of no other character in
/// either encoding.
QByteArrayView TakePiece(QByteArrayView& Rest)
{
    const qsizetype end = Rest.size() > Portion ? Rest.indexOf('\n', Portion) : -1;
    const QByteArrayView piece = Rest.first(end < 0 ? Rest.size() : end + 1);
    Rest = Rest.sliced(piece.size());
    return piece;
}

/// Whether Bytes is UTF-8 and no code page 932. The last line does not count where others are: where a text was cut, it
/// may end within a character.
bool IsUtf8(QByteArrayView Bytes, const std::function<bool()>& GoesOn)
{
    const qsizetype lines = Bytes.lastIndexOf('\n') + 1;
    QByteArrayView rest = lines > 0 ? Bytes.first(lines) : Bytes;
    bool isNo932 = false;
    while (!rest.isEmpty() && (!GoesOn || GoesOn())) {
        const QByteArrayView piece = TakePiece(rest);
        if (!text::IsValidUtf8(piece))
            return false;
        isNo932 = isNo932 || !text::IsValid932(piece);
    }
    return isNo932;
}

QString DecodeLines(QByteArrayView Bytes, CDecode DecodePiece, const std::function<bool()>& GoesOn)
{
    QString result;
    result.reserve(Bytes.size());
    while (!Bytes.isEmpty()) {
        if (GoesOn && !GoesOn())
            return {};
        result += DecodePiece(TakePiece(Bytes));
    }
    return result;
}

QString DecodeBytes(const QByteArray& Bytes, const std::function<bool()>& GoesOn)
{
    const auto encoding = QStringConverter::encodingForData(Bytes);
    if (encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE)
        return QStringDecoder(*encoding)(Bytes);
    if (encoding == QStringConverter::Utf8)
        return DecodeLines(QByteArrayView(Bytes).sliced(Utf8MarkSize), FromUtf8, GoesOn);
    return DecodeLines(Bytes, IsUtf8(Bytes, GoesOn) ? FromUtf8 : text::From932, GoesOn);
}

/// Whether Text has a separator between line ends that are Break; the one behind the very last may be missing.
bool HasSeparator(const QString& Text, const QString& Break)
{
    const QString opened = Break + CRecordCutter::SeparatorLine().toString();
    return Text.endsWith(opened) || Text.contains(QString(opened + Break));
}

/// Text with CR LF for every Break that is not part of one already.
QString WithCrLf(const QString& Text, QChar Break)
{
    QString result;
    result.reserve(Text.size() + Text.count(Break));
    qsizetype done = 0;
    for (qsizetype i = Text.indexOf(Break); i >= 0; i = Text.indexOf(Break, i + 1)) {
        const bool isPair =
            Break == u'\n' ? i > 0 && Text[i - 1] == u'\r' : i + 1 < Text.size() && Text[i + 1] == u'\n';
        if (isPair)
            continue;
        result += QStringView(Text).sliced(done, i - done);
        result += u"\r\n"_s;
        done = i + 1;
    }
    result += QStringView(Text).sliced(done);
    return result;
}

QString WithLogLineEnds(QString Text)
{
    if (HasSeparator(Text, u"\r\n"_s))
        return Text;
    for (const char16_t lineEnd : {u'\n', u'\r'}) {
        if (HasSeparator(Text, QString(QChar(lineEnd))))
            return WithCrLf(Text, lineEnd);
    }
    return Text;
}

/// Old systems end a text with this mark, and some fill the rest of a disk sector with it or with zeros.
constexpr QChar EndMark(0x1A);
bool IsEndFill(QChar Unit) { return Unit == EndMark || Unit.isNull(); }

void TakeEndMarks(QString& Text)
{
    qsizetype end = Text.size();
    while (end > 0 && IsEndFill(Text[end - 1]))
        --end;
    if (QStringView(Text).sliced(end).contains(EndMark))
        Text.truncate(end);
}

/// Logs that were joined into one file have the marks between them.
void TakeInnerEndMarks(QString& Text)
{
    const QString seam = CRecordCutter::SeparatorLine().toString() + u"\r\n"_s + EndMark;
    QString result;
    qsizetype done = 0;
    for (qsizetype i = Text.indexOf(seam); i >= 0; i = Text.indexOf(seam, done)) {
        const qsizetype end = i + seam.size() - 1;
        result += QStringView(Text).sliced(done, end - done);
        for (done = end; done < Text.size() && IsEndFill(Text[done]);)
            ++done;
    }
    if (done == 0)
        return;
    result += QStringView(Text).sliced(done);
    Text = std::move(result);
}

/// Whether no text has such a line: control characters, or bytes that no character has. A lead byte at the end is no
/// fault: the boards' servers cut long subjects without looking.
bool IsNoise(QByteArrayView Line, bool (*IsValid)(QByteArrayView))
{
    while (Line.endsWith('\n') || Line.endsWith('\r'))
        Line.chop(1);
    const auto isControl = [](char Byte) { return static_cast<quint8>(Byte) < 0x20 && Byte != '\t'; };
    return std::any_of(Line.begin(), Line.end(), isControl) ||
           (!IsValid(Line) && !(!Line.isEmpty() && IsValid(Line.chopped(1))));
}

/// Size of the whole lines in front of the first that is noise.
qsizetype SoundSize(QByteArrayView Bytes, bool (*IsValid)(QByteArrayView))
{
    qsizetype size = 0;
    for (qsizetype end = Bytes.indexOf('\n'); end >= 0; end = Bytes.indexOf('\n', size)) {
        if (IsNoise(Bytes.sliced(size, end + 1 - size), IsValid))
            break;
        size = end + 1;
    }
    return size;
}

} // namespace

QString mdlLogText::Decode(QByteArray Bytes, const std::function<bool()>& GoesOn)
{
    QString text = DecodeBytes(Bytes, GoesOn);
    Bytes = {};
    TakeEndMarks(text);
    text = WithLogLineEnds(std::move(text));
    TakeInnerEndMarks(text);
    return text;
}

bool mdlLogText::HasRecord(QStringView Text) { return CRecordCutter(Text).Next().has_value(); }

QByteArray mdlLogText::SoundPart(const QByteArray& Bytes, bool IsOnlyCut)
{
    if (IsOnlyCut)
        return Bytes.first(Bytes.lastIndexOf('\n') + 1);
    return Bytes.first(std::max(SoundSize(Bytes, text::IsValid932), SoundSize(Bytes, text::IsValidUtf8)));
}
