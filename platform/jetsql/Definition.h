// platform/jetsql/Definition.h
// What a CREATE, ALTER or DROP statement asks for.

#ifndef JETSQL_DEFINITION_H
#define JETSQL_DEFINITION_H

#include "platform/jetsql/Catalog.h"

#include <QString>

#include <vector>

namespace jetsql {

/// A name as the statement writes it, and where: in UTF-16 units, -1 for a name that is not in the statement.
struct PlacedName
{
    QString Text;
    int Offset = -1;
};

/// A field to be made. Size is what the statement says, however large; 0 where it says nothing.
struct FieldDefinition : FieldInfo
{
    int Offset = -1;
};

/// One field of a key.
struct KeyPart
{
    PlacedName Field;
    bool IsDescending = false;
};

/// An index or a constraint to be made.
struct KeyDefinition
{
    enum class Kind { Index, Unique, Primary, NotNull, Foreign };

    Kind What = Kind::Index;
    PlacedName Name;                        ///< empty where the statement gives none
    std::vector<KeyPart> Fields;
    bool RefusesNull = false;               ///< WITH DISALLOW NULL
    bool IgnoresNull = false;               ///< WITH IGNORE NULL
    PlacedName ForeignTable;                ///< Foreign: the table that must hold the value
    std::vector<KeyPart> ForeignFields;     ///< empty: that table's primary key
};

/// One statement. Names are not looked up: whether they exist, and may be used so, shows when it runs.
struct Definition
{
    enum class Kind { CreateTable, AddField, DropField, AddConstraint, DropConstraint, CreateIndex, DropIndex, DropTable };

    Kind What = Kind::CreateTable;
    PlacedName Table;
    PlacedName Name;                        ///< of the field, constraint or index that is dropped
    std::vector<FieldDefinition> Fields;
    std::vector<KeyDefinition> Keys;
};

}

#endif
