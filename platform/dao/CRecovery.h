// platform/dao/CRecovery.h
// The course of a recovery: definitions, tables, stray pages, indexes.

#ifndef DAO_CRECOVERY_H
#define DAO_CRECOVERY_H

#include "platform/dao/CRecoveredTable.h"
#include "platform/dao/CTablePages.h"

#include <deque>

namespace dao
{

/// Reads File and writes Target, which is new and empty. Run throws Error and may be called once.
class CRecovery
{
public:
    CRecovery(CPageFile& File, CConnection& Target, const Progress& Report);

    Recovered Run(const std::vector<TableDef>& Known);

private:
    /// One line of the file's own table of definitions.
    struct Object
    {
        QString Type;
        QString Name;
        QString Table;
        quint32 Root = 0;
        QString Sql;
    };
    struct Place
    {
        CRecoveredTable Table;
        quint32 Root; ///< 0 where it is not known
    };

    void ReadObjects();
    void TakeObject(const CStoredRow& Row);
    QString Text(const CStoredRow::StoredValue& Value) const;
    void MakeTables(const std::vector<TableDef>& Known);
    bool TryRun(const QByteArray& Sql, const QString& Name);
    void AddTable(const QString& Name, quint32 Root);
    bool HasTable(const QString& Name) const;
    void ReadTables();
    void ReadCounters();
    void RaiseCounter(const QString& Table, qint64 Last);
    void CountIndexes();
    void ReadStrayPages();
    CRecoveredTable* OwnerOf(const std::vector<std::optional<CStoredRow>>& Rows);
    void MakeOtherObjects();
    void KeepGoing();

    CPageFile& m_file;
    CConnection& m_target;
    const Progress& m_report;
    CTablePages m_pages;
    std::vector<Object> m_objects;
    std::deque<Place> m_tables; ///< in the order of the file
    Recovered m_result;
};

} // namespace dao

#endif
