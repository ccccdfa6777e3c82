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
    int Size = 0;                 ///< Text: most UTF-16 units, Binary: most bytes, 1..255 (0 = 255); otherwise 0
    bool AllowZeroLength = false; ///< Text and Memo: whether '' can be stored
    bool Required = false;        ///< Null is refused (3314)
    QString Description;
    bool AutoIncrement = false; ///< Long only: a new row gets the next number unless it is given one

    /// The engine's own flags: 1 fixed size or 2 variable size, and 16 where it counts by itself.
    int Attributes() const;
    /// Size as the engine tells it: bytes of fixed types, characters of Text, 0 for Memo and LongBinary.
    int DataSize() const;
};

/// One index of a table. Its name need be unique within the table only.
struct IndexDef
{
    QString Name;
    QStringList Fields;   ///< 1 to 10, in the order of the key
    bool Primary = false; ///< unique, and Null is refused (3058)
    bool Unique = false;
    bool Hidden = false;         ///< serves speed only; not among the indexes that TableDefs tells
    QStringList Descending = {}; ///< those of Fields that are ordered from high to low
    bool Required = false;       ///< Null is refused (3058)
    bool IgnoreNull = false;     ///< rows with Null in one of the fields are not in the index
};

/// A rule of a table that is no index.
struct ConstraintDef
{
    enum class Kind {
        NotNull, ///< the fields are required; kept for its name only
        Foreign  ///< where no field is Null, the other table must have a row with these values (3201, 3200)
    };

    QString Name;
    Kind What = Kind::NotNull;
    QStringList Fields;
    QString ForeignTable;
    QStringList ForeignFields; ///< as many as Fields; there is a unique index over them
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
    std::vector<ConstraintDef> Constraints = {};

    /// The field of that name, letter case, width and kana alike; nullptr when there is none.
    const FieldDef* FindField(QStringView FieldName) const;
    /// The index of that name in the same sense.
    const IndexDef* FindIndex(QStringView IndexName) const;
    const ConstraintDef* FindConstraint(QStringView ConstraintName) const;
    /// The primary index, nullptr when there is none.
    const IndexDef* Primary() const;
    /// The field that counts by itself, nullptr when there is none.
    const FieldDef* Counter() const;
};

} // namespace dao

#endif
