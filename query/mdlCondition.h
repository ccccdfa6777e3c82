// query/mdlCondition.h
// The beginning of a condition on a field, as it is put into a statement.

#ifndef QUERY_MDLCONDITION_H
#define QUERY_MDLCONDITION_H

#include "platform/dao/Types.h"

#include <QString>

namespace mdlCondition
{

struct Condition
{
    QString Text;
    qsizetype Caret = 0; ///< where in Text the value is to be typed
};

/// "Name Like '**'" for a text, "Name = ##" for a date, "Name = " for anything else. A name that the dialect could not
/// tell from its neighbours stands in brackets.
Condition On(const QString& FieldName, dao::FieldType Type);

} // namespace mdlCondition

#endif // QUERY_MDLCONDITION_H
