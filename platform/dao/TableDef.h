// platform/dao/TableDef.h
// How a table is built: its fields and indexes.

#ifndef DAO_TABLEDEF_H
#define DAO_TABLEDEF_H

#include "platform/dao/Types.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace dao
{

/// One field of a table.
struct FieldDef
{
    QString Name;
    FieldType Type = FieldType::Long;
    int Size = 0;                 ///< Text: most characters in UTF-16 units, 1..255 (0 = 255); otherwise 0
    bool AllowZeroLength = false; ///< Text and Memo: whether '' can be stored
    bool Required = false;        ///< Null is refused (3314)
    QString Description;
};

/// One index of a table. Its name need be unique within the table only.
struct IndexDef
{
    QString Name;
    QStringList Fields;   ///< 1 to 10, in the order of the key
    bool Primary = false; ///< unique, and Null is refused (3058)
    bool Unique = false;
    bool Hidden = false; ///< serves speed only; not among the indexes that TableDefs tells
};

/// One table. Attributes is not 0 for the layer's own tables and for those made hidden.
struct TableDef
{
    /// Attributes of the tables in which the layer keeps what SQLite has no place for.
    static constexpr int SystemAttributes = -2147483646;
    /// Attributes of a table that its maker wants left out of lists.
    static constexpr int HiddenAttributes = 1;

    QString Name;
    std::vector<FieldDef> Fields;
    std::vector<IndexDef> Indexes;
    int Attributes = 0;

    /// The field of that name, letter case, width and kana alike; nullptr when there is none.
    const FieldDef* FindField(QStringView FieldName) const;
    /// The index of that name in the same sense.
    const IndexDef* FindIndex(QStringView IndexName) const;
};

} // namespace dao

#endif
