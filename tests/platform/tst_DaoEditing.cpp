// tests/platform/tst_DaoEditing.cpp
// Adding, changing and deleting rows of tables and dynasets.

#include "tests/platform/CPostsTest.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::RecordsetType;
using dao::Value;

class tst_DaoEditing : public CPostsTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { MakePosts(); }
    void AddNew();
    void AddNewInAnEmptyTable();
    void EditAndUpdate();
    void PendingEditIsDropped();
    void RefusedUpdateStaysPending();
    void SetRefusals_data();
    void SetRefusals();
    void DeleteRows();
    void DynasetKeepsItsRows();
    void DynasetShowsNewValues();
    void DynasetOverSeveralTablesIsReadOnly();
    void DynasetWithComputedColumn();
    void DynasetAdds();
    void EditUnderAnIndex();
    void RandomStepsAgainstAMap();
};

void tst_DaoEditing::AddNew()
{
    Add(1, 0, u"first"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    QCOMPARE(rows->Long(0), 1);
    rows->AddNew();
    QVERIFY(rows->IsNull(0));
    QCOMPARE(rows->Boolean(2), false);
    rows->Set(u"ID", Value::FromLong(2));
    QCOMPARE(rows->Long(0), 2);
    QCOMPARE(RawRows(u"SELECT count(*) FROM Posts"_s), QStringList({u"1"_s}));
    rows->Update();
    QCOMPARE(rows->Long(0), 1);
    rows->MoveNext();
    QCOMPARE(rows->Long(0), 2);
    QCOMPARE(RawRows(u"SELECT * FROM Posts WHERE ID = 2"_s), QStringList({u"2|NULL|0|NULL|NULL|NULL|NULL|NULL"_s}));
}

void tst_DaoEditing::AddNewInAnEmptyTable()
{
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    QVERIFY(rows->Bof());
    rows->AddNew();
    rows->Set(u"ID", Value::FromLong(1));
    rows->Update();
    QVERIFY(!rows->Bof());
    QVERIFY(rows->Eof());
    rows->MoveFirst();
    QCOMPARE(rows->Long(0), 1);
}

void tst_DaoEditing::EditAndUpdate()
{
    Add(1, 0, u"a"_s);
    Add(2, 0, u"b"_s);
    for (const RecordsetType type : {RecordsetType::Table, RecordsetType::Dynaset}) {
        const auto rows = Open(u"Posts"_s, type);
        rows->MoveNext();
        QCOMPARE(ErrorNumber([&] { rows->Set(u"Root", Value::FromLong(1)); }), 3020);
        rows->Edit();
        rows->Set(u"root", Value::FromDouble(2.5)); // rounded half to even
        rows->Set(u"Read", Value::FromLong(5));
        rows->Set(u"Title", Value());
        QCOMPARE(rows->Get(u"Root"), Value::FromLong(2));
        QCOMPARE(rows->Get(u"ID"), Value::FromLong(2));
        rows->Update();
        QCOMPARE(rows->Get(u"Root"), Value::FromLong(2));
        QCOMPARE(RawRows(u"SELECT ID, Root, Read, Title FROM Posts"_s), QStringList({u"1|0|0|a"_s, u"2|2|-1|NULL"_s}));
        rows->Edit();
        rows->Set(u"Title", Value::FromText(u"b"_s));
        rows->Update();
        QCOMPARE(rows->Text(3), u"b"_s);
    }
}

void tst_DaoEditing::PendingEditIsDropped()
{
    Add(1, 0, u"a"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->Edit();
    rows->Set(u"Title", Value::FromText(u"x"_s));
    rows->MoveFirst();
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3020);
    rows->Edit();
    rows->Set(u"Title", Value::FromText(u"y"_s));
    rows->CancelUpdate();
    QCOMPARE(ErrorNumber([&] { rows->CancelUpdate(); }), 3020);
    rows->Edit();
    rows->Set(u"Title", Value::FromText(u"z"_s));
    rows->Close();
    QCOMPARE(RawRows(u"SELECT Title FROM Posts"_s), QStringList({u"a"_s}));
}

void tst_DaoEditing::RefusedUpdateStaysPending()
{
    Add(1, 0, u"a"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->AddNew();
    rows->Set(u"ID", Value::FromLong(1));
    rows->Set(u"Title", Value::FromText(u"kept"_s));
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3022);
    rows->Set(u"ID", Value::FromLong(2));
    rows->Update();
    QCOMPARE(RawRows(u"SELECT ID, Title FROM Posts"_s), QStringList({u"1|a"_s, u"2|kept"_s}));
}

void tst_DaoEditing::SetRefusals_data()
{
    mdlTable::AddRows<QString, QString, int>("dao-recordset.json", "SetRefusals", {"field", "text", "number"});
    QTest::newRow("memo has no size") << u"Body"_s << QString(100000, u'あ') << 0;
}

void tst_DaoEditing::SetRefusals()
{
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(int, number);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->AddNew();
    rows->Set(u"ID", Value::FromLong(1));
    QCOMPARE(ErrorNumber([&] { rows->Set(field, Value::FromText(text)); }), number);
    rows->Update();
    QCOMPARE(RawRows(u"SELECT count(*) FROM Posts"_s), QStringList({u"1"_s}));
}

void tst_DaoEditing::DeleteRows()
{
    for (const RecordsetType type : {RecordsetType::Table, RecordsetType::Dynaset}) {
        init();
        for (int id = 1; id <= 4; ++id)
            Add(id, 0, u"a"_s);
        const auto rows = Open(u"Posts"_s, type);
        rows->MoveNext();
        rows->Delete();
        QVERIFY(!rows->Bof() && !rows->Eof());
        QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3167);
        QCOMPARE(ErrorNumber([&] { rows->Delete(); }), 3167);
        rows->MoveNext();
        QCOMPARE(rows->Long(0), 3);
        rows->Delete();
        rows->MovePrevious();
        QCOMPARE(rows->Long(0), 1);
        rows->MoveLast();
        rows->Delete();
        rows->MoveNext();
        QVERIFY(rows->Eof());
        QCOMPARE(RawRows(u"SELECT ID FROM Posts"_s), QStringList({u"1"_s}));
    }
}

/// An edit may take a row out of the query's condition or order; the pass over the rows goes on undisturbed.
void tst_DaoEditing::DynasetKeepsItsRows()
{
    for (int id = 1; id <= 5; ++id)
        Add(id, 0, u"a"_s);
    const auto rows = Open(u"SELECT * FROM Posts WHERE Root = 0 ORDER BY ID DESC"_s, RecordsetType::Dynaset);
    QStringList seen;
    for (; !rows->Eof(); rows->MoveNext()) {
        rows->Edit();
        rows->Set(u"Root", Value::FromLong(rows->Long(0) * 10));
        rows->Update();
        seen.append(rows->Text(0) + u'>' + rows->Text(1));
    }
    QCOMPARE(seen, QStringList({u"5>50"_s, u"4>40"_s, u"3>30"_s, u"2>20"_s, u"1>10"_s}));
}

void tst_DaoEditing::DynasetShowsNewValues()
{
    Add(1, 0, u"a"_s);
    Add(2, 0, u"b"_s);
    const auto rows = Open(u"SELECT ID, Title FROM Posts ORDER BY ID"_s, RecordsetType::Dynaset);
    m_db->Execute(u"UPDATE Posts SET Title = 'new' WHERE ID = 2"_s);
    m_db->Execute(u"DELETE FROM Posts WHERE ID = 1"_s);
    QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3167);
    rows->MoveNext();
    QCOMPARE(rows->Text(1), u"new"_s);
    m_db->Execute(u"DELETE FROM Posts"_s);
    rows->Edit();
    rows->Set(1, Value::FromText(u"x"_s));
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3167);
}

void tst_DaoEditing::DynasetOverSeveralTablesIsReadOnly()
{
    Add(1, 0, u"a"_s);
    const auto rows = Open(u"SELECT Root, Count(*) AS 件数 FROM Posts GROUP BY Root"_s, RecordsetType::Dynaset);
    QCOMPARE(rows->Type(), RecordsetType::Dynaset);
    QCOMPARE(rows->Long(1), 1);
    QCOMPARE(ErrorNumber([&] { rows->Edit(); }), 3326);
}

void tst_DaoEditing::DynasetWithComputedColumn()
{
    Add(1, 5, u"a"_s);
    Add(2, 6, u"b"_s);
    const auto rows = Open(u"SELECT Root + 100, Root, Title FROM Posts ORDER BY ID"_s, RecordsetType::Dynaset);
    rows->MoveNext();
    QCOMPARE(rows->Long(0), 106);
    rows->Edit();
    QCOMPARE(ErrorNumber([&] { rows->Set(0, Value::FromLong(1)); }), 3327);
    rows->Set(1, Value::FromLong(7));
    rows->Update();
    QCOMPARE(rows->Long(1), 7);
    QCOMPARE(rows->Text(2), u"b"_s);
    QCOMPARE(RawRows(u"SELECT ID, Root FROM Posts"_s), QStringList({u"1|5"_s, u"2|7"_s}));
}

void tst_DaoEditing::DynasetAdds()
{
    Add(9, 0, u"a"_s);
    const auto rows = Open(u"SELECT ID, Title FROM Posts ORDER BY ID"_s, RecordsetType::Dynaset);
    rows->AddNew();
    rows->Set(0, Value::FromLong(3));
    rows->Update();
    QCOMPARE(rows->Long(0), 9);
    rows->MoveLast();
    QCOMPARE(rows->Long(0), 3);
    QCOMPARE(rows->RecordCount(), 2);
}

void tst_DaoEditing::EditUnderAnIndex()
{
    for (const int id : {1, 2, 3})
        Add(id, id, u"a"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->SetIndex(u"ByRoot");
    rows->Seek(u"=", {Value::FromLong(1), Value::FromLong(1)});
    rows->Edit();
    rows->Set(u"Root", Value::FromLong(9));
    rows->Update();
    QCOMPARE(rows->Long(0), 1);
    rows->MovePrevious(); // the row stands at the end of the order now
    QCOMPARE(rows->Long(0), 3);
    rows->MoveFirst();
    QCOMPARE(rows->Long(0), 2);
}

/// Adding, editing and deleting in any order against a plain map of what must be there.
void tst_DaoEditing::RandomStepsAgainstAMap()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    std::map<qint32, qint32> wanted;
    m_db->BeginTrans();
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->SetIndex(u"PK");
    for (int step = 0; step < 3000; ++step) {
        const qint32 id = random.bounded(60);
        rows->Seek(u"=", {Value::FromLong(id)});
        QCOMPARE(!rows->NoMatch(), wanted.count(id) == 1);
        if (rows->NoMatch()) {
            rows->AddNew();
            rows->Set(u"ID", Value::FromLong(id));
            rows->Set(u"Root", Value::FromLong(step));
            rows->Update();
            wanted[id] = step;
        } else if (random.bounded(2) == 0) {
            rows->Edit();
            rows->Set(u"Root", Value::FromLong(-step));
            rows->Update();
            wanted[id] = -step;
        } else {
            rows->Delete();
            wanted.erase(id);
        }
    }
    m_db->CommitTrans();
    QStringList expected;
    for (const auto& [id, root] : wanted)
        expected.append(u"%1|%2"_s.arg(id).arg(root));
    QCOMPARE(RawRows(u"SELECT ID, Root FROM Posts ORDER BY ID"_s), expected);
}

QTEST_GUILESS_MAIN(tst_DaoEditing)
#include "tst_DaoEditing.moc"
