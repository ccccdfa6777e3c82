// tests/platform/CPostsTest.h
// What the tests of recordsets share: a database with one table of every kind of field.

#ifndef TESTS_PLATFORM_CPOSTSTEST_H
#define TESTS_PLATFORM_CPOSTSTEST_H

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"

#include <QTemporaryDir>
#include <QTest>

/// Each test begins with an empty table Posts.
class CPostsTest : public QObject
{
protected:
    void MakePosts()
    {
        m_db.reset();
        m_folder = std::make_unique<QTemporaryDir>();
        m_db = dao::Database::Create(m_folder->filePath(QStringLiteral("a.mdb")));
        m_db->Execute(QStringLiteral("CREATE TABLE Posts (ID LONG CONSTRAINT PK PRIMARY KEY, Root LONG, Read YESNO, "
                                     "Title TEXT(6), Sent DATETIME, Body MEMO, Small SHORT, Size DOUBLE)"));
        m_db->Execute(QStringLiteral("CREATE INDEX ByRoot ON Posts (Root, ID)"));
        m_db->Execute(QStringLiteral("CREATE INDEX ByTitle ON Posts (Title)"));
    }

    std::unique_ptr<dao::Recordset> Open(const QString& Source,
                                         dao::RecordsetType Type = dao::RecordsetType::Snapshot) const
    {
        return m_db->OpenRecordset(Source, Type);
    }
    QStringList RawRows(const QString& Sql) const { return CRawDatabase(m_db->Name()).Rows(Sql); }

    void Add(qint32 ID, qint32 Root, const QString& Title)
    {
        m_db->Execute(
            QStringLiteral("INSERT INTO Posts(ID, Root, Title) VALUES(%1, %2, '%3')").arg(ID).arg(Root).arg(Title));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<dao::Database> m_db;
};

#endif
