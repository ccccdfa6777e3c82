// tests/support/DaoHelpers.cpp
// Rows as text, fields in one line.

#include "tests/support/DaoHelpers.h"

namespace mdlDaoHelpers
{

using namespace Qt::StringLiterals;

QStringList Rows(dao::Recordset& Source)
{
    QStringList rows;
    for (; !Source.Eof(); Source.MoveNext()) {
        QStringList row;
        for (int field = 0; field < Source.FieldCount(); ++field)
            row.append(Source.IsNull(field) ? u"NULL"_s : Source.Get(field).ToText());
        rows.append(row.join(u'|'));
    }
    return rows;
}

QStringList Rows(dao::Database& Db, const QString& Sql) { return Rows(*Db.OpenRecordset(Sql)); }

dao::FieldDef Field(const QString& Name, dao::FieldType Type, int Size, bool AllowZeroLength)
{
    dao::FieldDef field;
    field.Name = Name;
    field.Type = Type;
    field.Size = Size;
    field.AllowZeroLength = AllowZeroLength;
    return field;
}

} // namespace mdlDaoHelpers
