// tests/platform/tst_DaoRecordset.cpp
// Moving, reading, editing and searching in the three kinds of recordsets.

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Table.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;
using dao::FieldType;
using dao::RecordsetType;
using dao::Value;

class tst_DaoRecordset : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    void IndexOrder();
    void Seek_data();
    void Seek();
    void SeekRefusals();
    void EditUnderAnIndex();
    void TopWithTies_data();
    void TopWithTies();
    void RandomStepsAgainstAMap();

private:
    std::unique_ptr<dao::Recordset> Open(const QString& Source, RecordsetType Type = RecordsetType::Snapshot) const
    {
        return m_db->OpenRecordset(Source, Type);
    }
    QStringList RawRows(const QString& Sql) const { return CRawDatabase(m_db->Name()).Rows(Sql); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_db;
};

namespace
{

dao::TableDef Posts()
{
    dao::TableDef table;
    table.Name = u"Posts"_s;
    table.Fields = {Field(u"ID"_s, FieldType::Long),       Field(u"Root"_s, FieldType::Long),
                    Field(u"Read"_s, FieldType::Boolean),  Field(u"Title"_s, FieldType::Text, 6),
                    Field(u"Sent"_s, FieldType::Date),     Field(u"Body"_s, FieldType::Memo),
                    Field(u"Small"_s, FieldType::Integer), Field(u"Size"_s, FieldType::Double)};
    table.Indexes = {{u"PK"_s, {u"ID"_s}, true, true, false},
                     {u"ByRoot"_s, {u"Root"_s, u"ID"_s}, false, false, false},
                     {u"ByTitle"_s, {u"Title"_s}, false, false, false}};
    return table;
}

void Add(Database& Db, qint32 ID, qint32 Root, const QString& Title)
{
    const auto rows = Db.OpenRecordset(u"Posts"_s, RecordsetType::Table);
    rows->AddNew();
    rows->Set(u"ID", Value::FromLong(ID));
    rows->Set(u"Root", Value::FromLong(Root));
    rows->Set(u"Title", Title.isNull() ? Value() : Value::FromText(Title));
    rows->Update();
}

} // namespace

void tst_DaoRecordset::init()
{
    m_db.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_db = Database::Create(m_folder->filePath(u"a.mdb"_s));
    m_db->AppendTable(Posts());
}

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
        Add(*m_db, id, 0, u"a"_s);
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
        Add(*m_db, id, 0, u"a"_s);
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
        Add(*m_db, id, 0, u"a"_s);
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
    Add(*m_db, 7, 5, u"題名"_s);
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
    Add(*m_db, 1, 0, u"a"_s);
    const auto rows = Open(u"SELECT * FROM Posts"_s);
    m_db->Execute(u"UPDATE Posts SET Title = 'b'"_s);
    Add(*m_db, 2, 0, u"c"_s);
    QCOMPARE(rows->Text(3), u"a"_s);
    rows->MoveNext();
    QVERIFY(rows->Eof());
    m_db->DeleteTable(u"Posts"_s);
    rows->MoveFirst();
    QCOMPARE(rows->Long(0), 1);
}

void tst_DaoRecordset::SnapshotIsReadOnly()
{
    Add(*m_db, 1, 0, u"a"_s);
    const auto rows = Open(u"SELECT * FROM Posts"_s);
    QCOMPARE(ErrorNumber([&] { rows->Edit(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->AddNew(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Delete(); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->SetIndex(u"PK"); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Seek(u"=", {Value::FromLong(1)}); }), 3251);
    QCOMPARE(ErrorNumber([&] { rows->Set(0, Value()); }), 3020);
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3020);
}

void tst_DaoRecordset::AddNew()
{
    Add(*m_db, 1, 0, u"first"_s);
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

void tst_DaoRecordset::AddNewInAnEmptyTable()
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

void tst_DaoRecordset::EditAndUpdate()
{
    Add(*m_db, 1, 0, u"a"_s);
    Add(*m_db, 2, 0, u"b"_s);
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

void tst_DaoRecordset::PendingEditIsDropped()
{
    Add(*m_db, 1, 0, u"a"_s);
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

void tst_DaoRecordset::RefusedUpdateStaysPending()
{
    Add(*m_db, 1, 0, u"a"_s);
    const auto rows = Open(u"Posts"_s, RecordsetType::Table);
    rows->AddNew();
    rows->Set(u"ID", Value::FromLong(1));
    rows->Set(u"Title", Value::FromText(u"kept"_s));
    QCOMPARE(ErrorNumber([&] { rows->Update(); }), 3022);
    rows->Set(u"ID", Value::FromLong(2));
    rows->Update();
    QCOMPARE(RawRows(u"SELECT ID, Title FROM Posts"_s), QStringList({u"1|a"_s, u"2|kept"_s}));
}

void tst_DaoRecordset::SetRefusals_data()
{
    mdlTable::AddRows<QString, QString, int>("dao-recordset.json", "SetRefusals", {"field", "text", "number"});
    QTest::newRow("memo has no size") << u"Body"_s << QString(100000, u'あ') << 0;
}

void tst_DaoRecordset::SetRefusals()
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

void tst_DaoRecordset::DeleteRows()
{
    for (const RecordsetType type : {RecordsetType::Table, RecordsetType::Dynaset}) {
        init();
        for (int id = 1; id <= 4; ++id)
            Add(*m_db, id, 0, u"a"_s);
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
void tst_DaoRecordset::DynasetKeepsItsRows()
{
    for (int id = 1; id <= 5; ++id)
        Add(*m_db, id, 0, u"a"_s);
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

void tst_DaoRecordset::DynasetShowsNewValues()
{
    Add(*m_db, 1, 0, u"a"_s);
    Add(*m_db, 2, 0, u"b"_s);
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

void tst_DaoRecordset::DynasetOverSeveralTablesIsReadOnly()
{
    Add(*m_db, 1, 0, u"a"_s);
    const auto rows = Open(u"SELECT Root, Count(*) AS 件数 FROM Posts GROUP BY Root"_s, RecordsetType::Dynaset);
    QCOMPARE(rows->Type(), RecordsetType::Dynaset);
    QCOMPARE(rows->Long(1), 1);
    QCOMPARE(ErrorNumber([&] { rows->Edit(); }), 3326);
}

void tst_DaoRecordset::DynasetWithComputedColumn()
{
    Add(*m_db, 1, 5, u"a"_s);
    Add(*m_db, 2, 6, u"b"_s);
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

void tst_DaoRecordset::DynasetAdds()
{
    Add(*m_db, 9, 0, u"a"_s);
    const auto rows = Open(u"SELECT ID, Title FROM Posts ORDER BY ID"_s, RecordsetType::Dynaset);
    rows->AddNew();
    rows->Set(0, Value::FromLong(3));
    rows->Update();
    QCOMPARE(rows->Long(0), 9);
    rows->MoveLast();
    QCOMPARE(rows->Long(0), 3);
    QCOMPARE(rows->RecordCount(), 2);
}

void tst_DaoRecordset::IndexOrder()
{
    Add(*m_db, 3, 1, u"ｲ"_s);
    Add(*m_db, 1, 2, u"あ"_s);
    Add(*m_db, 2, 1, u"B"_s);
    Add(*m_db, 4, 1, u"a"_s);
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
        Add(*m_db, id, id % 20 == 0 ? 2 : 1, u"a"_s);
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
    Add(*m_db, 1, 0, u"ｶﾞﾂ"_s);
    rows->SetIndex(u"ByTitle");
    rows->Seek(u"=", {Value::FromText(u"がつ"_s)});
    QVERIFY(!rows->NoMatch());
}

void tst_DaoRecordset::EditUnderAnIndex()
{
    for (const int id : {1, 2, 3})
        Add(*m_db, id, id, u"a"_s);
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

void tst_DaoRecordset::TopWithTies_data()
{
    mdlTable::AddRows<QString, QString>("dao-recordset.json", "TopWithTies", {"sql", "wantedIds"});
}

void tst_DaoRecordset::TopWithTies()
{
    QFETCH(QString, sql);
    QFETCH(QString, wantedIds);
    Add(*m_db, 1, 7, u"ｶﾞ"_s);
    Add(*m_db, 2, 1, u"が"_s);
    Add(*m_db, 3, 1, u"ガ"_s);
    Add(*m_db, 4, 2, u"ｶﾞ"_s);
    Add(*m_db, 5, 3, u"か"_s);
    for (const RecordsetType type : {RecordsetType::Snapshot, RecordsetType::Dynaset}) {
        const auto rows = Open(sql, type);
        QStringList ids = Rows(*rows);
        if (sql.contains(u"Title"_s))
            ids.sort();
        QCOMPARE(ids.join(u' '), wantedIds);
    }
}

/// Adding, editing and deleting in any order against a plain map of what must be there.
void tst_DaoRecordset::RandomStepsAgainstAMap()
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

QTEST_GUILESS_MAIN(tst_DaoRecordset)
#include "tst_DaoRecordset.moc"
