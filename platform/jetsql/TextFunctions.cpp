// platform/jetsql/TextFunctions.cpp
// The functions of the dialect that work on text.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/Codepage932.h"
#include "platform/text/Fold.h"
#include "platform/text/Format.h"
#include "platform/text/Number.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

constexpr qint32 MaxRepeat = 16 * 1024 * 1024;   // characters that one call may make

void Require(bool IsRight)
{
    if (!IsRight)
        throw MakeError(5);
}

bool IsBinary(const CCall& Call, int Index) { return Call.LongOr(Index, 2) == 0; }

// The first place at or after From where Part is found, or -1.
qsizetype Find(const QString& Text, const QString& Part, qsizetype From, bool Binary)
{
    if (Binary)
        return Text.indexOf(Part, From);
    const text::CFoldedText folded = text::FoldWithOffsets(Text);
    const auto begin = std::lower_bound(folded.Offsets.begin(), folded.Offsets.end(), From) - folded.Offsets.begin();
    const qsizetype found = folded.Text.indexOf(text::Fold(Part), begin);
    return found < 0 ? -1 : folded.Offsets[size_t(found)];
}

// The last place where Part is found wholly before End, or -1.
qsizetype FindLast(const QString& Text, const QString& Part, qsizetype End, bool Binary)
{
    if (Binary)
        return End < Part.size() ? -1 : Text.lastIndexOf(Part, End - Part.size());
    const text::CFoldedText folded = text::FoldWithOffsets(QStringView(Text).left(End));
    const qsizetype found = folded.Text.lastIndexOf(text::Fold(Part));
    return found < 0 ? -1 : folded.Offsets[size_t(found)];
}

void Left(CCall& Call)
{
    Require(Call.Long(1) >= 0);
    Call.SetText(Call.Text(0).left(Call.Long(1)));
}

void Right(CCall& Call)
{
    Require(Call.Long(1) >= 0);
    Call.SetText(Call.Text(0).right(Call.Long(1)));
}

void Mid(CCall& Call)
{
    Require(Call.Long(1) >= 1 && Call.LongOr(2, 0) >= 0);
    Call.SetText(Call.Text(0).mid(Call.Long(1) - 1, Call.LongOr(2, -1)));
}

// With three arguments the first one is the place to begin at.
void InStr(CCall& Call)
{
    const int shift = Call.Count() > 2 ? 1 : 0;
    const qint32 start = shift ? Call.Long(0) : 1;
    Require(start >= 1);
    const QString text = Call.Text(shift), part = Call.Text(shift + 1);
    if (text.isEmpty() || start > text.size())
        return Call.SetWhole(0);
    Call.SetWhole(part.isEmpty() ? start : Find(text, part, start - 1, IsBinary(Call, 3)) + 1);
}

void InStrRev(CCall& Call)
{
    const QString text = Call.Text(0), part = Call.Text(1);
    const qint32 start = Call.LongOr(2, -1);
    Require(start >= 1 || start == -1);
    const qsizetype end = start == -1 ? text.size() : start;
    if (text.isEmpty() || end > text.size())
        return Call.SetWhole(0);
    Call.SetWhole(part.isEmpty() ? end : FindLast(text, part, end, IsBinary(Call, 3)) + 1);
}

// Replace(s, find, by, start, count, compare): the result begins at start.
void Replace(CCall& Call)
{
    const qint32 start = Call.LongOr(3, 1), count = Call.LongOr(4, -1);
    Require(start >= 1 && count >= -1);
    const QString text = Call.Text(0).mid(start - 1), part = Call.Text(1), by = Call.Text(2);
    if (part.isEmpty() || count == 0)
        return Call.SetText(text);
    const bool isBinary = IsBinary(Call, 5);
    const text::CFoldedText folded = isBinary ? text::CFoldedText() : text::FoldWithOffsets(text);
    const QString& searched = isBinary ? text : folded.Text;
    const QString wanted = isBinary ? part : text::Fold(part);
    const auto place = [&](qsizetype at) { return isBinary ? at : folded.Offsets[size_t(at)]; };
    QString result;
    qsizetype copied = 0, at = 0;
    for (int done = 0; count < 0 || done < count; ++done) {
        const qsizetype found = searched.indexOf(wanted, at);
        if (found < 0)
            break;
        result += QStringView(text).mid(copied, place(found) - copied);
        result += by;
        at = found + wanted.size();
        copied = place(at);
    }
    Call.SetText(result + text.mid(copied));
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
    if (Count > MaxRepeat)
        throw MakeError(6);
    Call.SetText(QString(Count, Unit));
}

// String(n, c): c is a text, of which the first character counts, or a code.
void String(CCall& Call)
{
    if (!Call.IsText(1))
        return Repeat(Call, Call.Long(0), QChar(char16_t(Call.Long(1) & 0xFF)));
    const QString text = Call.Text(1);
    Require(!text.isEmpty());
    Repeat(Call, Call.Long(0), text[0]);
}

void StrComp(CCall& Call)
{
    const QString left = Call.Text(0), right = Call.Text(1);
    const int order = IsBinary(Call, 2) ? left.compare(right) : text::CompareText(left, right);
    Call.SetWhole(order < 0 ? -1 : order > 0 ? 1 : 0);
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

void Chr(CCall& Call)
{
    const qint32 code = Call.Long(0);
    Require(code >= -32768 && code <= 65535);
    QByteArray bytes;
    if (code < 0 || code > 255)
        bytes.append(char((code >> 8) & 0xFF));
    bytes.append(char(code & 0xFF));
    Call.SetText(code >= 0 && code < 128 ? QString(QChar(char16_t(code))) : text::From932(bytes));
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

// Format(x, type of x, pattern)
void Format(CCall& Call)
{
    if (Call.IsNull(0))
        return Call.SetText(u""_s);
    const Value value = Call.Any(0, Call.TypeAt(1));
    if (Call.Count() < 3 || Call.IsNull(2))
        return Call.SetText(value.ToType(FieldType::Text).TextRef());
    const QString pattern = Call.Text(2);
    if (value.Type() == FieldType::Date)
        return Call.SetText(text::FormatDate(value.RealPart(), pattern));
    Call.SetText(IsText(value.Type()) ? text::FormatText(value.TextRef(), pattern) : text::FormatNumber(value.RealPart(), pattern));
}

// Small negative numbers as 16 bits, the others as 32.
void Radix(CCall& Call, int Base)
{
    const qint32 number = Call.Long(0);
    const quint32 bits = number >= -32768 && number < 0 ? quint16(number) : quint32(number);
    Call.SetText(QString::number(bits, Base).toUpper());
}

void Str(CCall& Call)
{
    const double number = Call.Number(0);
    Call.SetText((number < 0 ? u""_s : u" "_s) + text::NumberToText(number));
}

void StrReverse(CCall& Call)
{
    QString text = Call.Text(0);
    std::reverse(text.begin(), text.end());
    Call.SetText(text);
}

constexpr FunctionInfo Functions[] = {
    {.Name = "Len"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Long, .Body = [](CCall& c) { c.SetWhole(c.Text(0).size()); }},
    {.Name = "LenB"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Long, .Body = [](CCall& c) { c.SetWhole(c.Text(0).size() * 2); }},
    {.Name = "Left"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = Left},
    {.Name = "Right"_L1, .Least = 2, .Most = 2, .Kinds = "tn", .Body = Right},
    {.Name = "Mid"_L1, .Least = 2, .Most = 3, .Kinds = "tn", .Body = Mid},
    {.Name = "InStr"_L1, .Least = 2, .Most = 4, .Kinds = "a", .Type = FieldType::Long, .Body = InStr},
    {.Name = "InStrRev"_L1, .Least = 2, .Most = 4, .Kinds = "ttnn", .Type = FieldType::Long, .Body = InStrRev},
    {.Name = "Replace"_L1, .Least = 3, .Most = 6, .Kinds = "tttn", .Body = Replace},
    {.Name = "LCase"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(c.Text(0).toLower()); }},
    {.Name = "UCase"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(c.Text(0).toUpper()); }},
    {.Name = "Trim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), true, true)); }},
    {.Name = "LTrim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), true, false)); }},
    {.Name = "RTrim"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = [](CCall& c) { c.SetText(Trimmed(c.Text(0), false, true)); }},
    {.Name = "Space"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Repeat(c, c.Long(0), u' '); }},
    {.Name = "String"_L1, .Least = 2, .Most = 2, .Kinds = "na", .Body = String},
    {.Name = "StrComp"_L1, .Least = 2, .Most = 3, .Kinds = "ttn", .Type = FieldType::Integer, .Body = StrComp},
    {.Name = "StrReverse"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Body = StrReverse},
    {.Name = "Asc"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Integer, .Body = Asc},
    {.Name = "AscW"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Integer, .Body = AscW},
    {.Name = "Chr"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = Chr},
    {.Name = "ChrW"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = ChrW},
    {.Name = "Format"_L1, .Least = 1, .Most = 2, .Kinds = "yt", .Body = Format, .TakesNull = true},
    {.Name = "Hex"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Radix(c, 16); }},
    {.Name = "Oct"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = [](CCall& c) { Radix(c, 8); }},
    {.Name = "Str"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = Str},
    {.Name = "Val"_L1, .Least = 1, .Most = 1, .Kinds = "t", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(text::Val(c.Text(0))); }},
};

}

std::span<const FunctionInfo> TextFunctions() { return Functions; }

}
