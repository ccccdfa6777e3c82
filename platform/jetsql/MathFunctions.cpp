// platform/jetsql/MathFunctions.cpp
// The functions of the dialect that calculate.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

using Gives = FunctionInfo::Gives;

void Abs(CCall& Call)
{
    if (Call.IsWhole(0))
        return Call.SetWhole(std::abs(Call.Whole(0)));
    Call.SetNumber(std::fabs(Call.Number(0)));
}

void Int(CCall& Call)
{
    if (Call.IsWhole(0))
        return Call.SetArgument(0);
    Call.SetNumber(std::floor(Call.Number(0)));
}

void Fix(CCall& Call)
{
    if (Call.IsWhole(0))
        return Call.SetArgument(0);
    Call.SetNumber(std::trunc(Call.Number(0)));
}

// Half to even, as all roundings of the engine are.
void Round(CCall& Call)
{
    const qint32 places = Call.LongOr(1, 0);
    if (places < 0 || places > 22)
        throw MakeError(5);
    if (Call.IsWhole(0))
        return Call.SetArgument(0);
    const double scale = std::pow(10.0, places), number = Call.Number(0), scaled = number * scale;
    Call.SetNumber(std::isfinite(scaled) ? std::nearbyint(scaled) / scale : number);
}

void Sgn(CCall& Call)
{
    const double number = Call.Number(0);
    Call.SetWhole(number < 0 ? -1 : number > 0 ? 1 : 0);
}

void Sqr(CCall& Call)
{
    if (Call.Number(0) < 0)
        throw MakeError(5);
    Call.SetNumber(std::sqrt(Call.Number(0)));
}

void Log(CCall& Call)
{
    if (Call.Number(0) <= 0)
        throw MakeError(5);
    Call.SetNumber(std::log(Call.Number(0)));
}

constexpr FunctionInfo Functions[] = {
    {.Name = "Abs"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = Abs, .What = Gives::Number},
    {.Name = "Sgn"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Integer, .Body = Sgn},
    {.Name = "Int"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = Int, .What = Gives::Number},
    {.Name = "Fix"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Body = Fix, .What = Gives::Number},
    {.Name = "Round"_L1, .Least = 1, .Most = 2, .Kinds = "n", .Body = Round, .What = Gives::Number},
    {.Name = "Sqr"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = Sqr},
    {.Name = "Exp"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(std::exp(c.Number(0))); }},
    {.Name = "Log"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = Log},
    {.Name = "Sin"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(std::sin(c.Number(0))); }},
    {.Name = "Cos"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(std::cos(c.Number(0))); }},
    {.Name = "Tan"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(std::tan(c.Number(0))); }},
    {.Name = "Atn"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .Body = [](CCall& c) { c.SetNumber(std::atan(c.Number(0))); }},
    {.Name = "Rnd"_L1, .Most = 1, .Kinds = "n", .Type = FieldType::Single, .TakesNull = true, .IsVolatile = true},   // CRandom
};

}

std::span<const FunctionInfo> MathFunctions() { return Functions; }

}
