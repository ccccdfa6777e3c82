// platform/dao/TableDef.cpp
// Finding fields and indexes by name.

#include "platform/dao/TableDef.h"

#include "platform/text/Fold.h"

#include <algorithm>

namespace dao
{

namespace
{

constexpr int FixedSize = 1;
constexpr int VariableSize = 2;
constexpr int CountsByItself = 16;

} // namespace

int FieldDef::Attributes() const
{
    const bool isVariable = jetsql::IsText(Type) || Type == FieldType::Binary || Type == FieldType::LongBinary;
    return (isVariable ? VariableSize : FixedSize) | (AutoIncrement ? CountsByItself : 0);
}

int FieldDef::DataSize() const
{
    switch (Type) {
    case FieldType::Boolean:
    case FieldType::Byte:
        return 1;
    case FieldType::Integer:
        return 2;
    case FieldType::Long:
    case FieldType::Single:
        return 4;
    case FieldType::Currency:
    case FieldType::Double:
    case FieldType::Date:
        return 8;
    case FieldType::Guid:
        return 16;
    default:
        return Size;
    }
}

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

const ConstraintDef* TableDef::FindConstraint(QStringView ConstraintName) const
{
    for (const ConstraintDef& constraint : Constraints) {
        if (text::EqualText(constraint.Name, ConstraintName))
            return &constraint;
    }
    return nullptr;
}

const IndexDef* TableDef::Primary() const
{
    const auto found =
        std::find_if(Indexes.begin(), Indexes.end(), [](const IndexDef& index) { return index.Primary; });
    return found == Indexes.end() ? nullptr : &*found;
}

const FieldDef* TableDef::Counter() const
{
    const auto found =
        std::find_if(Fields.begin(), Fields.end(), [](const FieldDef& field) { return field.AutoIncrement; });
    return found == Fields.end() ? nullptr : &*found;
}

} // namespace dao
