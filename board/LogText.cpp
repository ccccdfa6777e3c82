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

using CDecode = QString (*)(QByteArrayView);

QString FromUtf8(QByteArrayView Bytes) { return QString::fromUtf8(Bytes); }

/// A UTF-8 text may end in the middle of a character where it was cut; the line is lost anyway.
bool IsUtf8(QByteArrayView Bytes)
{
    const QByteArrayView lines = Bytes.first(Bytes.lastIndexOf('\n') + 1);
    return text::IsValidUtf8(lines.isEmpty() ? Bytes : lines) && !text::IsValid932(Bytes);
}

/// Decodes in pieces that end with a line: LF is part of no other character in either encoding.
QString DecodeLines(QByteArrayView Bytes, CDecode DecodePiece, const std::function<bool()>& GoesOn)
{
    QString result;
    result.reserve(Bytes.size());
    while (!Bytes.isEmpty()) {
        if (GoesOn && !GoesOn())
            return {};
        const qsizetype end = Bytes.size() > Portion ? Bytes.indexOf('\n', Portion) : -1;
        const qsizetype size = end < 0 ? Bytes.size() : end + 1;
        result += DecodePiece(Bytes.first(size));
        Bytes = Bytes.sliced(size);
    }
    return result;
}

QString DecodeBytes(const QByteArray& Bytes, const std::function<bool()>& GoesOn)
{
    const auto encoding = QStringConverter::encodingForData(Bytes);
    if (encoding == QStringConverter::Utf16LE || encoding == QStringConverter::Utf16BE)
        return QStringDecoder(*encoding)(Bytes);
    if (encoding == QStringConverter::Utf8)
        return DecodeLines(QByteArrayView(Bytes).sliced(3), FromUtf8, GoesOn);
    return DecodeLines(Bytes, IsUtf8(Bytes) ? FromUtf8 : text::From932, GoesOn);
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
    for (qsizetype i = 0; i < Text.size(); ++i) {
        const bool isPair = Break == u'\n' ? i > 0 && Text[i - 1] == u'\r' : Text.mid(i + 1, 1) == u"\n";
        if (Text[i] == Break && !isPair)
            result += u"\r\n"_s;
        else
            result += Text[i];
    }
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
    return WithLogLineEnds(std::move(text));
}

bool mdlLogText::HasRecord(QStringView Text) { return CRecordCutter(Text).Next().has_value(); }

QByteArray mdlLogText::SoundPart(const QByteArray& Bytes, bool IsOnlyCut)
{
    if (IsOnlyCut)
        return Bytes.first(Bytes.lastIndexOf('\n') + 1);
    return Bytes.first(std::max(SoundSize(Bytes, text::IsValid932), SoundSize(Bytes, text::IsValidUtf8)));
}
