// tests/support/DaoHelpers.h
// Short words for what tests of the database layer do all the time.

#ifndef SUPPORT_DAOHELPERS_H
#define SUPPORT_DAOHELPERS_H

#include "platform/dao/Database.h"

#include <QStringList>

namespace mdlDaoHelpers
{

/// The number of the error that Work throws, 0 when it throws none.
template<class Function> int ErrorNumber(Function&& Work)
{
    try {
        Work();
        return 0;
    } catch (const dao::Error& error) {
        return error.Number;
    }
}

/// All rows from the current one on, values joined by "|", Null as "NULL".
QStringList Rows(dao::Recordset& Source);

/// The rows of a query.
QStringList Rows(dao::Database& Db, const QString& Sql);

/// A field; Size 0 leaves the type's own.
dao::FieldDef Field(const QString& Name, dao::FieldType Type, int Size = 0, bool AllowZeroLength = false);

} // namespace mdlDaoHelpers

#endif
