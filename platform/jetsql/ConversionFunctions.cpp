// platform/jetsql/ConversionFunctions.cpp
// The functions of the dialect that convert values and say what they are.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/DateTime.h"
#include "platform/text/Number.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

// C…(x, type of x): Null is refused, text that does not convert is error 13 here.
template <FieldType Wanted>
void Convert(CCall& Call)
{
    if (Call.IsNull(0))
        throw MakeError(94);
    try {
        Call.SetValue(Call.Any(0, Call.TypeAt(1)).ToType(Wanted));
    } catch (const Error& refused) {
        throw refused.Number == 3421 ? MakeError(13) : refused;
    }
}

void IsDate(CCall& Call)
{
    const Value value = Call.Any(0, Call.TypeAt(1));
    Call.SetTruth(value.Type() == FieldType::Date || (IsText(value.Type()) && text::TextToDate(value.TextRef())));
}

void IsNumeric(CCall& Call)
{
    const Value value = Call.Any(0, Call.TypeAt(1));
    Call.SetTruth(IsText(value.Type()) ? text::IsNumeric(value.TextRef()) : IsNumber(value.Type()));
}

/// What the language calls the kind of a value.
struct Kind
{
    FieldType Type;
    int Number;
    QLatin1StringView Name;
};

constexpr Kind Kinds[] = {
    {FieldType::Null, 1, "Null"_L1},       {FieldType::Boolean, 11, "Boolean"_L1}, {FieldType::Byte, 17, "Byte"_L1},
    {FieldType::Integer, 2, "Integer"_L1}, {FieldType::Long, 3, "Long"_L1},        {FieldType::Single, 4, "Single"_L1},
    {FieldType::Double, 5, "Double"_L1},   {FieldType::Currency, 6, "Currency"_L1}, {FieldType::Date, 7, "Date"_L1},
    {FieldType::Text, 8, "String"_L1},
};

const Kind& KindOf(const CCall& Call)
{
    const FieldType known = Call.IsNull(0) ? FieldType::Null : Call.TypeAt(1);
    const FieldType type = known == FieldType::Null ? Call.Any(0, known).Type() : known;
    const auto found = std::find_if(std::begin(Kinds), std::end(Kinds), [type](const Kind& one) { return one.Type == type; });
    return found == std::end(Kinds) ? *std::prev(std::end(Kinds)) : *found;
}

constexpr FunctionInfo Functions[] = {
    {.Name = "CBool"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Boolean, .Body = Convert<FieldType::Boolean>, .TakesNull = true, .IsTruth = true},
    {.Name = "CByte"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Byte, .Body = Convert<FieldType::Byte>, .TakesNull = true},
    {.Name = "CInt"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = Convert<FieldType::Integer>, .TakesNull = true},
    {.Name = "CLng"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Long, .Body = Convert<FieldType::Long>, .TakesNull = true},
    {.Name = "CCur"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Currency, .Body = Convert<FieldType::Currency>, .TakesNull = true},
    {.Name = "CSng"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Single, .Body = Convert<FieldType::Single>, .TakesNull = true},
    {.Name = "CDbl"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Double, .Body = Convert<FieldType::Double>, .TakesNull = true},
    {.Name = "CDate"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Date, .Body = Convert<FieldType::Date>, .TakesNull = true},
    {.Name = "CVDate"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Date, .Body = Convert<FieldType::Date>},   // not for Null: only CDate refuses it
    {.Name = "CStr"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Text, .Body = Convert<FieldType::Text>, .TakesNull = true},
    {.Name = "CVar"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Body = [](CCall& c) { c.SetArgument(0); }, .TakesNull = true, .What = FunctionInfo::Gives::First},
    {.Name = "IsNull"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetTruth(c.IsNull(0)); }, .TakesNull = true, .IsTruth = true},
    {.Name = "IsEmpty"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetTruth(false); }, .TakesNull = true, .IsTruth = true},
    {.Name = "IsError"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetTruth(false); }, .TakesNull = true, .IsTruth = true},
    {.Name = "IsDate"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = IsDate, .TakesNull = true, .IsTruth = true},
    {.Name = "IsNumeric"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = IsNumeric, .TakesNull = true, .IsTruth = true},
    {.Name = "VarType"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetWhole(KindOf(c).Number); }, .TakesNull = true},
    {.Name = "TypeName"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Body = [](CCall& c) { c.SetText(QString(KindOf(c).Name)); }, .TakesNull = true},
};

}

std::span<const FunctionInfo> ConversionFunctions() { return Functions; }

}
