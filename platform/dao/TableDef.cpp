// platform/dao/TableDef.cpp
// Finding fields and indexes by name.

#include "platform/dao/TableDef.h"

#include "platform/text/Fold.h"

namespace dao
{

const FieldDef* TableDef::FindField(QStringView FieldName) const
{
    for (const FieldDef& field : Fields) {
        if (text::EqualText(field.Name, FieldName))
            return &field;
    }
    return nullptr;
}

const IndexDef* TableDef::FindIndex(QStringView IndexName) const
{
    for (const IndexDef& index : Indexes) {
        if (text::EqualText(index.Name, IndexName))
            return &index;
    }
    return nullptr;
}

} // namespace dao
