// platform/dao/CDynaset.h
// The rows of a query over one table, open for changes.

#ifndef DAO_CDYNASET_H
#define DAO_CDYNASET_H

#include "platform/dao/CGapList.h"
#include "platform/dao/CRowStore.h"
#include "platform/dao/CTableWriter.h"
#include "platform/dao/Recordset.h"

namespace dao
{

/// Keeps the rowids in the query's order and reads a row when it is asked for, so it shows what the row holds now and
/// costs little memory. Which rows belong to it is decided once, when it is opened: a row that an edit takes out of the
/// condition stays. Computed columns keep their first values.
class CDynaset : public Recordset
{
public:
    CDynaset(std::shared_ptr<CSession> Session, const CSession::Filled& Query);

protected:
    void RequireConnection() const override { m_writer.Connection().RequireOpen(); }
    qsizetype RowTotal() const override { return m_rowIds.Count(); }
    void Moved() override { m_isRead = false; }
    void RequireEditable() const override;
    int Counter() const override { return m_writer.Counter(); }
    Value NextNumber() override { return m_writer.NextNumber(); }
    Value Stored(int Field) const override { return Row()[size_t(Field)]; }
    qint32 StoredLong(int Field) const override { return Row()[size_t(Field)].ToLong(); }
    QString StoredText(int Field) const override { return Row()[size_t(Field)].ToText(); }
    bool StoredNull(int Field) const override { return Row()[size_t(Field)].IsNull(); }
    void StoreChanges(const EditBuffer& Changes) override;
    void StoreNew(const EditBuffer& Fields) override;
    void RemoveCurrent() override;
    void Release() override;

private:
    void ReadRowIds(const CSession::Filled& Query);
    const std::vector<Value>& Row() const;

    mutable CTableWriter m_writer;
    CGapList<qint64> m_rowIds;
    std::vector<int> m_computed;                   ///< numbers of the computed columns
    CGapList<std::vector<Value>> m_computedValues; ///< per row of m_rowIds; empty without computed columns
    mutable std::vector<Value> m_row;
    mutable bool m_isRead = false;
};

} // namespace dao

#endif
