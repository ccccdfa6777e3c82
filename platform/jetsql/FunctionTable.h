// platform/jetsql/FunctionTable.h
// What functions the dialect has, what they take and what they give.

#ifndef JETSQL_FUNCTIONTABLE_H
#define JETSQL_FUNCTIONTABLE_H

#include "platform/jetsql/Value.h"

#include <QByteArray>
#include <QLatin1StringView>
#include <QStringView>

#include <span>

namespace jetsql {

class CCall;

/// A function as statements name it.
struct FunctionInfo
{
    enum class Form : quint8 {
        Plain,          ///< a function of ours
        Aggregate,      ///< one of SQLite's own, or of ours
        Case            ///< IIf, Switch, Choose: written as CASE, so that only the chosen side is worked out
    };
    enum class Gives : quint8 { Fixed, First, Common, Number, Mean, Text };

    QLatin1StringView Name;
    int Least = 0;                      ///< number of arguments
    int Most = 0;
    const char* Kinds = "";             ///< one letter an argument, the last one for all others; see below
    FieldType Type = FieldType::Text;
    void (*Body)(CCall&) = nullptr;     ///< Plain
    bool TakesNull = false;             ///< otherwise Null in any argument gives Null without a call
    bool IsTruth = false;               ///< gives -1 or 0
    Form How = Form::Plain;
    /// First: the type of the first argument; Common: of all; Number: as First, text as Double; Mean: Currency of
    /// Currency, otherwise Double; Text: Memo of Memo, otherwise Text.
    Gives What = Gives::Fixed;
    bool IsVolatile = false;            ///< another answer every time
};

// Kinds: t text, n number, d date, c condition, a any value as it is stored, y any value together with its type.

/// Every function is for SQLite one of this prefix, so that none of SQLite's own is touched.
inline constexpr QLatin1StringView FunctionPrefix{"jet_"};

std::span<const FunctionInfo> TextFunctions();
std::span<const FunctionInfo> SearchFunctions();
std::span<const FunctionInfo> FormatFunctions();
std::span<const FunctionInfo> DateFunctions();
std::span<const FunctionInfo> MathFunctions();
std::span<const FunctionInfo> FinancialFunctions();
std::span<const FunctionInfo> ConversionFunctions();
/// Aggregates and the CASE forms: they have no body.
std::span<const FunctionInfo> FormFunctions();
/// Operators and what else compiled statements call; no statement can name them.
std::span<const FunctionInfo> InnerFunctions();

/// Nullptr when the dialect has no function of that name; letter case does not count.
const FunctionInfo* FindFunction(QStringView Name);

/// The name that SQLite knows the function by.
QByteArray SqlName(const FunctionInfo& Function);

}

#endif
