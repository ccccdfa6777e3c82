// platform/dao/CSnapshot.h
// The rows of a query as they were when it was opened.

#ifndef DAO_CSNAPSHOT_H
#define DAO_CSNAPSHOT_H

#include "platform/dao/CRowStore.h"
#include "platform/dao/CSession.h"
#include "platform/dao/Recordset.h"

namespace dao
{

/// All rows in memory, read-only. Needs the database only to be made, but refuses to be read once that is closed.
class CSnapshot : public Recordset
{
public:
    /// Type Dynaset is for a query whose rows cannot be edited.
    CSnapshot(std::shared_ptr<CSession> Session, const CSession::Filled& Query, RecordsetType Type);

protected:
    void RequireConnection() const override { m_session->Connection().RequireOpen(); }
    qsizetype RowTotal() const override { return m_rows.Count(); }
    void RequireEditable() const override;
    Value Stored(int Field) const override { return m_rows.Column(Field).At(Position().Row()); }
    qint32 StoredLong(int Field) const override { return m_rows.Column(Field).Long(Position().Row()); }
    double StoredDouble(int Field) const override { return m_rows.Column(Field).Double(Position().Row()); }
    QString StoredText(int Field) const override { return m_rows.Column(Field).Text(Position().Row()); }
    bool StoredNull(int Field) const override { return m_rows.Column(Field).IsNull(Position().Row()); }
    void Release() override { m_rows = CRowStore(); }

private:
    std::shared_ptr<CSession> m_session;
    CRowStore m_rows;
};

} // namespace dao

#endif
