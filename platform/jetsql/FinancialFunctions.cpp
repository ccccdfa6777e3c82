// platform/jetsql/FinancialFunctions.cpp
// The functions of the dialect for annuities and depreciation. Money paid out is negative, money received positive.

#include "platform/jetsql/CCall.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/FunctionTable.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

double NumberOr(const CCall& Call, int Index, double Otherwise)
{
    return Index < Call.Count() ? Call.Number(Index) : Otherwise;
}

/// Payments of one amount each period. They fall due at the end of a period, or at its beginning.
struct Annuity
{
    double Rate;
    double Periods;
    double Payment;
    double Present;
    bool IsDueFirst;

    /// How much one unit paid each period comes to, with the interest of the first period where it is due first.
    double Growth() const { return Rate == 0 ? Periods : (1 + Rate * IsDueFirst) * (std::pow(1 + Rate, Periods) - 1) / Rate; }
    double Future() const { return -(Present * std::pow(1 + Rate, Periods) + Payment * Growth()); }
};

double PaymentOf(double Rate, double Periods, double Present, double Future, bool IsDueFirst)
{
    Require(Periods != 0);
    const Annuity annuity{Rate, Periods, 0, Present, IsDueFirst};
    return (annuity.Future() - Future) / annuity.Growth();
}

// The part of payment number Period that is interest on what is owed by then.
double InterestOf(double Rate, double Period, double Payment, double Present, bool IsDueFirst)
{
    if (IsDueFirst && Period <= 1)
        return 0;
    const double begun = IsDueFirst ? Present + Payment : Present;
    const double paid = IsDueFirst ? Period - 2 : Period - 1;
    return Annuity{Rate, paid, Payment, begun, false}.Future() * Rate;
}

// FV(rate, periods, payment, present, due first)
void Fv(CCall& Call)
{
    const bool isDueFirst = NumberOr(Call, 4, 0) != 0;
    Call.SetNumber(Annuity{Call.Number(0), Call.Number(1), Call.Number(2), NumberOr(Call, 3, 0), isDueFirst}.Future());
}

// PV(rate, periods, payment, future, due first)
void Pv(CCall& Call)
{
    const Annuity annuity{Call.Number(0), Call.Number(1), Call.Number(2), 0, NumberOr(Call, 4, 0) != 0};
    Call.SetNumber((annuity.Future() - NumberOr(Call, 3, 0)) / std::pow(1 + annuity.Rate, annuity.Periods));
}

// Pmt(rate, periods, present, future, due first)
void Pmt(CCall& Call)
{
    Call.SetNumber(PaymentOf(Call.Number(0), Call.Number(1), Call.Number(2), NumberOr(Call, 3, 0), NumberOr(Call, 4, 0) != 0));
}

/// IPmt and PPmt (rate, period, periods, present, future, due first): the two parts of one payment.
template <bool IsInterest>
void PartOfPayment(CCall& Call)
{
    const double rate = Call.Number(0), period = Call.Number(1), periods = Call.Number(2), present = Call.Number(3);
    const bool isDueFirst = NumberOr(Call, 5, 0) != 0;
    Require(period >= 1 && period < periods + 1);
    const double payment = PaymentOf(rate, periods, present, NumberOr(Call, 4, 0), isDueFirst);
    const double interest = InterestOf(rate, period, payment, present, isDueFirst);
    Call.SetNumber(IsInterest ? interest : payment - interest);
}

// NPer(rate, payment, present, future, due first)
void Nper(CCall& Call)
{
    const double rate = Call.Number(0), payment = Call.Number(1), present = Call.Number(2), future = NumberOr(Call, 3, 0);
    Require(rate > -1);
    if (rate == 0) {
        Require(payment != 0);
        return Call.SetNumber(-(present + future) / payment);
    }
    const double yearly = payment * (NumberOr(Call, 4, 0) != 0 ? 1 + rate : 1) / rate;
    const double ratio = (yearly - future) / (yearly + present);
    Require(ratio > 0);
    Call.SetNumber(std::log(ratio) / std::log(1 + rate));
}

// Rate(periods, payment, present, future, due first, guess) by the secant; error 5 where forty steps do not get there.
void Rate(CCall& Call)
{
    constexpr int maxSteps = 40;
    const double periods = Call.Number(0), future = NumberOr(Call, 3, 0), guess = NumberOr(Call, 5, 0.1);
    const double near = std::max(1e-7, 1e-12 * (std::fabs(Call.Number(1)) * periods + std::fabs(Call.Number(2)) + std::fabs(future)));
    Require(periods > 0);
    const auto missing = [&](double rate) {
        return Annuity{rate, periods, Call.Number(1), Call.Number(2), NumberOr(Call, 4, 0) != 0}.Future() - future;
    };
    double before = guess, rate = guess != 0 ? guess / 2 : 0.05;
    double wrongBefore = missing(before), wrong = missing(rate);
    for (int step = 0; step < maxSteps && std::isfinite(rate) && std::fabs(wrong) > near; ++step) {
        if (wrong == wrongBefore)
            wrongBefore = missing(before += 1e-5);
        const double next = rate - (rate - before) * wrong / (wrong - wrongBefore);
        before = std::exchange(rate, next);
        wrongBefore = std::exchange(wrong, missing(rate));
    }
    Require(std::isfinite(rate) && std::fabs(wrong) <= near);
    Call.SetNumber(rate);
}

// NPV(rate, value, value, …): each value a period after the one before.
void Npv(CCall& Call)
{
    const double rate = Call.Number(0);
    Require(rate != -1);
    double sum = 0;
    for (int i = 1; i < Call.Count(); ++i)
        sum += Call.Number(i) / std::pow(1 + rate, i);
    Call.SetNumber(sum);
}

// SLN(cost, salvage, life)
void Sln(CCall& Call)
{
    Require(Call.Number(2) != 0);
    Call.SetNumber((Call.Number(0) - Call.Number(1)) / Call.Number(2));
}

// SYD(cost, salvage, life, period)
void Syd(CCall& Call)
{
    const double salvage = Call.Number(1), life = Call.Number(2), period = Call.Number(3);
    Require(salvage >= 0 && period > 0 && period <= life);
    Call.SetNumber((Call.Number(0) - salvage) * 2 * (life - period + 1) / (life * (life + 1)));
}

// DDB(cost, salvage, life, period, factor): never below what is left at the end.
void Ddb(CCall& Call)
{
    const double cost = Call.Number(0), salvage = Call.Number(1), life = Call.Number(2), period = Call.Number(3);
    const double share = NumberOr(Call, 4, 2) / life;
    Require(salvage >= 0 && life > 0 && period > 0 && period <= life && share > 0);
    const double kept = std::max(1 - share, 0.0);
    const double before = std::max(cost * std::pow(kept, period - 1), salvage), after = std::max(cost * std::pow(kept, period), salvage);
    Call.SetNumber(cost <= 0 ? 0 : std::max(before - after, 0.0));
}

constexpr FieldType Double = FieldType::Double;

constexpr FunctionInfo Functions[] = {
    {.Name = "FV"_L1, .Least = 3, .Most = 5, .Kinds = "n", .Type = Double, .Body = Fv},
    {.Name = "PV"_L1, .Least = 3, .Most = 5, .Kinds = "n", .Type = Double, .Body = Pv},
    {.Name = "Pmt"_L1, .Least = 3, .Most = 5, .Kinds = "n", .Type = Double, .Body = Pmt},
    {.Name = "IPmt"_L1, .Least = 4, .Most = 6, .Kinds = "n", .Type = Double, .Body = PartOfPayment<true>},
    {.Name = "PPmt"_L1, .Least = 4, .Most = 6, .Kinds = "n", .Type = Double, .Body = PartOfPayment<false>},
    {.Name = "NPer"_L1, .Least = 3, .Most = 5, .Kinds = "n", .Type = Double, .Body = Nper},
    {.Name = "Rate"_L1, .Least = 3, .Most = 6, .Kinds = "n", .Type = Double, .Body = Rate},
    {.Name = "NPV"_L1, .Least = 2, .Most = 29, .Kinds = "n", .Type = Double, .Body = Npv},
    {.Name = "SLN"_L1, .Least = 3, .Most = 3, .Kinds = "n", .Type = Double, .Body = Sln},
    {.Name = "SYD"_L1, .Least = 4, .Most = 4, .Kinds = "n", .Type = Double, .Body = Syd},
    {.Name = "DDB"_L1, .Least = 4, .Most = 5, .Kinds = "n", .Type = Double, .Body = Ddb},
};

}

std::span<const FunctionInfo> FinancialFunctions() { return Functions; }

}
