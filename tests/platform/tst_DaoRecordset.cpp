// tests/platform/tst_DaoRecordset.cpp
// Moving, reading and searching in the three kinds of recordsets.

#include "tests/platform/CPostsTest.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::FieldType;
using dao::RecordsetType;
using dao::Value;

class tst_DaoRecordset : public CPostsTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { MakePosts(); }
    void EmptyRecordset_data();
    void EmptyRecordset();
    void MovesOverBothEnds_data();
    void MovesOverBothEnds();
    void MoveByMany();
    void RecordCounts();
    void ReadsByName();
    void TypedReads();
    void SnapshotTakesWhatTheFileHolds();
    void SnapshotStaysAsItWas();
    void SnapshotIsReadOnly();
    void IndexOrder();
    void Seek_data();
    void Seek();
    void SeekRefusals();
    void TopWithTies_data();
    void TopWithTies();
};

void tst_DaoRecordset::EmptyRecordset_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("source");

    QTest::newRow("table") << int(RecordsetType::Table) << u"Posts"_s;
    QTest::newRow("dynaset") << int(RecordsetType::Dynaset) << u"SELECT * FROM Posts"_s;
    QTest::newRow("snapshot") << int(RecordsetType::Snapshot) << u"SELECT * FROM Posts"_s;
}

void tst_DaoRecordset::EmptyRecordset()
{
    QFETCH(int, type);
    QFETCH(QString, source);
    const auto rows = Open(source, RecordsetType(type));
    QVERIFY(rows->Bof());
    QVERIFY(rows->Eof());
    QCOMPARE(rows->RecordCount(), 0);
    QCOMPARE(ErrorNumber([&] { rows->MoveFirst(); }), 3021);
    QCOMPARE(ErrorNumber([&] { rows->MoveNext(); }), 3021);
    QCOMPARE(ErrorNumber([&] { rows->MovePrevious(); }), 3021);
    QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3021);
    rows->Close();
    QCOMPARE(ErrorNumber([&] { rows->Eof(); }), 3420);
}

void tst_DaoRecordset::MovesOverBothEnds_data() { EmptyRecordset_data(); }

void tst_DaoRecordset::MovesOverBothEnds()
{
    QFETCH(int, type);
    QFETCH(QString, source);
    for (const int id : {1, 2, 3})
        Add(id, 0, u"a"_s);
    const auto rows = Open(source, RecordsetType(type));
    QCOMPARE(rows->Long(0), 1);
    QVERIFY(!rows->Bof() && !rows->Eof());
    rows->MovePrevious();
    QVERIFY(rows->Bof() && !rows->Eof());
    QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3021);
    QCOMPARE(ErrorNumber([&] { rows->MovePrevious(); }), 3021);
    rows->MoveNext();
    QCOMPARE(rows->Long(0), 1);
    rows->MoveLast();
    QCOMPARE(rows->Long(0), 3);
    rows->MoveNext();
    QVERIFY(!rows->Bof() && rows->Eof());
    QCOMPARE(ErrorNumber([&] { rows->MoveNext(); }), 3021);
    rows->MovePrevious();
    QCOMPARE(rows->Long(0), 3);
    QVERIFY(!rows->Eof());
}

void tst_DaoRecordset::MoveByMany()
{
    for (int id = 1; id <= 5; ++id)
        Add(id, 0, u"a"_s);
    const auto rows = Open(u"SELECT ID FROM Posts ORDER BY ID"_s);
    rows->Move(3);
    QCOMPARE(rows->Long(0), 4);
    rows->Move(-2);
    QCOMPARE(rows->Long(0), 2);
    rows->Move(100);
    QVERIFY(rows->Eof());
    rows->Move(-5);
    QCOMPARE(rows->Long(0), 1);
    rows->Move(-100);
    QVERIFY(rows->Bof());
    rows->Move(5);
    QCOMPARE(rows->Long(0), 5);
    rows->Move(std::numeric_limits<int>::max());
    QVERIFY(rows->Eof());
}

void tst_DaoRecordset::RecordCounts()
{
    for (int id = 1; id <= 4; ++id)
        Add(id, 0, u"a"_s);
    const auto snapshot = Open(u"SELECT * FROM Posts"_s);
    QCOMPARE(snapshot->RecordCount(), 1);
    snapshot->Move(2);
    snapshot->MoveFirst();
    QCOMPARE(snapshot->RecordCount(), 3);
    snapshot->MoveLast();
    QCOMPARE(snapshot->RecordCount(), 4);
    QCOMPARE(Open(u"Posts"_s, RecordsetType::Table)->RecordCount(), 4);
    const auto dynaset = Open(u"SELECT * FROM Posts"_s, RecordsetType::Dynaset);
    dynaset->MoveLast();
    dynaset->Delete();
    QCOMPARE(dynaset->RecordCount(), 3);
}

void tst_DaoRecordset::ReadsByName()
{
    Add(7, 5, u"題名"_s);
    const auto rows = Open(u"SELECT ID, Title AS 見出し FROM Posts"_s);
    QCOMPARE(rows->FieldCount(), 2);
    QCOMPARE(rows->Get(u"id").ToLong(), 7);
    QCOMPARE(rows->Get(u"ＩＤ").ToLong(), 7);
    QCOMPARE(rows->Get(u"見出し").ToText(), u"題名"_s);
    QCOMPARE(rows->Field(1).SourceField, u"Title"_s);
    QCOMPARE(rows->Field(1).Size, 6);
    QCOMPARE(ErrorNumber([&] { rows->Get(u"Title"); }), 3265);
    QCOMPARE(ErrorNumber([&] { rows->Get(2); }), 3265);
    QCOMPARE(ErrorNumber([&] { rows->Long(-1); }), 3265);
}

void tst_DaoRecordset::TypedReads()
{
    for (const RecordsetType type : {RecordsetType::Table, RecordsetType::Dynaset, RecordsetType::Snapshot}) {
        init();
        const auto table = Open(u"Posts"_s, RecordsetType::Table);
        table->AddNew();
        table->Set(u"ID", Value::FromLong(-2147483647 - 1));
        table->Set(u"Read", Value::FromBoolean(true));
        table->Set(u"Title", Value::FromText(u"𠮟ソ表\0"_s));
        table->Set(u"Sent", Value::FromDate(37271.378472222219));
        table->Set(u"Small", Value::FromText(u" -32768 "_s));
        table->Set(u"Size", Value::FromDouble(1e300));
        table->Update();
        const auto rows = Open(u"Posts"_s, type);
        QCOMPARE(rows->Long(0), -2147483647 - 1);
        QVERIFY(rows->IsNull(1));
        QCOMPARE(rows->Long(1), 0);
        QCOMPARE(rows->Boolean(2), true);
        QCOMPARE(rows->Get(2).Type(), FieldType::Boolean);
        QCOMPARE(rows->Get(2).ToText(), u"True"_s);
        QCOMPARE(rows->Text(3), u"𠮟ソ表\0"_s);
        QCOMPARE(rows->Get(4).ToText(), u"2002/01/15 9:05:00"_s);
        QCOMPARE(rows->Double(4), 37271.378472222219);
        QVERIFY(rows->Text(5).isEmpty());
        QVERIFY(rows->IsNull(5));
        QCOMPARE(rows->Get(6).Type(), FieldType::Integer);
        QCOMPARE(rows->Long(6), -32768);
        QCOMPARE(rows->Double(7), 1e300);
        QCOMPARE(ErrorNumber([&] { rows->Long(7); }), 6);
        QCOMPARE(ErrorNumber([&] { rows->Double(3); }), 13);
    }
}

/// Another program may have written anything into any field.
void tst_DaoRecordset::SnapshotTakesWhatTheFileHolds()
{
    QCOMPARE(CRawDatabase(m_db->Name())
                 .Run(u"INSERT INTO Posts(ID, Root, Read, Sent, Size) VALUES (1, 2, -1, 1.5, 0), (2, 'many', 7, "
                      u"'soon', NULL), "
                      "(3, 4000000000, 0, 2, 'x'), (4, NULL, 0, NULL, x'0aFF')"_s),
             QString());
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Dynaset}) {
        const auto rows = Open(u"SELECT ID, Root, Read, Sent, Size FROM Posts ORDER BY ID"_s, type);
        QCOMPARE(Rows(*rows), QStringList({u"1|2|True|1899/12/31 12:00:00|0"_s, u"2|many|True|soon|NULL"_s,
                                           u"3|4000000000|False|1900/01/01|x"_s, u"4|NULL|False|NULL|0x0AFF"_s}));
    }
}

void tst_DaoRecordset::SnapshotStaysAsItWas()
{
    Add(1, 0, u"a"_s);
    const auto rows = Open(u"SELECT * FROM Posts"_s);
    m_db->Execute(u"UPDATE Posts SET Title = 'b'"_s);
    Add(2, 0, u"c"_s);
    QCOMPARE(rows->Text(3), u"a"_s);
    rows->MoveNext();
    QVERIFY(rows->Eof());
    m_db->DeleteTable(u"Posts"_s);
    rows->MoveFirst();
    QCOMPARE(rows->Long(0), 1);
}

void tst_DaoRecordset::SnapshotIsReadOnly()
{
    Add(1, 0, u"a"_s);
    const auto rows = Open(u"SELECT * FROM Posts"_s);
    QCOMPARE(ErrorNumber([&] { rows->Edit(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->AddNew(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Delete(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->SetIndex(u"PK"); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {Value::FromLong(1)}); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Set(0, Value()); }), 3020);
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3020);
}

void tst_DaoRecordset::IndexOrder()
{
    Add(3, 1, u"ｲ"_s);
    Add(1, 2, u"あ"_s);
    Add(2, 1, u"B"_s);
    Add(4, 1, u"a"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    const auto ids = [&] {
        QStringList list;
        for (; !rows->Eof(); rows->MoveNext())
            list.append(rows->Text(0));
        return list.join(u' ');
    };
    QCOMPARE(ids(), u"3 1 2 4"_s);
    rows->SetIndex(u"pk");
    QCOMPARE(ids(), u"1 2 3 4"_s);
    rows->SetIndex(u"ByRoot");
    QCOMPARE(ids(), u"2 3 4 1"_s);
    rows->SetIndex(u"ByTitle");
    QCOMPARE(ids(), u"4 2 1 3"_s);
    QCOMPARE(ErrorNumber([&] { rows->SetIndex(u"Nope"); }), 3015);
    rows->SetIndex(u"");
    QCOMPARE(ids(), u"3 1 2 4"_s);
}

void tst_DaoRecordset::Seek_data()
{
    // wantedId: 0: no match
    mdlTable::AddRows<QString, QString, QList<int>, int>("dao-recordset.json", "Seek",
                                                         {"index", "operation", "keys", "wantedId"});
}

void tst_DaoRecordset::Seek()
{
    QFETCH(QString, index);
    QFETCH(QString, operation);
    QFETCH(QList<int>, keys);
    QFETCH(int, wantedId);
    for (const int id : {40, 10, 30, 20})
        Add(id, id % 20 == 0 ? 2 : 1, u"a"_s);
    std::vector<Value> values;
    for (const int key : keys)
        values.push_back(Value::FromLong(key));
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->SetIndex(index);
    rows->Seek(operation, values);
    QCOMPARE(rows->NoMatch(), wantedId == 0);
    if (wantedId == 0) {
        QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3021);
        QCOMPARE(ErrorNumber([&] { rows->Edit(); }), 3021);
        rows->MoveFirst();
        QVERIFY(rows->NoMatch());
    } else {
        QCOMPARE(rows->Long(0), wantedId);
    }
}

void tst_DaoRecordset::SeekRefusals()
{
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {Value::FromLong(1)}); }), 3019);
    rows->SetIndex(u"PK");
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"<>", {Value::FromLong(1)}); }), 3001);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {}); }), 3001);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {Value::FromLong(1), Value::FromLong(1)}); }), 3001);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {Value::FromText(u"x"_s)}); }), 3421);
    Add(1, 0, u"ｶﾞﾂ"_s);
    rows->SetIndex(u"ByTitle");
    rows->Seek(u"=", {Value::FromText(u"がつ"_s)});
    QVERIFY(!rows->NoMatch());
}

void tst_DaoRecordset::TopWithTies_data()
{
    mdlTable::AddRows<QString, QString>("dao-recordset.json", "TopWithTies", {"sql", "wantedIds"});
}

void tst_DaoRecordset::TopWithTies()
{
    QFETCH(QString, sql);
    QFETCH(QString, wantedIds);
    Add(1, 7, u"ｶﾞ"_s);
    Add(2, 1, u"が"_s);
    Add(3, 1, u"ガ"_s);
    Add(4, 2, u"ｶﾞ"_s);
    Add(5, 3, u"か"_s);
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Dynaset}) {
        const auto rows = Open(sql, type);
        QStringList ids = Rows(*rows);
        if (sql.contains(u"Title"_s))
            ids.sort();
        QCOMPARE(ids.join(u' '), wantedIds);
    }
}

QTEST_GUILESS_MAIN(tst_DaoRecordset)
#include "tst_DaoRecordset.moc"
