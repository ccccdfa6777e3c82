// platform/dao/CTableRecordset.h
// One table with all its rows, in the order of an index.

#ifndef DAO_CTABLERECORDSET_H
#define DAO_CTABLERECORDSET_H

#include "platform/dao/CGapList.h"
#include "platform/dao/CTableWriter.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/TableDef.h"

#include <QByteArrayList>

namespace dao
{

/// Adding rows and seeking go straight to the table; the list of rowids that moving needs is only made for the first
/// move or question where it stands, and again after a change of the order.
class CTableRecordset : public Recordset
{
public:
    CTableRecordset(std::shared_ptr<CSession> Session, const TableDef& Table);

    qint32 RecordCount() const override;
    void SetIndex(QStringView IndexName) override;
    void Seek(QStringView Operator, const std::vector<Value>& Keys) override;

protected:
    void RequireConnection() const override { m_writer.Connection().RequireOpen(); }
    qsizetype RowTotal() const override { return m_rowIds.Count(); }
    void Settle() const override;
    void RequireRow() const override;
    void Moved() override { m_isRead = false; }
    void RequireEditable() const override;
    int Counter() const override { return m_writer.Counter(); }
    Value NextNumber() override { return m_writer.NextNumber(); }
    Value Stored(int Field) const override;
    void StoreChanges(const EditBuffer& Changes) override;
    void StoreNew(const EditBuffer& Fields) override;
    void RemoveCurrent() override;
    void Release() override;

private:
    enum class Direction { Forward, Back };

    qint64 CurrentRowId() const;
    void ReadRowIds() const;
    void Unsettle();
    bool ChangesOrder(const EditBuffer& Changes) const;
    QByteArray KeyField(const QString& Name) const;
    QByteArray Order(Direction Way) const;
    QByteArray Condition(QStringView Operator, size_t KeyCount) const;
    QByteArray MixedCondition(QStringView Operator, const QByteArrayList& Fields, const QByteArrayList& Places) const;
    std::vector<Value> SeekKeys(const std::vector<Value>& Keys) const;

    mutable CTableWriter m_writer;
    TableDef m_table;
    QStringList m_keyFields;  ///< of the index in use; empty: the table's own order
    QStringList m_descending; ///< those that the index orders from high to low
    mutable CGapList<qint64> m_rowIds;
    mutable bool m_isSettled = false;       ///< m_rowIds is what the table holds
    mutable bool m_isOpened = false;        ///< Position means something
    mutable std::optional<qint64> m_sought; ///< the current row, where its place is not known yet
    mutable std::vector<Value> m_row;
    mutable bool m_isRead = false;
};

} // namespace dao

#endif
