// query/mdlCondition.cpp
// The beginning of a condition on a field, as it is put into a statement.

#include "query/mdlCondition.h"

#include "platform/jetsql/Characters.h"
#include "platform/jetsql/Keyword.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace mdlCondition
{

namespace
{

bool IsPlainName(const QString& Name)
{
    return !Name.isEmpty() && jetsql::ClassOf(Name[0].unicode()) == jetsql::CharClass::Letter &&
           jetsql::KeywordOf(Name) == jetsql::Keyword::None &&
           std::all_of(Name.begin(), Name.end(), [](QChar Unit) { return jetsql::IsNameUnit(Unit.unicode()); });
}

} // namespace

Condition On(const QString& FieldName, dao::FieldType Type)
{
    const QString name = IsPlainName(FieldName) ? FieldName : u'[' + FieldName + u']';
    switch (Type) {
    case dao::FieldType::Text:
    case dao::FieldType::Memo:
        return {name + u" Like '**'"_s, name.size() + 8};
    case dao::FieldType::Date:
        return {name + u" = ##"_s, name.size() + 4};
    default:
        return {name + u" = "_s, name.size() + 3};
    }
}

} // namespace mdlCondition
