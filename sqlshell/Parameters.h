// sqlshell/Parameters.h
// Values from the command line for the parameters of a statement.

#ifndef SQLSHELL_PARAMETERS_H
#define SQLSHELL_PARAMETERS_H

#include "platform/dao/Database.h"

#include <QStringList>

#include <utility>
#include <vector>

namespace sqlshell::mdlParameters
{

using CGiven = std::vector<std::pair<QString, QString>>;

/// What was typed: Null, a text in quotes, a date in "#", otherwise the text itself.
dao::Value ReadValue(const QString& Typed);

/// Gives the query's parameters their values, found by their names as the database compares texts; the last one of a
/// name counts. Returns the names that have none. Throws 3421 naming the parameter where a value does not convert to
/// the declared type.
QStringList Fill(dao::QueryDef& Query, const CGiven& Given);

} // namespace sqlshell::mdlParameters

#endif
