// tests/platform/tst_DaoProgress.cpp
// Statements that are broken off, statements within the question, results that would fill the memory.

#include "tests/support/DaoHelpers.h"
#include "tests/support/Table.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;

class tst_DaoProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void Stopped_data();
    void Stopped();
    void StoppedInATransaction();
    void NothingRunsWithin();
    void AskedWhileRowsAreRead();
    void TooLarge();

private:
    int Run(const QString& Sql)
    {
        return ErrorNumber([&] {
            if (Sql.startsWith(u"SELECT"_s))
                m_db->OpenRecordset(Sql)->MoveLast();
            else
                m_db->Execute(Sql);
        });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_db;
};

void tst_DaoProgress::init()
{
    m_db.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_db = Database::Create(m_folder->filePath(u"a.mdb"_s));
    m_db->Execute(u"CREATE TABLE N (ID LONG, T TEXT(50))"_s);
    const dao::CTransaction transaction(*m_db);
    for (int number = 0; number < 500; ++number)
        m_db->Execute(u"INSERT INTO N VALUES(%1, 'text %1')"_s.arg(number));
    m_db->CommitTrans();
}

void tst_DaoProgress::Stopped_data() { mdlTable::AddRows<QString>("dao-progress.json", "Stopped", {"sql"}); }

void tst_DaoProgress::Stopped()
{
    QFETCH(QString, sql);
    QElapsedTimer clock;
    clock.start();
    int questions = 0;
    m_db->SetProgress([&] {
        ++questions;
        return clock.elapsed() < 150;
    });
    QCOMPARE(Run(sql), 3059);
    QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
    QVERIFY2(questions > 1 && questions < 200, qPrintable(QString::number(questions)));
    m_db->SetProgress({});
    QCOMPARE(Rows(*m_db, u"SELECT Count(*), Max(T) FROM N"_s), QStringList({u"500|text 99"_s}));
    QCOMPARE(Run(u"DELETE FROM N WHERE ID < 10"_s), 0);
    QCOMPARE(m_db->RecordsAffected(), 10);
}

void tst_DaoProgress::StoppedInATransaction()
{
    m_db->BeginTrans();
    m_db->Execute(u"DELETE FROM N WHERE ID < 10"_s);
    m_db->SetProgress([] { return false; });
    QCOMPARE(Run(u"SELECT Count(*) FROM N AS a, N AS b, N AS c"_s), 3059); // only reads: the transaction goes on
    QCOMPARE(Run(u"INSERT INTO N(ID) SELECT a.ID FROM N AS a, N AS b, N AS c"_s), 3059);
    m_db->SetProgress({});
    QCOMPARE(Run(u"DELETE FROM N"_s), 3059); // never half a transaction
    QCOMPARE(ErrorNumber([&] { m_db->CommitTrans(); }), 3059);
    m_db->Rollback();
    QCOMPARE(Rows(*m_db, u"SELECT Count(*) FROM N"_s), QStringList({u"500"_s}));
    QCOMPARE(Run(u"DELETE FROM N"_s), 0);
}

void tst_DaoProgress::NothingRunsWithin()
{
    const auto held = m_db->OpenRecordset(u"SELECT ID FROM N WHERE ID < 2 ORDER BY ID"_s);
    const auto table = m_db->OpenRecordset(u"N"_s, dao::RecordsetType::Table);
    QList<int> numbers;
    m_db->SetProgress([&] {
        numbers = {ErrorNumber([&] { m_db->OpenRecordset(u"SELECT 1"_s); }),
                   ErrorNumber([&] { m_db->Execute(u"DELETE FROM N"_s); }),
                   ErrorNumber([&] { m_db->CreateQueryDef(u"q"_s, u"SELECT 1"_s); }),
                   ErrorNumber([&] { m_db->BeginTrans(); }),
                   ErrorNumber([&] { table->MoveLast(); }),
                   ErrorNumber([&] { m_db->SetProgress({}); }),
                   ErrorNumber([&] { m_db->Close(); }),
                   ErrorNumber([&] { held->MoveLast(); })};
        return false;
    });
    QCOMPARE(Run(u"SELECT Count(*) FROM N AS a, N AS b, N AS c"_s), 3059);
    QCOMPARE(numbers, QList<int>({3211, 3211, 3211, 3211, 3211, 3211, 3211, 0}));
    QCOMPARE(held->Long(0), 1);
    m_db->SetProgress([]() -> bool { throw 1; });
    QCOMPARE(Run(u"SELECT Count(*) FROM N AS a, N AS b, N AS c"_s), 3059);
    m_db->SetProgress({});
    table->MoveLast();
    QCOMPARE(Rows(*m_db, u"SELECT Count(*) FROM N"_s), QStringList({u"500"_s}));
}

/// A yes changes nothing about the rows.
void tst_DaoProgress::AskedWhileRowsAreRead()
{
    int questions = 0;
    m_db->SetProgress([&] { return ++questions > 0; });
    const auto rows = m_db->OpenRecordset(u"SELECT a.ID FROM N AS a, N AS b"_s);
    rows->MoveLast();
    QCOMPARE(rows->RecordCount(), 250000);
    QVERIFY(questions > 0);
}

void tst_DaoProgress::TooLarge()
{
    m_db->SetMaxResultSize(100000);
    for (const QString& columns : {u"a.ID"_s, u"a.T"_s, u"IIf(a.ID Mod 2 = 0, a.ID, a.T)"_s}) {
        const QString sql = u"SELECT TOP %1 "_s + columns + u" FROM N AS a, N AS b"_s;
        QCOMPARE(Run(sql.arg(200)), 0);
        QCOMPARE(Run(sql.arg(100000)), 3183);
        QCOMPARE(Run(u"SELECT Count(*) FROM N AS a, N AS b"_s), 0);
    }
}

QTEST_GUILESS_MAIN(tst_DaoProgress)
#include "tst_DaoProgress.moc"
