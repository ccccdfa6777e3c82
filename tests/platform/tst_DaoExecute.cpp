// tests/platform/tst_DaoExecute.cpp
// Action statements: rules and their error numbers, all or nothing, transactions, locks, a full disk, saved queries.

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Table.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;
using dao::ExecuteOption;
using dao::FieldType;
using dao::RecordsetType;
using dao::Value;

class tst_DaoExecute : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void Rules_data();
    void Rules();
    void StoredValues_data();
    void StoredValues();
    void SameShapeOtherValues();
    void StatementIsWholeOrNothing();
    void SkippedRows();
    void RecordsAffected();
    void WrongKindOfStatement();
    void ErrorsShowTheirPlace();
    void StructureChangesUnderKnownStatements();
    void TransactionsNest();
    void ScopeRollsBack();
    void RefusedStatementKeepsTransaction();
    void OtherProgramHoldsTheLock();
    void FullDisk();
    void FullDiskTakesTheTransaction();
    void SavedQueries();
    void SavedQueryNames();
    void SavedQueriesOfOthers();
    void QueryParameters();
    void TemporaryQuery();

private:
    QStringList RawRows(const QString& Sql) const { return CRawDatabase(m_db->Name()).Rows(Sql); }
    int Execute(const QString& Sql, ExecuteOption Option = ExecuteOption::FailOnError)
    {
        return ErrorNumber([&] { m_db->Execute(Sql, Option); });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_db;
};

void tst_DaoExecute::init()
{
    m_db.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_db = Database::Create(m_folder->filePath(u"a.mdb"_s));
    dao::TableDef table;
    table.Name = u"Posts"_s;
    table.Fields = {Field(u"BBS_ID"_s, FieldType::Long),  Field(u"ID"_s, FieldType::Long),
                    Field(u"Read"_s, FieldType::Boolean), Field(u"Subject"_s, FieldType::Text, 5, true),
                    Field(u"Name"_s, FieldType::Text, 5), Field(u"PostDate"_s, FieldType::Date),
                    Field(u"Body"_s, FieldType::Memo),    Field(u"Must"_s, FieldType::Long)};
    table.Fields.back().Required = true;
    table.Indexes = {{u"PK"_s, {u"ID"_s, u"BBS_ID"_s}, true, true, false}};
    m_db->AppendTable(table);
}

void tst_DaoExecute::Rules_data()
{
    mdlTable::AddRows<QString, int>("dao-execute.json", "Rules", {"values", "number"});
}

void tst_DaoExecute::Rules()
{
    QFETCH(QString, values);
    QFETCH(int, number);
    QCOMPARE(Execute(u"INSERT INTO Posts VALUES(9, 9, False, 'x', 'y', Null, Null, 0)"_s), 0);
    const QString sql = u"INSERT INTO Posts VALUES("_s + values + u")"_s;
    QCOMPARE(Execute(sql), number);
    QCOMPARE(m_db->RecordsAffected(), number == 0 ? 1 : 0);
    QCOMPARE(RawRows(u"SELECT count(*) FROM Posts"_s), QStringList({number == 0 ? u"2"_s : u"1"_s}));
}

void tst_DaoExecute::StoredValues_data()
{
    mdlTable::AddRows<QString, QString>("dao-execute.json", "StoredValues", {"values", "stored"});
}

void tst_DaoExecute::StoredValues()
{
    QFETCH(QString, values);
    QFETCH(QString, stored);
    QCOMPARE(Execute(u"INSERT INTO Posts VALUES("_s + values + u")"_s), 0);
    QCOMPARE(RawRows(u"SELECT * FROM Posts"_s), QStringList({stored}));
}

void tst_DaoExecute::SameShapeOtherValues()
{
    m_db->BeginTrans();
    for (int id = 1; id <= 1000; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Subject, Must) VALUES(3,%1,'s%2',0)"_s.arg(id).arg(id % 7));
    for (int id = 1; id <= 1000; id += 2)
        m_db->Execute(u"UPDATE Posts SET Read = True WHERE BBS_ID = 003   AND ID = %1"_s.arg(id, 6, 10, QChar(u'0')));
    m_db->CommitTrans();
    QCOMPARE(RawRows(u"SELECT count(*), sum(ID), min(Subject), max(Subject) FROM Posts WHERE Read = -1"_s),
             QStringList({u"500|250000|s0|s6"_s}));
}

void tst_DaoExecute::StatementIsWholeOrNothing()
{
    for (int id = 1; id <= 3; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,%1,0)"_s.arg(id));
    // The second of the rows collides with the third, whatever the order.
    QCOMPARE(Execute(u"UPDATE Posts SET ID = ID + 1 WHERE ID < 3"_s), 3022);
    QCOMPARE(Execute(u"UPDATE Posts SET Subject = 'abcdef' WHERE ID = 2 OR Must = 0"_s), 3163);
    QCOMPARE(RawRows(u"SELECT ID, Subject FROM Posts ORDER BY ID"_s),
             QStringList({u"1|NULL"_s, u"2|NULL"_s, u"3|NULL"_s}));
}

void tst_DaoExecute::SkippedRows()
{
    for (int id = 1; id <= 3; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,%1,0)"_s.arg(id));
    QCOMPARE(Execute(u"UPDATE Posts SET ID = 3 + 7 * (ID - 1)"_s, ExecuteOption::None), 0);
    QCOMPARE(m_db->RecordsAffected(), 2);
    QCOMPARE(RawRows(u"SELECT ID FROM Posts ORDER BY ID"_s), QStringList({u"1"_s, u"10"_s, u"17"_s}));
    QCOMPARE(Execute(u"DELETE FROM Nope"_s, ExecuteOption::None), 3078);
}

void tst_DaoExecute::RecordsAffected()
{
    for (int id = 1; id <= 5; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,%1,0)"_s.arg(id));
    m_db->Execute(u"UPDATE Posts SET Must = 0 WHERE ID > 2"_s); // nothing changes, three rows are written
    QCOMPARE(m_db->RecordsAffected(), 3);
    m_db->Execute(u"DELETE FROM Posts WHERE ID = 99"_s);
    QCOMPARE(m_db->RecordsAffected(), 0);
    m_db->Execute(u"DELETE * FROM Posts"_s);
    QCOMPARE(m_db->RecordsAffected(), 5);
}

void tst_DaoExecute::WrongKindOfStatement()
{
    QCOMPARE(Execute(u"SELECT * FROM Posts"_s), 3065);
    QCOMPARE(Execute(u"DELETE FROM Posts WHERE ID = 番号"_s), 3061);
    QCOMPARE(Execute(u"Posts"_s), 3065);
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"DELETE FROM Posts"_s); }), 3219);
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"SELECT * FROM Posts WHERE ID = 番号"_s); }), 3061);
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"SELECT * FROM Nope"_s); }), 3078);
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"SELECT * FROM [~Queries]"_s); }), 3078);
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"Nope"_s, RecordsetType::Table); }), 3011);
    QCOMPARE(m_db->OpenRecordset(u"posts"_s)->FieldCount(), 8);
}

void tst_DaoExecute::ErrorsShowTheirPlace()
{
    const auto place = [this](const QString& Sql) {
        try {
            m_db->Execute(Sql);
        } catch (const dao::Error& error) {
            return QString::number(error.Number) + u'@' + QString::number(error.Offset);
        }
        return u"no error"_s;
    };
    QCOMPARE(place(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3, 4, 'x')"_s), u"3421@49"_s);
    QCOMPARE(place(u"INSERT INTO Posts(BBS_ID,  ID, Must) VALUES(3,  4, 'y')"_s), u"3421@51"_s);
    QCOMPARE(place(u"DELETE FROM 件数 WHERE ID = 1"_s), u"3078@12"_s);
}

void tst_DaoExecute::StructureChangesUnderKnownStatements()
{
    const QString insert = u"INSERT INTO T VALUES(1, 'x')"_s;
    const auto make = [this](const QStringList& Names) {
        dao::TableDef table;
        table.Name = u"T"_s;
        for (const QString& name : Names)
            table.Fields.push_back(Field(name, name == u"S"_s ? FieldType::Text : FieldType::Long));
        m_db->AppendTable(table);
    };
    QCOMPARE(Execute(insert), 3192);
    make({u"N"_s, u"S"_s});
    QCOMPARE(Execute(insert), 0);
    QCOMPARE(Rows(*m_db, u"SELECT * FROM T"_s), QStringList({u"1|x"_s}));
    m_db->DeleteTable(u"T"_s);
    QVERIFY(Execute(insert) != 0);
    make({u"A"_s, u"S"_s, u"B"_s});
    QCOMPARE(Execute(insert), 3346);
    QCOMPARE(Rows(*m_db, u"SELECT * FROM T"_s), QStringList());
    QCOMPARE(m_db->OpenRecordset(u"SELECT * FROM T"_s)->FieldCount(), 3);
    QCOMPARE(CRawDatabase(m_db->Name()).Run(u"CREATE TABLE Foreign1(X LONG); INSERT INTO Foreign1 VALUES(5)"_s),
             QString());
    QCOMPARE(Rows(*m_db, u"SELECT X FROM Foreign1"_s), QStringList({u"5"_s}));
}

void tst_DaoExecute::TransactionsNest()
{
    const auto add = [this](int ID) { m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,%1,0)"_s.arg(ID)); };
    QCOMPARE(ErrorNumber([this] { m_db->CommitTrans(); }), 3034);
    QCOMPARE(ErrorNumber([this] { m_db->Rollback(); }), 3034);
    for (int level = 1; level <= 5; ++level) {
        m_db->BeginTrans();
        add(level);
    }
    QCOMPARE(ErrorNumber([this] { m_db->BeginTrans(); }), 3003);
    QVERIFY(m_db->InTransaction());
    m_db->Rollback();    // 5
    m_db->CommitTrans(); // 4
    m_db->Rollback();    // 3, and with it 4
    add(6);
    QCOMPARE(RawRows(u"SELECT count(*) FROM Posts"_s), QStringList({u"0"_s}));
    m_db->CommitTrans();
    m_db->CommitTrans();
    QVERIFY(!m_db->InTransaction());
    QCOMPARE(RawRows(u"SELECT ID FROM Posts ORDER BY ID"_s), QStringList({u"1"_s, u"2"_s, u"6"_s}));
}

void tst_DaoExecute::ScopeRollsBack()
{
    {
        const dao::CTransaction transaction(*m_db);
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s);
    }
    QVERIFY(!m_db->InTransaction());
    {
        dao::CTransaction transaction(*m_db);
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,2,0)"_s);
        transaction.Keep();
    }
    {
        const dao::CTransaction transaction(*m_db);
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,3,0)"_s);
        m_db->Close(); // a program that ends within a transaction
    }
    QCOMPARE(RawRows(u"SELECT ID FROM Posts"_s), QStringList({u"2"_s}));
}

/// A duplicate in a block of received messages is nothing that may touch the rest of the block.
void tst_DaoExecute::RefusedStatementKeepsTransaction()
{
    dao::CTransaction transaction(*m_db);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s), 0);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s), 3022);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Subject, Must) VALUES(3,2,'abcdef',0)"_s), 3163);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,3,0)"_s), 0);
    transaction.Keep();
    QCOMPARE(RawRows(u"SELECT ID FROM Posts"_s), QStringList({u"1"_s, u"3"_s}));
}

void tst_DaoExecute::OtherProgramHoldsTheLock()
{
    m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s);
    m_db->SetBusyTimeout(20);
    CRawDatabase other(m_db->Name());
    QCOMPARE(other.Run(u"BEGIN IMMEDIATE; UPDATE Posts SET Must = 5"_s), QString());
    QCOMPARE(Execute(u"UPDATE Posts SET Must = 6"_s), 3260);
    QCOMPARE(ErrorNumber([this] { m_db->BeginTrans(); }), 3260);
    QVERIFY(!m_db->InTransaction());
    QCOMPARE(Rows(*m_db, u"SELECT Must FROM Posts"_s), QStringList({u"0"_s}));
    QCOMPARE(other.Run(u"COMMIT"_s), QString());
    QCOMPARE(Rows(*m_db, u"SELECT Must FROM Posts"_s), QStringList({u"5"_s}));
    QCOMPARE(Execute(u"UPDATE Posts SET Must = 6"_s), 0);
}

void tst_DaoExecute::FullDisk()
{
    m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s);
    m_db->SetMaxFileSize(QFile(m_db->Name()).size() + 20 * 4096);
    const QString body(2000, u'本');
    int stored = 1;
    int error = 0;
    while (error == 0 && stored < 1000) {
        error = Execute(u"INSERT INTO Posts(BBS_ID, ID, Body, Must) VALUES(3,%1,'%2',0)"_s.arg(stored + 1).arg(body));
        stored += error == 0 ? 1 : 0;
    }
    QCOMPARE(error, 3026);
    QCOMPARE(RawRows(u"SELECT count(*) FROM Posts"_s), QStringList({QString::number(stored)}));
    m_db->SetMaxFileSize(0);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Body, Must) VALUES(3,5000,'%1',0)"_s.arg(body)), 0);
    QCOMPARE(RawRows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
}

/// SQLite gives the whole transaction up when the disk is full. What comes after must not be stored as if it were
/// complete.
void tst_DaoExecute::FullDiskTakesTheTransaction()
{
    m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,1,0)"_s);
    m_db->SetMaxFileSize(QFile(m_db->Name()).size() + 20 * 4096);
    m_db->BeginTrans();
    m_db->BeginTrans();
    int error = 0;
    for (int id = 2; error == 0 && id < 1000; ++id)
        error = Execute(
            u"INSERT INTO Posts(BBS_ID, ID, Body, Must) VALUES(3,%1,'%2',0)"_s.arg(id).arg(QString(2000, u'本')));
    QCOMPARE(error, 3026);
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,2000,0)"_s), 3026);
    QCOMPARE(ErrorNumber([this] { m_db->CommitTrans(); }), 3026);
    m_db->Rollback();
    QCOMPARE(ErrorNumber([this] { m_db->CommitTrans(); }), 3026);
    m_db->Rollback();
    QVERIFY(!m_db->InTransaction());
    QCOMPARE(RawRows(u"SELECT ID FROM Posts"_s), QStringList({u"1"_s}));
    QCOMPARE(Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,3000,0)"_s), 0);
    QCOMPARE(RawRows(u"SELECT ID FROM Posts"_s), QStringList({u"1"_s, u"3000"_s}));
}

void tst_DaoExecute::SavedQueries()
{
    for (int id = 1; id <= 4; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Must) VALUES(3,%1,0)"_s.arg(id));
    m_db->CreateQueryDef(u"偶数"_s, u"SELECT ID FROM Posts WHERE ID Mod 2 = 0"_s);
    m_db->CreateQueryDef(u"消す"_s, u"DELETE FROM Posts WHERE ID < 3"_s);
    const QString name = m_db->Name();
    m_db.reset();
    m_db = Database::Open(name);
    QCOMPARE(m_db->QueryDefs(), QStringList({u"偶数"_s, u"消す"_s}));
    QCOMPARE(Rows(*m_db, u"偶数"_s), QStringList({u"2"_s, u"4"_s}));
    QCOMPARE(Rows(*m_db, u"SELECT Count(*) FROM 偶数"_s), QStringList({u"2"_s}));
    m_db->FindQueryDef(u"偶数"_s)->SetSql(u"SELECT ID FROM Posts WHERE ID = 3"_s);
    QCOMPARE(Rows(*m_db, u"SELECT Count(*) FROM 偶数"_s), QStringList({u"1"_s}));
    const auto remove = m_db->FindQueryDef(u"消す"_s);
    QCOMPARE(remove->Type(), dao::QueryType::Delete);
    remove->Execute();
    QCOMPARE(remove->RecordsAffected(), 2);
    m_db->Execute(u"[消す]"_s);
    QCOMPARE(m_db->RecordsAffected(), 0);
    m_db->DeleteQueryDef(u"偶数"_s);
    QCOMPARE(m_db->QueryDefs(), QStringList({u"消す"_s}));
    QCOMPARE(RawRows(u"SELECT Name, Sql FROM \"~Queries\""_s), QStringList({u"消す|DELETE FROM Posts WHERE ID < 3"_s}));
    QCOMPARE(ErrorNumber([this] { m_db->OpenRecordset(u"SELECT * FROM 偶数"_s); }), 3078);
}

void tst_DaoExecute::SavedQueryNames()
{
    const QString sql = u"SELECT * FROM Posts"_s;
    QCOMPARE(ErrorNumber([&] { m_db->CreateQueryDef(u"posts"_s, sql); }), 3012);
    m_db->CreateQueryDef(u"Q"_s, sql);
    QCOMPARE(ErrorNumber([&] { m_db->CreateQueryDef(u"ｑ"_s, sql); }), 3012);
    for (const QString& name : {u"a.b"_s, u"a!b"_s, u"[a"_s, u"a]"_s, u"`a"_s, u" a"_s, u"a\tb"_s, QString(65, u'名')})
        QCOMPARE(ErrorNumber([&] { m_db->CreateQueryDef(name, sql); }), 3125);
    QCOMPARE(ErrorNumber([&] { m_db->CreateQueryDef(u"Bad"_s, u"SELEC * FROM Posts"_s); }), 3129);
    QCOMPARE(ErrorNumber([&] { m_db->DeleteQueryDef(u"Nope"_s); }), 3265);
    QVERIFY(!m_db->FindQueryDef(u"Nope"_s));
    QCOMPARE(m_db->CreateQueryDef(QString(), sql)->OpenRecordset()->FieldCount(), 8);
    QCOMPARE(m_db->QueryDefs(), QStringList({u"Q"_s}));
}

void tst_DaoExecute::SavedQueriesOfOthers()
{
    m_db->CreateQueryDef(u"一"_s, u"SELECT ID, Must FROM Posts WHERE ID > 下限"_s);
    m_db->CreateQueryDef(u"二"_s, u"SELECT ID FROM 一 WHERE ID < 上限"_s);
    m_db->CreateQueryDef(u"消"_s, u"DELETE FROM Posts"_s);
    QStringList names;
    for (const dao::ParameterInfo& parameter : m_db->FindQueryDef(u"二"_s)->Parameters())
        names.append(parameter.Name);
    names.sort();
    QCOMPARE(names, QStringList({u"上限"_s, u"下限"_s}));
    const auto first = m_db->FindQueryDef(u"一"_s);
    QCOMPARE(ErrorNumber([&] { first->SetSql(u"SELECT * FROM 二"_s); }), 3102);
    QCOMPARE(ErrorNumber([&] { first->SetSql(u"SELECT * FROM 一"_s); }), 3102);
    QVERIFY(m_db->FindQueryDef(u"一"_s)->Sql().contains(u"Posts"_s));
    QCOMPARE(ErrorNumber([&] { m_db->OpenRecordset(u"SELECT * FROM 消"_s); }), 3069);
    QCOMPARE(CRawDatabase(m_db->Name()).Run(u"INSERT INTO \"~Queries\" VALUES('他', 'SELECT 1')"_s), QString());
    m_db->Execute(u"ALTER TABLE Posts DROP COLUMN Must"_s); // what another program saved and what does not run is listed
    QCOMPARE(m_db->QueryDefs(), QStringList({u"一"_s, u"消"_s, u"他"_s, u"二"_s}));
    QCOMPARE(m_db->FindQueryDef(u"一"_s)->Parameters().size(), size_t(2)); // the field is a name like any other now
}

void tst_DaoExecute::QueryParameters()
{
    for (int id = 1; id <= 4; ++id)
        m_db->Execute(u"INSERT INTO Posts(BBS_ID, ID, Subject, Must) VALUES(3,%1,'s%1',0)"_s.arg(id));
    const auto query = m_db->CreateQueryDef(
        QString(), u"SELECT ID FROM Posts WHERE ID > 下限 AND Subject <> [除く 題名] AND ID > 下限 ORDER BY ID"_s);
    QStringList names;
    for (const dao::ParameterInfo& parameter : query->Parameters())
        names.append(parameter.Name);
    QCOMPARE(names, QStringList({u"下限"_s, u"除く 題名"_s}));
    QCOMPARE(ErrorNumber([&] { query->OpenRecordset(); }), 3061);
    query->SetParameter(0, Value::FromLong(1));
    QCOMPARE(ErrorNumber([&] { query->OpenRecordset(); }), 3061);
    query->SetParameter(1, Value::FromText(u"S3"_s));
    QCOMPARE(Rows(*query->OpenRecordset()), QStringList({u"2"_s, u"4"_s}));
    query->SetParameter(0, Value());
    QCOMPARE(Rows(*query->OpenRecordset()), QStringList());
    QCOMPARE(ErrorNumber([&] { query->SetParameter(2, Value()); }), 3265);
    const auto typed = m_db->CreateQueryDef(QString(), u"PARAMETERS 番号 Long; DELETE FROM Posts WHERE ID = 番号"_s);
    QCOMPARE(ErrorNumber([&] { typed->SetParameter(0, Value::FromText(u"x"_s)); }), 3421);
    typed->SetParameter(0, Value::FromText(u"４"_s));
    typed->Execute();
    QCOMPARE(m_db->RecordsAffected(), 1);
}

void tst_DaoExecute::TemporaryQuery()
{
    const QString name = m_db->Name();
    m_db->CreateQueryDef(u"__TEMP__"_s, u"SELECT ID FROM Posts"_s);
    QVERIFY(m_db->FindQueryDef(u"__TEMP__"_s));
    QCOMPARE(m_db->OpenRecordset(u"__TEMP__"_s)->FieldCount(), 1);
    QCOMPARE(ErrorNumber([&] { m_db->CreateQueryDef(u"__TEMP__"_s, u"SELECT 1 FROM Posts"_s); }), 3012);
    QCOMPARE(RawRows(u"SELECT count(*) FROM \"~Queries\""_s), QStringList({u"0"_s}));
    m_db->DeleteQueryDef(u"__TEMP__"_s);
    QVERIFY(!m_db->FindQueryDef(u"__TEMP__"_s));
    QCOMPARE(ErrorNumber([&] { m_db->DeleteQueryDef(u"__TEMP__"_s); }), 3265);
}

QTEST_GUILESS_MAIN(tst_DaoExecute)
#include "tst_DaoExecute.moc"
