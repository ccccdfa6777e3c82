// platform/jetsql/InnerFunctions.cpp
// Operators and conversions: what compiled statements call and no statement can name.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"
#include "platform/text/Like.h"

#include <cmath>
#include <memory>
#include <optional>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

double Divisor(const CCall& Call)
{
    const double by = Call.Number(1);
    if (by == 0)
        throw MakeError(11);
    return by;
}

qint64 WholeDivisor(const CCall& Call)
{
    const qint64 by = Call.Long(1);
    if (by == 0)
        throw MakeError(11);
    return by;
}

void Power(CCall& Call)
{
    const double base = Call.Number(0), exponent = Call.Number(1);
    if (base < 0 && exponent != std::trunc(exponent))
        throw MakeError(5);
    if (base == 0 && exponent < 0)
        throw MakeError(11);
    Call.SetNumber(std::pow(base, exponent));
}

// Two values of which nothing was known before: texts are joined, all else is added.
void Add(CCall& Call)
{
    if (Call.IsText(0) && Call.IsText(1))
        return Call.SetText(Call.Text(0) + Call.Text(1));
    Call.SetNumber(Call.Number(0) + Call.Number(1));
}

// 0 decides And, whatever else is Null; a number that is not 0 decides Or.
void And(CCall& Call)
{
    for (int i = 0; i < 2; ++i)
        if (!Call.IsNull(i) && Call.Long(i) == 0)
            return Call.SetWhole(0);
    if (Call.IsNull(0) || Call.IsNull(1))
        return Call.SetNull();
    Call.SetWhole(Call.Long(0) & Call.Long(1));
}

void Or(CCall& Call)
{
    if (!Call.IsNull(0) && !Call.IsNull(1))
        return Call.SetWhole(Call.Long(0) | Call.Long(1));
    for (int i = 0; i < 2; ++i)
        if (!Call.IsNull(i) && Call.Long(i) != 0)
            return Call.SetWhole(Call.Long(i));
    Call.SetNull();
}

// Not a Or b, where a false one and a true one decide alone.
void Implies(CCall& Call)
{
    if (!Call.IsNull(0) && !Call.IsNull(1))
        return Call.SetWhole(~Call.Long(0) | Call.Long(1));
    if (!Call.IsNull(0) && Call.Long(0) == 0)
        return Call.SetWhole(-1);
    if (!Call.IsNull(1) && Call.Long(1) != 0)
        return Call.SetWhole(Call.Long(1));
    Call.SetNull();
}

// Null is empty among others; nothing but Null is Null.
void Concat(CCall& Call)
{
    QString joined;
    bool isNull = true;
    for (int i = 0; i < Call.Count(); ++i) {
        isNull &= Call.IsNull(i);
        QString buffer;
        joined += Call.View(i, buffer);
        if (joined.size() > CCall::MaxText)
            throw MakeError(6);
    }
    isNull ? Call.SetNull() : Call.SetText(joined);
}

Value Converted(const CCall& Call)
{
    return Call.Any(0, Call.TypeAt(1)).ToType(Call.TypeAt(2));
}

void As(CCall& Call)
{
    try {
        Call.SetValue(Converted(Call));
    } catch (const Error& refused) {
        throw refused.Number == 3421 ? MakeError(13) : refused;
    }
}

void Soft(CCall& Call)
{
    try {
        Call.SetValue(Converted(Call));
    } catch (const Error&) {
        Call.SetNull();
    }
}

using Pattern = std::optional<text::CLikePattern>;

constexpr qsizetype MaxPattern = 65536;         // no statement is longer
constexpr qint64 MaxLikeSteps = 200'000'000;    // one call cannot be broken off

std::unique_ptr<Pattern> MakePattern(const CCall& Call)
{
    QString buffer;
    const QStringView pattern = Call.View(0, buffer);
    if (pattern.size() > MaxPattern)
        throw MakeError(3360);
    return std::make_unique<Pattern>(text::CLikePattern::Compile(pattern, text::Compare::Text));
}

// SQLite keeps what is made of a constant argument for the other rows of the statement.
template <bool RefusesBadPattern>
void Like(CCall& Call)
{
    auto* kept = static_cast<Pattern*>(sqlite3_get_auxdata(Call.Context(), 0));
    std::unique_ptr<Pattern> made;
    if (!kept) {
        made = MakePattern(Call);
        kept = made.get();
    }
    if (!*kept && RefusesBadPattern)
        throw MakeError(93);
    QString buffer;
    const QStringView tested = Call.View(1, buffer);
    if (*kept && (*kept)->MostSteps(tested.size()) > MaxLikeSteps)
        throw MakeError(3360);
    Call.SetTruth(*kept && (*kept)->Matches(tested));
    if (made)   // last, for SQLite may delete it at once
        sqlite3_set_auxdata(Call.Context(), 0, made.release(), [](void* gone) { delete static_cast<Pattern*>(gone); });
}

void NotNull(CCall& Call)
{
    if (Call.IsNull(0))
        throw MakeError(94);
    Call.SetArgument(0);
}

constexpr FunctionInfo Functions[] = {
    {.Name = "Pow"_L1, .Body = Power},
    {.Name = "Product"_L1, .Body = [](CCall& c) { c.SetNumber(c.Number(0) * c.Number(1)); }},
    {.Name = "Div"_L1, .Body = [](CCall& c) { c.SetNumber(c.Number(0) / Divisor(c)); }},
    {.Name = "IntDiv"_L1, .Body = [](CCall& c) { c.SetWhole(qint64(c.Long(0)) / WholeDivisor(c)); }},
    {.Name = "Mod"_L1, .Body = [](CCall& c) { c.SetWhole(qint64(c.Long(0)) % WholeDivisor(c)); }},
    {.Name = "Add"_L1, .Body = Add},
    {.Name = "And"_L1, .Body = And, .TakesNull = true},
    {.Name = "Or"_L1, .Body = Or, .TakesNull = true},
    {.Name = "Xor"_L1, .Body = [](CCall& c) { c.SetWhole(c.Long(0) ^ c.Long(1)); }},
    {.Name = "Eqv"_L1, .Body = [](CCall& c) { c.SetWhole(~(c.Long(0) ^ c.Long(1))); }},
    {.Name = "Imp"_L1, .Body = Implies, .TakesNull = true},
    {.Name = "Not"_L1, .Body = [](CCall& c) { c.SetWhole(~c.Long(0)); }},
    {.Name = "Concat"_L1, .Body = Concat, .TakesNull = true},
    {.Name = "As"_L1, .Body = As},
    {.Name = "Store"_L1, .Body = [](CCall& c) { c.SetValue(Converted(c)); }},
    {.Name = "Soft"_L1, .Body = Soft},
    {.Name = "Like"_L1, .Body = Like<true>},
    {.Name = "LikeField"_L1, .Body = Like<false>},
    {.Name = "NotNull"_L1, .Body = NotNull, .TakesNull = true},
};

}

std::span<const FunctionInfo> InnerFunctions() { return Functions; }

}
