// platform/jetsql/TextFunctions.cpp
// The functions of the dialect that work on text.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/Codepage932.h"
#include "platform/text/Format.h"
#include "platform/text/KanaWidth.h"
#include "platform/text/Number.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

qint64 Length(const CCall& Call)
{
    QString buffer;
    return Call.View(0, buffer).size();
}

void SetPart(CCall& Call, QStringView Part) { Call.SetText(Part.toString()); }

void Left(CCall& Call)
{
    QString buffer;
    Require(Call.Long(1) >= 0);
    SetPart(Call, Call.View(0, buffer).left(Call.Long(1)));
}

void Right(CCall& Call)
{
    QString buffer;
    Require(Call.Long(1) >= 0);
    SetPart(Call, Call.View(0, buffer).right(Call.Long(1)));
}

void Mid(CCall& Call)
{
    QString buffer;
    Require(Call.Long(1) >= 1 && Call.LongOr(2, 0) >= 0);
    SetPart(Call, Call.View(0, buffer).mid(Call.Long(1) - 1, Call.LongOr(2, -1)));
}

// The functions that count bytes, two to a character: a character that is not wholly among them is left out.
void LeftB(CCall& Call)
{
    QString buffer;
    Require(Call.Long(1) >= 0);
    SetPart(Call, Call.View(0, buffer).left(Call.Long(1) / 2));
}

void RightB(CCall& Call)
{
    QString buffer;
    Require(Call.Long(1) >= 0);
    SetPart(Call, Call.View(0, buffer).right(Call.Long(1) / 2));
}

void MidB(CCall& Call)
{
    QString buffer;
    const qint64 start = Call.Long(1), count = Call.LongOr(2, std::numeric_limits<qint32>::max());
    Require(start >= 1 && count >= 0);
    const qint64 first = start / 2, end = (start - 1 + count) / 2;
    SetPart(Call, end > first ? Call.View(0, buffer).mid(first, end - first) : QStringView());
}

bool IsSpace(QChar Unit) { return Unit == u' ' || Unit == u'\u3000'; }

QString Trimmed(QString Text, bool AtLeft, bool AtRight)
{
    qsizetype begin = 0, end = Text.size();
    while (AtLeft && begin < end && IsSpace(Text[begin]))
        ++begin;
    while (AtRight && end > begin && IsSpace(Text[end - 1]))
        --end;
    return Text.mid(begin, end - begin);
}

void Repeat(CCall& Call, qint32 Count, QChar Unit)
{
    Require(Count >= 0);
    if (Count > CCall::MaxText)
        throw MakeError(6);
    Call.SetText(QString(Count, Unit));
}

// The one character of a code of code page 932; those above 255 have two bytes and may be given as negative numbers.
QString Character(qint32 Code)
{
    Require(Code >= -32768 && Code <= 65535);
    if (Code >= 0 && Code < 128)
        return QChar(char16_t(Code));
    QByteArray bytes;
    if (Code < 0 || Code > 255)
        bytes.append(char((Code >> 8) & 0xFF));
    bytes.append(char(Code & 0xFF));
    const QString text = text::From932(bytes);
    const bool isCharacter = text.size() == 1 && (text.front() != QChar(0x30FB) || bytes == "\x81\x45");
    Require(isCharacter);   // the first byte of two is none, nor is a pair that the code page leaves out
    return text;
}

// String(n, c): c is a text, of which the first character counts, or a code, of which the low byte does.
void String(CCall& Call)
{
    if (!Call.IsText(1))
        return Repeat(Call, Call.Long(0), Character(Call.Long(1) & 0xFF).front());
    const QString text = Call.Text(1);
    Require(!text.isEmpty());
    Repeat(Call, Call.Long(0), text[0]);
}

QString CaseChanged(const QString& Text, qint32 Kind)
{
    switch (Kind & 3) {
    case 1: return text::ToUpperUnits(Text);
    case 2: return text::ToLowerUnits(Text);
    case 3: return text::ToProperCase(Text);
    default: return Text;
    }
}

// StrConv(s, kind): the sum of 1 capital or 2 small (3 the first of each word), 4 wide or 8 narrow, 16 katakana or
// 32 hiragana. The third argument names a locale; there is only the Japanese one.
void StrConv(CCall& Call)
{
    enum { Wide = 4, Narrow = 8, Katakana = 16, Hiragana = 32, All = 63 };
    const qint32 kind = Call.Long(1);
    const bool isContradiction = (kind & Wide && kind & Narrow) || (kind & Katakana && kind & Hiragana);
    Require(kind >= 0 && kind <= All && !isContradiction);
    QString text = CaseChanged(Call.Text(0), kind);
    if (kind & (Katakana | Hiragana))
        text = kind & Katakana ? text::ToKatakana(text) : text::ToHiragana(text);
    if (kind & (Wide | Narrow))
        text = kind & Wide ? text::ToFullWidth(text) : text::ToHalfWidth(text);
    Call.SetText(text);
}

// A double-byte character has a negative code: 16 bits with a sign.
void Asc(CCall& Call)
{
    const QString text = Call.Text(0);
    Require(!text.isEmpty());
    const QByteArray bytes = text::To932(QStringView(text).left(1));
    const auto unit = [&](qsizetype i) { return quint8(bytes[i]); };
    Call.SetWhole(bytes.size() < 2 ? unit(0) : qint16(unit(0) << 8 | unit(1)));
}

void AscW(CCall& Call)
{
    const QString text = Call.Text(0);
    Require(!text.isEmpty());
    Call.SetWhole(qint16(text[0].unicode()));
}

void ChrW(CCall& Call)
{
    const qint32 code = Call.Long(0);
    Require(code >= -32768 && code <= 65535);
    Call.SetText(QString(QChar(char16_t(code & 0xFFFF))));
}

// Small negative numbers as 16 bits, the others as 32.
void Radix(CCall& Call, int Base)
{
    const qint32 number = Call.Long(0);
    const quint32 bits = number >= -32768 && number < 0 ? quint16(number) : quint32(number);
    Call.SetText(QString::number(bits, Base).toUpper());
}

// Str(x, type of x): a place for the sign, no zero before the point.
void Str(CCall& Call)
{
    const Value value = Call.Any(0, Call.TypeAt(1));
    if (!IsNumber(value.Type()) && !IsText(value.Type()))
        return Call.SetText(value.ToText());
    const Value number = IsText(value.Type()) ? Value::FromDouble(value.ToDouble()) : value;
    QString digits = number.ToType(FieldType::Text).TextRef();
    if (const qsizetype zero = digits.indexOf(u"0."); zero == 0 || (zero == 1 && digits[0] == u'-'))
        digits.remove(zero, 1);
    Call.SetText(digits.startsWith(u'-') ? digits : u' ' + digits);
}

void StrReverse(CCall& Call)
{
    QString text = Call.Text(0);
    std::reverse(text.begin(), text.end());
    for (qsizetype i = 1; i < text.size(); ++i) {   // both halves of one kanji are two units
        if (text[i - 1].isLowSurrogate() && text[i].isHighSurrogate())
            std::swap(text[i - 1], text[i]);
    }
    Call.SetText(text);
}

using Gives = FunctionInfo::Gives;

constexpr FunctionInfo Functions[] = {
    {.Name = "Len"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Long, .Body = [](CCall& c) { c.SetWhole(Length(c)); }},
    {.Name = "LenB"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Long, .Body = [](CCall& c) { c.SetWhole(Length(c) * 2); }},
    {.Name = "Left"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = Left, .What = Gives::Text},
    {.Name = "Right"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = Right, .What = Gives::Text},
    {.Name = "Mid"_L1, .Least = 2, .Most = 3, .Kinds = "tn", .Body = Mid, .What = Gives::Text},
    {.Name = "LeftB"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = LeftB, .What = Gives::Text},
    {.Name = "RightB"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = RightB, .What = Gives::Text},
    {.Name = "MidB"_L1, .Least = 2, .Most = 3, .Kinds = "tn", .Body = MidB, .What = Gives::Text},
    {.Name = "StrConv"_L1, .Least = 2, .Most = 3, .Kinds = "tn", .Body = StrConv, .What = Gives::Text},
    {.Name = "LCase"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(text::ToLowerUnits(c.Text(0))); }, .What = Gives::Text},
    {.Name = "UCase"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(text::ToUpperUnits(c.Text(0))); }, .What = Gives::Text},
    {.Name = "Trim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), true, true)); }, .What = Gives::Text},
    {.Name = "LTrim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), true, false)); }, .What = Gives::Text},
    {.Name = "RTrim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), false, true)); }, .What = Gives::Text},
    {.Name = "Space"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Repeat(c, c.Long(0), u' '); }},
    {.Name = "String"_L1, .Least = 2, .Most = 2, .Kinds = "na", .Body = String},
    {.Name = "StrReverse"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = StrReverse, .What = Gives::Text},
    {.Name = "Asc"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Integer, .Body = Asc},
    {.Name = "AscW"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Integer, .Body = AscW},
    {.Name = "Chr"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { c.SetText(Character(c.Long(0))); }},
    {.Name = "ChrW"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = ChrW},
    {.Name = "Hex"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Radix(c, 16); }},
    {.Name = "Oct"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Radix(c, 8); }},
    {.Name = "Str"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Body = Str},
    {.Name = "Val"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(text::Val(c.Text(0))); }},
};

}

std::span<const FunctionInfo> TextFunctions() { return Functions; }

}
