// platform/jetsql/Registration.cpp
// Gives a SQLite connection the functions and the aggregates of the engine.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Compile.h"
#include "platform/jetsql/CRandom.h"
#include "platform/jetsql/CTextKeys.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"

#include <cmath>
#include <new>

#include <sqlite3.h>

namespace jetsql {

namespace {

// Of one row or value. SQLite's own bound lets a statement that joins its own texts fill the memory of a small machine.
constexpr int MaxBytes = 256 * 1024 * 1024;

// No exception may pass through SQLite.
template <typename Work>
void Guarded(CCall& Call, Work Do)
{
    try {
        Do();
    } catch (const Error& refused) {
        Call.SetError(refused.Number);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(Call.Context());
    } catch (const std::exception&) {   // a container asked for more than there can be
        Call.SetError(6);
    }
}

void Run(sqlite3_context* Context, int Count, sqlite3_value** Args)
{
    const auto* function = static_cast<const FunctionInfo*>(sqlite3_user_data(Context));
    CCall call(Context, Count, Args);
    for (int i = 0; i < Count && !function->TakesNull; ++i) {
        if (call.IsNull(i))
            return call.SetNull();
    }
    Guarded(call, [&] { function->Body(call); });
}

// Rnd: an argument that is the same for all rows is drawn for once.
void Draw(sqlite3_context* Context, int Count, sqlite3_value** Args)
{
    CCall call(Context, Count, Args);
    if (const auto* kept = static_cast<const float*>(sqlite3_get_auxdata(Context, 0)))
        return sqlite3_result_double(Context, double(*kept));
    if (call.IsNull(0))
        return call.SetNull();
    Guarded(call, [&] {
        const float drawn = static_cast<CRandom*>(sqlite3_user_data(Context))->Next(call.Number(0));
        call.SetNumber(double(drawn));
        sqlite3_set_auxdata(Context, 0, new float(drawn), [](void* gone) { delete static_cast<float*>(gone); });
    });
}

/// State of an aggregate between its rows; SQLite hands out zeroed memory for it.
template <typename State>
State* StateOf(sqlite3_context* Context)
{
    return static_cast<State*>(sqlite3_aggregate_context(Context, sizeof(State)));
}

struct KeptValue
{
    sqlite3_value* Value;
    bool IsSet;
};

void Keep(KeptValue& State, sqlite3_value* Value)
{
    sqlite3_value_free(State.Value);
    State.Value = sqlite3_value_dup(Value);
    State.IsSet = true;
}

void Give(sqlite3_context* Context)
{
    auto* state = static_cast<KeptValue*>(sqlite3_aggregate_context(Context, 0));
    if (!state || !state->IsSet)
        return sqlite3_result_null(Context);
    sqlite3_result_value(Context, state->Value);
    sqlite3_value_free(state->Value);
    state->Value = nullptr;
}

void FirstStep(sqlite3_context* Context, int, sqlite3_value** Args)
{
    auto* state = StateOf<KeptValue>(Context);
    if (state && !state->IsSet)
        Keep(*state, Args[0]);
}

void LastStep(sqlite3_context* Context, int, sqlite3_value** Args)
{
    if (auto* state = StateOf<KeptValue>(Context))
        Keep(*state, Args[0]);
}

// A subquery in place of a value may have one row.
void OneStep(sqlite3_context* Context, int Count, sqlite3_value** Args)
{
    auto* state = StateOf<KeptValue>(Context);
    if (state && state->IsSet)
        CCall(Context, Count, Args).SetError(3354);
    else if (state)
        Keep(*state, Args[0]);
}

struct Verdict
{
    bool HasTrue;
    bool HasFalse;
    bool HasNull;
};

void VerdictStep(sqlite3_context* Context, int, sqlite3_value** Args)
{
    auto* state = StateOf<Verdict>(Context);
    if (!state)
        return;
    if (sqlite3_value_type(Args[0]) == SQLITE_NULL)
        state->HasNull = true;
    else
        (sqlite3_value_double(Args[0]) != 0 ? state->HasTrue : state->HasFalse) = true;
}

template <bool IsAll>
void VerdictEnd(sqlite3_context* Context)
{
    const auto* state = static_cast<Verdict*>(sqlite3_aggregate_context(Context, 0));
    const Verdict verdict = state ? *state : Verdict{};
    if (IsAll ? verdict.HasFalse : verdict.HasTrue)
        sqlite3_result_int(Context, IsAll ? 0 : -1);
    else if (verdict.HasNull)
        sqlite3_result_null(Context);
    else
        sqlite3_result_int(Context, IsAll ? -1 : 0);
}

/// Running mean and sum of squared distances: exact also for large numbers close together.
struct Spread
{
    qint64 Count;
    double Mean;
    double Squares;
};

void SpreadStep(sqlite3_context* Context, int, sqlite3_value** Args)
{
    auto* state = StateOf<Spread>(Context);
    if (!state || sqlite3_value_type(Args[0]) == SQLITE_NULL)
        return;
    const double number = sqlite3_value_double(Args[0]);
    const double distance = number - state->Mean;
    state->Mean += distance / double(++state->Count);
    state->Squares += distance * (number - state->Mean);
}

template <bool IsRoot, bool IsPopulation>
void SpreadEnd(sqlite3_context* Context)
{
    const auto* state = static_cast<Spread*>(sqlite3_aggregate_context(Context, 0));
    const qint64 least = IsPopulation ? 1 : 2;
    if (!state || state->Count < least)
        return sqlite3_result_null(Context);
    const double variance = state->Squares / double(IsPopulation ? state->Count : state->Count - 1);
    sqlite3_result_double(Context, IsRoot ? std::sqrt(variance) : variance);
}

using Step = void (*)(sqlite3_context*, int, sqlite3_value**);
using End = void (*)(sqlite3_context*);

struct AggregateInfo
{
    const char* Name;
    Step EachRow;
    End AtEnd;
};

constexpr AggregateInfo Aggregates[] = {
    {"jet_first", FirstStep, Give},
    {"jet_last", LastStep, Give},
    {"jet_one", OneStep, Give},
    {"jet_any", VerdictStep, VerdictEnd<false>},
    {"jet_all", VerdictStep, VerdictEnd<true>},
    {"jet_stdev", SpreadStep, SpreadEnd<true, false>},
    {"jet_stdevp", SpreadStep, SpreadEnd<true, true>},
    {"jet_var", SpreadStep, SpreadEnd<false, false>},
    {"jet_varp", SpreadStep, SpreadEnd<false, true>},
};

}

void RegisterFunctions(sqlite3* Connection)
{
    sqlite3_limit(Connection, SQLITE_LIMIT_LENGTH, MaxBytes);
    RegisterTextKeys(Connection);
    for (const auto& group : {TextFunctions(), SearchFunctions(), DateFunctions(), FormatFunctions(), MathFunctions(),
                              ConversionFunctions(), FinancialFunctions(), InnerFunctions()}) {
        for (const FunctionInfo& function : group) {
            if (!function.Body)
                continue;
            const int flags = SQLITE_UTF16 | SQLITE_INNOCUOUS | (function.IsVolatile ? 0 : SQLITE_DETERMINISTIC);
            sqlite3_create_function_v2(Connection, SqlName(function).constData(), -1, flags,
                                       const_cast<FunctionInfo*>(&function), Run, nullptr, nullptr, nullptr);
        }
    }
    sqlite3_create_function_v2(Connection, "jet_rnd", 1, SQLITE_UTF16 | SQLITE_INNOCUOUS, new CRandom, Draw, nullptr, nullptr,
                               [](void* gone) { delete static_cast<CRandom*>(gone); });
    for (const AggregateInfo& aggregate : Aggregates)
        sqlite3_create_function_v2(Connection, aggregate.Name, 1, SQLITE_UTF16 | SQLITE_INNOCUOUS, nullptr, nullptr,
                                   aggregate.EachRow, aggregate.AtEnd, nullptr);
}

}
