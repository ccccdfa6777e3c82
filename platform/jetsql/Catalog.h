// platform/jetsql/Catalog.h
// What the compiler of statements wants to know about the file: tables with their fields, saved queries.

#ifndef JETSQL_CATALOG_H
#define JETSQL_CATALOG_H

#include "platform/jetsql/Value.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace jetsql {

/// A field as it was declared.
struct FieldInfo
{
    QString Name;
    FieldType Type = FieldType::Long;
    int Size = 0;                   ///< characters of a Text field; 0 for every other type
    bool AllowZeroLength = false;
    bool Required = false;
    bool AutoIncrement = false;
};

/// A table. In the file it has the same name, and a rowid.
struct TableInfo
{
    QString Name;
    std::vector<FieldInfo> Fields;
    std::vector<std::vector<int>> UniqueKeys;   ///< field numbers of each unique index
};

/// The names of one open database. Look-ups disregard letter case.
class Catalog
{
public:
    virtual ~Catalog() = default;
    /// Nullptr when there is no such table; otherwise valid until the structure of the file changes.
    virtual const TableInfo* FindTable(QStringView Name) const = 0;
    /// The text of a saved query, nullptr when there is none.
    virtual const QString* FindQuery(QStringView Name) const = 0;
};

}

#endif
