// sqlshell/Parameters.cpp
// Reading and giving values.

#include "sqlshell/Parameters.h"

#include "platform/text/Fold.h"

using namespace Qt::StringLiterals;

namespace sqlshell::mdlParameters
{

namespace
{

const QString* Find(const CGiven& Given, const QString& Name)
{
    for (auto given = Given.rbegin(); given != Given.rend(); ++given) {
        if (text::EqualText(given->first, Name))
            return &given->second;
    }
    return nullptr;
}

void Give(dao::QueryDef& Query, int Index, const QString& Name, const QString& Typed)
{
    try {
        Query.SetParameter(Index, ReadValue(Typed));
    } catch (dao::Error& error) {
        error.Description = u"パラメータ [%1] の値 %2: %3"_s.arg(Name, Typed, error.Description);
        throw;
    }
}

} // namespace

dao::Value ReadValue(const QString& Typed)
{
    const QString typed = Typed.trimmed();
    if (typed.compare(u"Null"_s, Qt::CaseInsensitive) == 0)
        return {};
    if (!typed.startsWith(u'\'') && !typed.startsWith(u'"') && !typed.startsWith(u'#'))
        return dao::Value::FromText(Typed);
    try {
        const jetsql::Shape shape = jetsql::TakeShape(typed);
        if (shape.Literals.size() == 1 && shape.Key.size() == 1)
            return shape.Literals.front();
    } catch (const dao::Error&) {
        // A text that only begins like a constant is itself.
    }
    return dao::Value::FromText(Typed);
}

QStringList Fill(dao::QueryDef& Query, const CGiven& Given)
{
    QStringList missing;
    const std::vector<dao::ParameterInfo> parameters = Query.Parameters();
    for (size_t i = 0; i < parameters.size(); ++i) {
        const QString& name = parameters[i].Name;
        if (const QString* typed = Find(Given, name))
            Give(Query, int(i), name, *typed);
        else
            missing.append(name);
    }
    return missing;
}

} // namespace sqlshell::mdlParameters
