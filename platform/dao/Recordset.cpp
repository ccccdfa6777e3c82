// platform/dao/Recordset.cpp
// What is the same for all kinds: moving, fields by name, the pending edit.

#include "platform/dao/Recordset.h"

#include "platform/dao/Values.h"
#include "platform/text/Fold.h"

namespace dao
{

Recordset::Recordset(RecordsetType Type, std::vector<ResultColumn> Columns)
    : m_type(Type)
    , m_columns(std::move(Columns))
{}

Recordset::~Recordset() = default;

void Recordset::RequireOpen() const
{
    if (m_closed)
        throw jetsql::MakeError(3420);
    RequireConnection();
}

bool Recordset::Bof() const
{
    RequireOpen();
    Settle();
    return m_position.Bof();
}

bool Recordset::Eof() const
{
    RequireOpen();
    Settle();
    return m_position.Eof();
}

qint32 Recordset::RecordCount() const
{
    RequireOpen();
    return qint32(m_position.Visited());
}

void Recordset::MoveTo(CPosition::Step Step)
{
    RequireOpen();
    DropEdit();
    Settle();
    m_position.Move(Step, RowTotal());
    Moved();
}

void Recordset::Move(int Rows)
{
    RequireOpen();
    DropEdit();
    Settle();
    m_position.Move(Rows, RowTotal());
    Moved();
}

const ResultColumn& Recordset::Field(int Field) const
{
    if (Field < 0 || Field >= FieldCount())
        throw jetsql::MakeError(3265);
    return m_columns[size_t(Field)];
}

int Recordset::FieldIndex(QStringView Name) const
{
    // Nearly always the name is written as it was defined.
    for (int field = 0; field < FieldCount(); ++field) {
        if (m_columns[size_t(field)].Name == Name)
            return field;
    }
    for (int field = 0; field < FieldCount(); ++field) {
        if (text::EqualText(m_columns[size_t(field)].Name, Name))
            return field;
    }
    throw jetsql::MakeError(3265);
}

const Value* Recordset::Pending(int Field) const
{
    if (m_editMode == EditMode::None)
        return nullptr;
    const std::optional<Value>& pending = m_edit[size_t(Field)];
    if (pending)
        return &*pending;
    if (m_editMode == EditMode::Edit)
        return nullptr;
    static const Value null;
    static const Value notSet = Value::FromBoolean(false);
    return m_columns[size_t(Field)].Type == FieldType::Boolean ? &notSet : &null;
}

const Value* Recordset::ForReading(int Field) const
{
    RequireOpen();
    if (Field < 0 || Field >= FieldCount())
        throw jetsql::MakeError(3265);
    return Pending(Field);
}

Value Recordset::Get(int Field) const
{
    const Value* pending = ForReading(Field);
    return pending ? *pending : Stored(Field);
}

qint32 Recordset::Long(int Field) const
{
    const Value* pending = ForReading(Field);
    return pending ? pending->ToLong() : StoredLong(Field);
}

double Recordset::Double(int Field) const
{
    const Value* pending = ForReading(Field);
    return pending ? pending->ToDouble() : StoredDouble(Field);
}

bool Recordset::Boolean(int Field) const
{
    const Value* pending = ForReading(Field);
    if (pending)
        return pending->ToBoolean();
    return m_columns[size_t(Field)].Type == FieldType::Boolean ? StoredLong(Field) != 0 : Stored(Field).ToBoolean();
}

QString Recordset::Text(int Field) const
{
    const Value* pending = ForReading(Field);
    return pending ? pending->ToText() : StoredText(Field);
}

bool Recordset::IsNull(int Field) const
{
    const Value* pending = ForReading(Field);
    return pending ? pending->IsNull() : StoredNull(Field);
}

void Recordset::BeginEdit(EditMode Mode)
{
    RequireOpen();
    RequireEditable();
    DropEdit();
    if (Mode == EditMode::Edit)
        RequireRow();
    m_edit.assign(m_columns.size(), std::nullopt);
    m_editMode = Mode;
}

void Recordset::AddNew()
{
    BeginEdit(EditMode::Add);
    if (Counter() >= 0)
        m_edit[size_t(Counter())] = NextNumber();
}

void Recordset::Edit() { BeginEdit(EditMode::Edit); }

namespace
{

/// Assigned to a field, a number that does not fit is a value of the wrong type like any other.
Value Converted(const Value& NewValue, FieldType Type)
{
    try {
        return mdlValues::ConvertTo(Type, NewValue);
    } catch (const Error&) {
        throw jetsql::MakeError(3421);
    }
}

} // namespace

void Recordset::Set(int Field, const Value& NewValue)
{
    RequireOpen();
    const ResultColumn& column = this->Field(Field);
    if (m_editMode == EditMode::None)
        throw jetsql::MakeError(3020);
    if (column.SourceField.isEmpty())
        throw jetsql::MakeError(3327, {column.Name});
    if (Field == Counter() && m_editMode == EditMode::Edit)
        throw jetsql::MakeError(3113, {column.Name});
    Value value = Converted(NewValue, column.Type);
    const qsizetype size = jetsql::IsBytes(value.Type()) ? value.BytesRef().size() : value.TextRef().size();
    if (column.Size > 0 && size > column.Size)
        throw jetsql::MakeError(3163);
    m_edit[size_t(Field)] = std::move(value);
}

void Recordset::Update()
{
    RequireOpen();
    if (m_editMode == EditMode::None)
        throw jetsql::MakeError(3020);
    if (m_editMode == EditMode::Edit)
        StoreChanges(m_edit);
    else
        StoreNew(m_edit);
    DropEdit();
}

void Recordset::CancelUpdate()
{
    RequireOpen();
    if (m_editMode == EditMode::None)
        throw jetsql::MakeError(3020);
    DropEdit();
}

void Recordset::Delete()
{
    RequireOpen();
    RequireEditable();
    DropEdit();
    RequireRow();
    RemoveCurrent();
}

void Recordset::DropEdit()
{
    m_editMode = EditMode::None;
    m_edit.clear();
}

void Recordset::SetIndex(QStringView)
{
    RequireOpen();
    throw jetsql::MakeError(3251);
}

void Recordset::Seek(QStringView, const std::vector<Value>&)
{
    RequireOpen();
    throw jetsql::MakeError(3251);
}

void Recordset::RequireEditable() const { throw jetsql::MakeError(3251); }

void Recordset::StoreChanges(const EditBuffer&) { RequireEditable(); }

void Recordset::StoreNew(const EditBuffer&) { RequireEditable(); }

void Recordset::RemoveCurrent() { RequireEditable(); }

void Recordset::Close()
{
    if (m_closed)
        return;
    DropEdit();
    Release();
    m_closed = true;
}

} // namespace dao
