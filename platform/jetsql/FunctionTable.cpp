// platform/jetsql/FunctionTable.cpp
// What functions the dialect has, what they take and what they give.

#include "platform/jetsql/FunctionTable.h"

#include <array>

using namespace Qt::StringLiterals;

namespace jetsql {

namespace {

using Form = FunctionInfo::Form;
using Gives = FunctionInfo::Gives;

constexpr int AnyNumber = 100;   // SQLite takes 127 arguments; CASE forms do not mind

constexpr FunctionInfo Forms[] = {
    {.Name = "Count"_L1, .Least = 1, .Most = 1, .Kinds = "a", .Type = FieldType::Long, .How = Form::Aggregate},
    {.Name = "Sum"_L1, .Least = 1, .Most = 1, .Kinds = "n", .How = Form::Aggregate, .What = Gives::Mean},
    {.Name = "Avg"_L1, .Least = 1, .Most = 1, .Kinds = "n", .How = Form::Aggregate, .What = Gives::Mean},
    {.Name = "Min"_L1, .Least = 1, .Most = 1, .Kinds = "a", .How = Form::Aggregate, .What = Gives::First},
    {.Name = "Max"_L1, .Least = 1, .Most = 1, .Kinds = "a", .How = Form::Aggregate, .What = Gives::First},
    {.Name = "First"_L1, .Least = 1, .Most = 1, .Kinds = "a", .How = Form::Aggregate, .What = Gives::First},
    {.Name = "Last"_L1, .Least = 1, .Most = 1, .Kinds = "a", .How = Form::Aggregate, .What = Gives::First},
    {.Name = "StDev"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .How = Form::Aggregate},
    {.Name = "StDevP"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .How = Form::Aggregate},
    {.Name = "Var"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .How = Form::Aggregate},
    {.Name = "VarP"_L1, .Least = 1, .Most = 1, .Kinds = "n", .Type = FieldType::Double, .How = Form::Aggregate},
    {.Name = "IIf"_L1, .Least = 3, .Most = 3, .Kinds = "caa", .How = Form::Case, .What = Gives::Common},
    {.Name = "Switch"_L1, .Least = 2, .Most = AnyNumber, .Kinds = "ca", .How = Form::Case, .What = Gives::Common},
    {.Name = "Choose"_L1, .Least = 2, .Most = AnyNumber, .Kinds = "na", .How = Form::Case, .What = Gives::Common},
};

}

std::span<const FunctionInfo> FormFunctions() { return Forms; }

const FunctionInfo* FindFunction(QStringView Name)
{
    for (const auto& group : {FormFunctions(), TextFunctions(), SearchFunctions(), DateFunctions(), FormatFunctions(),
                              MathFunctions(), ConversionFunctions(), FinancialFunctions()}) {
        for (const FunctionInfo& function : group) {
            if (Name.compare(function.Name, Qt::CaseInsensitive) == 0)
                return &function;
        }
    }
    return nullptr;
}

QByteArray SqlName(const FunctionInfo& Function)
{
    return QByteArray(FunctionPrefix.data(), FunctionPrefix.size()) + QByteArray(Function.Name.data(), Function.Name.size()).toLower();
}

}
