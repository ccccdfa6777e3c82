// platform/jetsql/ConversionFunctions.cpp
// The functions of the dialect that convert values and say what they are.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/DateTime.h"
#include "platform/text/Number.h"

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

// The language's own numbers for the kinds of its variables.
void VarType(CCall& Call)
{
    if (Call.IsNull(0))
        return Call.SetWhole(1);
    const FieldType known = Call.TypeAt(1);
    switch (known == FieldType::Null ? Call.Any(0, known).Type() : known) {
    case FieldType::Boolean: return Call.SetWhole(11);
    case FieldType::Byte: return Call.SetWhole(17);
    case FieldType::Integer: return Call.SetWhole(2);
    case FieldType::Long: return Call.SetWhole(3);
    case FieldType::Single: return Call.SetWhole(4);
    case FieldType::Double: return Call.SetWhole(5);
    case FieldType::Currency: return Call.SetWhole(6);
    case FieldType::Date: return Call.SetWhole(7);
    default: return Call.SetWhole(8);
    }
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
    {.Name = "CVDate"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Date, .Body = Convert<FieldType::Date>, .TakesNull = true},
    {.Name = "CStr"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Text, .Body = Convert<FieldType::Text>, .TakesNull = true},
    {.Name = "CVar"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Body = [](CCall& c) { c.SetArgument(0); }, .TakesNull = true, .What = FunctionInfo::Gives::First},
    {.Name = "IsNull"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetTruth(c.IsNull(0)); }, .TakesNull = true, .IsTruth = true},
    {.Name = "IsEmpty"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Integer, .Body = [](CCall& c) { c.SetTruth(false); }, .TakesNull = true, .IsTruth = true},
    {.Name = "IsDate"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = IsDate, .TakesNull = true, .IsTruth = true},
    {.Name = "IsNumeric"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = IsNumeric, .TakesNull = true, .IsTruth = true},
    {.Name = "VarType"_L1, .Least = 1, .Most = 1, .Kinds = "y", .Type = FieldType::Integer, .Body = VarType, .TakesNull = true},
};

}

std::span<const FunctionInfo> ConversionFunctions() { return Functions; }

}
