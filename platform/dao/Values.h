// platform/dao/Values.h
// Values on their way into SQLite and back.

#ifndef DAO_VALUES_H
#define DAO_VALUES_H

#include "platform/dao/Types.h"

struct sqlite3_stmt;

namespace dao::mdlValues
{

/// The value as a field of that type holds it; Null stays Null, but in a Boolean it is False. FieldType::Null leaves
/// it as it is. Throws 3421 for what does not convert and 6 for a number out of the type's range.
Value ConvertTo(FieldType Type, const Value& Source);

/// Gives parameter Index (from 1) a value. Text and bytes are not copied: Source must outlive the run of the statement.
void Bind(sqlite3_stmt* Statement, int Index, const Value& Source);

/// A column of the current row. Whatever the file really holds there is taken when it does not fit Type.
Value Read(sqlite3_stmt* Statement, int Column, FieldType Type, bool IsUtf16);

/// The column's text.
QString ReadText(sqlite3_stmt* Statement, int Column, bool IsUtf16);

} // namespace dao::mdlValues

#endif
