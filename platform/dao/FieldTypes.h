// platform/dao/FieldTypes.h
// The words for field types in the file, as anyone sees them in the schema.

#ifndef DAO_FIELDTYPES_H
#define DAO_FIELDTYPES_H

#include "platform/dao/TableDef.h"

#include <QString>

namespace dao::mdlFieldTypes
{

/// Most characters of a Text or Binary field.
constexpr int MaxTextSize = 255;

/// The declared type, for instance "TEXT(255)" or "DATETIME REAL". Where the engine's word alone would make SQLite turn
/// text into numbers or whole dates into integers, SQLite's own type follows it. Empty for no type.
QString Declared(const FieldDef& Field);

/// Type and size of a declared type. Other programs' words are taken by their meaning; 0 as size where none is given.
void Read(const QString& DeclaredType, FieldDef& Field);

} // namespace dao::mdlFieldTypes

#endif
