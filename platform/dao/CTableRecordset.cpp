// platform/dao/CTableRecordset.cpp
// Order, Seek and the changes of a table.

#include "platform/dao/CTableRecordset.h"

#include "platform/dao/SchemaText.h"
#include "platform/dao/Values.h"

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

std::vector<ResultColumn> ColumnsOf(const TableDef& Table)
{
    std::vector<ResultColumn> columns;
    for (const FieldDef& field : Table.Fields)
        columns.push_back({field.Name, field.Type, field.Size, Table.Name, field.Name});
    return columns;
}

} // namespace

CTableRecordset::CTableRecordset(std::shared_ptr<CSession> Session, const TableDef& Table)
    : Recordset(RecordsetType::Table, ColumnsOf(Table))
    , m_writer(std::move(Session), Table.Name, Columns())
    , m_table(Table)
    , m_row(Columns().size())
{}

qint32 CTableRecordset::RecordCount() const
{
    RequireOpen();
    return qint32(m_writer.Connection().RunForNumber("SELECT count(*) FROM " + mdlSchemaText::Quoted(m_table.Name)));
}

void CTableRecordset::Settle() const
{
    if (!m_isSettled)
        ReadRowIds();
    if (!m_isOpened)
        Position().Open(RowTotal());
    m_isOpened = true;
    if (!m_sought)
        return;
    const qsizetype found = m_rowIds.IndexOf(*m_sought);
    if (found < 0)
        Position().Lose();
    else
        Position().Set(found);
    m_sought.reset();
}

void CTableRecordset::ReadRowIds() const
{
    m_rowIds.Clear();
    CRun run(m_writer.Connection(),
             "SELECT " + m_writer.RowId() + " FROM " + mdlSchemaText::Quoted(m_table.Name) + Order(Direction::Forward));
    while (run.Step())
        m_rowIds.Append(run.Number(0));
    m_isSettled = true;
}

void CTableRecordset::Unsettle()
{
    if (m_isSettled && Position().OnRow() && !m_sought)
        m_sought = m_rowIds.At(Position().Row());
    m_isSettled = false;
}

qint64 CTableRecordset::CurrentRowId() const
{
    if (m_sought)
        return *m_sought;
    Settle();
    return m_rowIds.At(Position().Row());
}

void CTableRecordset::RequireRow() const { CurrentRowId(); }

void CTableRecordset::RequireEditable() const
{
    if (m_writer.Connection().IsReadOnly())
        throw jetsql::MakeError(3027);
}

Value CTableRecordset::Stored(int Field) const
{
    const qint64 rowId = CurrentRowId();
    if (!m_isRead && !m_writer.Read(rowId, m_row))
        throw jetsql::MakeError(3167);
    m_isRead = true;
    return m_row[size_t(Field)];
}

bool CTableRecordset::ChangesOrder(const EditBuffer& Changes) const
{
    for (int field = 0; field < FieldCount(); ++field) {
        if (Changes[size_t(field)] && m_keyFields.contains(Field(field).Name))
            return true;
    }
    return false;
}

void CTableRecordset::StoreChanges(const EditBuffer& Changes)
{
    if (!m_writer.Change(CurrentRowId(), Changes))
        throw jetsql::MakeError(3167);
    m_isRead = false;
    if (ChangesOrder(Changes))
        Unsettle();
}

void CTableRecordset::StoreNew(const EditBuffer& Fields)
{
    m_writer.Add(Fields);
    Unsettle();
    if (m_isOpened)
        Position().RowAdded();
}

void CTableRecordset::RemoveCurrent()
{
    Settle();
    const qsizetype row = Position().Row();
    if (!m_writer.Remove(m_rowIds.At(row)))
        throw jetsql::MakeError(3167);
    m_rowIds.Remove(row);
    Position().RowDeleted();
    m_isRead = false;
}

void CTableRecordset::SetIndex(QStringView IndexName)
{
    RequireOpen();
    DropEdit();
    const IndexDef* index = m_table.FindIndex(IndexName);
    if (!IndexName.isEmpty() && !index)
        throw jetsql::MakeError(3015);
    m_keyFields = index ? index->Fields : QStringList();
    m_descending = index ? index->Descending : QStringList();
    m_isSettled = false;
    m_isOpened = false;
    m_sought.reset();
    m_isRead = false;
}

QByteArray CTableRecordset::KeyField(const QString& Name) const
{
    const FieldDef* field = m_table.FindField(Name);
    return mdlSchemaText::Quoted(Name) + (field && jetsql::IsText(field->Type) ? " COLLATE JETTEXT" : "");
}

QByteArray CTableRecordset::Order(Direction Way) const
{
    QByteArray order = " ORDER BY ";
    for (const QString& field : m_keyFields) {
        const bool isDown = (Way == Direction::Back) != m_descending.contains(field);
        order += KeyField(field) + (isDown ? " DESC, " : " ASC, ");
    }
    return order + m_writer.RowId() + (Way == Direction::Back ? " DESC" : " ASC");
}

QByteArray CTableRecordset::Condition(QStringView Operator, size_t KeyCount) const
{
    QByteArrayList fields;
    QByteArrayList places;
    QByteArrayList equal;
    for (qsizetype key = 0; key < m_keyFields.size(); ++key) {
        const bool isGiven = size_t(key) < KeyCount;
        const QByteArray place = isGiven ? "?" + QByteArray::number(key + 1) : QByteArray("NULL");
        equal += KeyField(m_keyFields[key]) + " IS " + place;
        if (isGiven) {
            fields += KeyField(m_keyFields[key]);
            places += place;
        }
    }
    if (Operator == u"="_s)
        return equal.join(" AND ");
    if (!m_descending.isEmpty())
        return MixedCondition(Operator, fields, places);
    return "(" + fields.join(", ") + ") " + Operator.toUtf8() + " (" + places.join(", ") + ")";
}

// Further on in an index is what comes later in its order, which goes down for some of its fields.
QByteArray CTableRecordset::MixedCondition(QStringView Operator, const QByteArrayList& Fields,
                                           const QByteArrayList& Places) const
{
    const auto sign = [&](qsizetype key) {
        return (Operator.startsWith(u'<') != m_descending.contains(m_keyFields[key])) ? " <" : " >";
    };
    QByteArrayList same;
    QByteArrayList alternatives;
    for (qsizetype key = 0; key < Fields.size(); ++key) {
        alternatives += (same + QByteArrayList{Fields[key] + sign(key) + ' ' + Places[key]}).join(" AND ");
        same += Fields[key] + " IS " + Places[key];
    }
    if (Operator.endsWith(u'='))
        alternatives += same.join(" AND ");
    // The first part is implied; with it SQLite begins at the right place of its index.
    return Fields[0] + sign(0) + "= " + Places[0] + " AND (" + alternatives.join(" OR ") + ")";
}

std::vector<Value> CTableRecordset::SeekKeys(const std::vector<Value>& Keys) const
{
    std::vector<Value> keys;
    for (const Value& key : Keys) {
        const FieldDef* field = m_table.FindField(m_keyFields[qsizetype(keys.size())]);
        keys.push_back(key.IsNull() ? key : mdlValues::ConvertTo(field->Type, key));
    }
    return keys;
}

void CTableRecordset::Seek(QStringView Operator, const std::vector<Value>& Keys)
{
    RequireOpen();
    DropEdit();
    if (m_keyFields.isEmpty())
        throw jetsql::MakeError(3019);
    const bool isKnown = QStringList{u"="_s, u">="_s, u">"_s, u"<="_s, u"<"_s}.contains(Operator);
    if (!isKnown || Keys.empty() || Keys.size() > size_t(m_keyFields.size()))
        throw jetsql::MakeError(3001);
    const std::vector<Value> keys = SeekKeys(Keys);
    const Direction direction = Operator.startsWith(u'<') ? Direction::Back : Direction::Forward;
    CRun run(m_writer.Connection(), "SELECT " + m_writer.RowId() + " FROM " + mdlSchemaText::Quoted(m_table.Name) +
                                        " WHERE " + Condition(Operator, keys.size()) + Order(direction) + " LIMIT 1");
    CSession::Bind(run, keys);
    const bool isFound = run.Step();
    SetNoMatch(!isFound);
    m_isOpened = true;
    m_isRead = false;
    m_sought = isFound ? std::optional<qint64>(run.Number(0)) : std::nullopt;
    if (!isFound)
        Position().Lose();
}

void CTableRecordset::Release()
{
    m_rowIds.Clear();
    m_row.clear();
}

} // namespace dao
