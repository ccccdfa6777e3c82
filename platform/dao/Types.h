// platform/dao/Types.h
// The names that all database objects share.

#ifndef DAO_TYPES_H
#define DAO_TYPES_H

#include "platform/jetsql/Compile.h"
#include "platform/jetsql/Error.h"
#include "platform/jetsql/Value.h"

namespace dao
{

using Error = jetsql::Error;
using FieldType = jetsql::FieldType;
using ParameterInfo = jetsql::ParameterInfo;
using QueryType = jetsql::QueryType;
using ResultColumn = jetsql::ResultColumn;
using Value = jetsql::Value;

/// What an action statement does with a row that breaks a rule.
enum class ExecuteOption {
    None,       ///< rows that break a unique index, a required field or a field rule are skipped without a word
    FailOnError ///< the first such row raises its error and nothing of the statement remains
};

/// Kinds of recordsets; the numbers are the engine's own.
enum class RecordsetType {
    Table = 1,   ///< one table with all its rows, ordered by an index; can be edited and searched with Seek
    Dynaset = 2, ///< the rows of a query, each read when it becomes current; editable over a single table
    Snapshot = 4 ///< the rows of a query as they were, in memory; read-only
};

} // namespace dao

#endif
