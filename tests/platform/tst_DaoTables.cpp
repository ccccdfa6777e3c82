// tests/platform/tst_DaoTables.cpp
// Tables: what they are in the file, what of them comes back, which definitions are refused.

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Table.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;
using dao::FieldType;

class tst_DaoTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void FileIsPlainSqlite();
    void RulesHoldForOtherPrograms();
    void DefinitionComesBack();
    void RefusedDefinitions_data();
    void RefusedDefinitions();
    void RefusedTableLeavesNothing();
    void RenameKeepsRowsAndIndexes();
    void RenameRefusals();
    void RollbackBringsTablesBack();
    void OwnTablesAreHidden();
    void TablesOfAnotherProgram();

private:
    QString Path(const QString& Name) const { return m_folder->filePath(Name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace
{

dao::TableDef Letters()
{
    dao::TableDef table;
    table.Name = u"Letters"_s;
    table.Fields = {Field(u"ID"_s, FieldType::Long),      Field(u"Board"_s, FieldType::Integer),
                    Field(u"Read"_s, FieldType::Boolean), Field(u"Title"_s, FieldType::Text, 5, true),
                    Field(u"Name"_s, FieldType::Text),    Field(u"Sent"_s, FieldType::Date),
                    Field(u"Body"_s, FieldType::Memo),    Field(u"Price"_s, FieldType::Currency)};
    table.Fields[5].Required = true;
    table.Fields[6].Description = u"本文"_s;
    table.Indexes = {{u"PK"_s, {u"ID"_s, u"Board"_s}, true, true, false},
                     {u"IDX1"_s, {u"Board"_s}, false, false, false},
                     {u"Once"_s, {u"Name"_s}, false, true, false},
                     {u"Inner"_s, {u"Board"_s, u"ID"_s}, false, false, true}};
    return table;
}

QString Described(const dao::TableDef& Table)
{
    QStringList parts{Table.Name + u' ' + QString::number(Table.Attributes)};
    for (const dao::FieldDef& field : Table.Fields)
        parts.append(u"%1 %2 %3%4%5%6"_s.arg(field.Name)
                         .arg(int(field.Type))
                         .arg(field.Size)
                         .arg(field.AllowZeroLength ? u" empty"_s : u""_s, field.Required ? u" required"_s : u""_s,
                              field.Description));
    for (const dao::IndexDef& index : Table.Indexes)
        parts.append(u"%1(%2)%3%4"_s.arg(index.Name, index.Fields.join(u','), index.Primary ? u" primary"_s : u""_s,
                                         index.Unique ? u" unique"_s : u""_s));
    return parts.join(u"; "_s);
}

} // namespace

void tst_DaoTables::init() { m_folder = std::make_unique<QTemporaryDir>(); }

void tst_DaoTables::FileIsPlainSqlite()
{
    Database::Create(Path(u"a.mdb"_s))->AppendTable(Letters());
    CRawDatabase raw(Path(u"a.mdb"_s));
    QCOMPARE(raw.Rows(u"SELECT name, type, \"notnull\", pk FROM pragma_table_info('Letters')"_s),
             QStringList({u"ID|LONG|1|1"_s, u"Board|SHORT|1|2"_s, u"Read|BOOLEAN|1|0"_s, u"Title|TEXT(5)|0|0"_s,
                          u"Name|TEXT(255)|0|0"_s, u"Sent|DATETIME REAL|1|0"_s, u"Body|MEMO TEXT|0|0"_s,
                          u"Price|CURRENCY REAL|0|0"_s}));
    QCOMPARE(
        raw.Rows(
            u"SELECT name FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Letters' AND sql IS NOT NULL ORDER BY 1"_s),
        QStringList({u"Letters.IDX1"_s, u"Letters.Inner"_s, u"Letters.Once"_s}));
    QCOMPARE(raw.Rows(u"PRAGMA application_id"_s), QStringList({u"1415673458"_s}));
    QCOMPARE(raw.Rows(u"PRAGMA journal_mode"_s), QStringList({u"wal"_s}));
    QCOMPARE(raw.Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
    // A memo that looks like a number and a date at midnight must not change into something else in the file.
    QCOMPARE(raw.Run(u"INSERT INTO Letters(ID, Board, Sent, Body) VALUES (1, 1, 37271, '007')"_s), QString());
    QCOMPARE(raw.Rows(u"SELECT typeof(Sent), Body, typeof(Body), Read FROM Letters"_s),
             QStringList({u"real|007|text|0"_s}));
}

void tst_DaoTables::RulesHoldForOtherPrograms()
{
    Database::Create(Path(u"a.mdb"_s))->AppendTable(Letters());
    CRawDatabase raw(Path(u"a.mdb"_s));
    const QString insert = u"INSERT INTO Letters(ID, Board, Sent, Title, Body) VALUES (%1)"_s;
    QCOMPARE(raw.Run(insert.arg(u"1, 1, 0, 'あいうえお', 'x'"_s)), QString());
    QCOMPARE(raw.Run(insert.arg(u"2, 1, 0, 'あいうえおか', 'x'"_s)), u"CHECK constraint failed: 3163 Title"_s);
    // Two units each, as the program counts: 𠮟 is one letter but does not fit three times into five.
    QCOMPARE(raw.Run(insert.arg(u"3, 1, 0, '𠮟𠮟a', 'x'"_s)), QString());
    QCOMPARE(raw.Run(insert.arg(u"4, 1, 0, '𠮟𠮟𠮟', 'x'"_s)), u"CHECK constraint failed: 3163 Title"_s);
    QCOMPARE(raw.Run(insert.arg(u"5, 1, 0, '', ''"_s)), u"CHECK constraint failed: 3315 Body"_s);
}

void tst_DaoTables::DefinitionComesBack()
{
    const QString wanted = u"Letters 0; ID 4 0; Board 3 0; Read 1 0; Title 10 5 empty; Name 10 255; Sent 8 0 required; "
                           u"Body 12 0本文; Price 5 0; "
                           "PK(ID,Board) primary unique; IDX1(Board); Once(Name) unique"_s;
    const auto db = Database::Create(Path(u"a.mdb"_s));
    dao::TableDef letters = Letters();
    letters.Indexes[1].Fields = {u"ｂｏａｒｄ"_s}; // names are found whatever their width and case
    db->AppendTable(letters);
    QCOMPARE(Described(db->TableDefs().back()), wanted);
    db->Close();
    QCOMPARE(Described(Database::Open(Path(u"a.mdb"_s))->TableDefs().back()), wanted);
}

void tst_DaoTables::RefusedDefinitions_data()
{
    mdlTable::AddRows<QString, QStringList, QStringList, int>("dao-tables.json", "RefusedDefinitions",
                                                              {"name", "fields", "indexFields", "number"});
    const QStringList id{u"ID"_s};
    QTest::newRow("64 characters are a name") << QString(64, u'あ') << id << QStringList() << 0;
    QTest::newRow("65 are not") << QString(65, u'あ') << id << QStringList() << 3125;
    QTest::newRow("eleven index fields") << u"T"_s << id << QStringList(11, u"ID"_s) << 3277;
}

void tst_DaoTables::RefusedDefinitions()
{
    QFETCH(QString, name);
    QFETCH(QStringList, fields);
    QFETCH(QStringList, indexFields);
    QFETCH(int, number);
    const auto db = Database::Create(Path(u"a.mdb"_s));
    db->AppendTable(Letters());
    dao::TableDef table;
    table.Name = name;
    for (const QString& field : std::as_const(fields))
        table.Fields.push_back(Field(field, FieldType::Long));
    if (!indexFields.isEmpty())
        table.Indexes.push_back({u"X"_s, indexFields, false, false, false});
    QCOMPARE(ErrorNumber([&] { db->AppendTable(table); }), number);
}

void tst_DaoTables::RefusedTableLeavesNothing()
{
    const auto db = Database::Create(Path(u"a.mdb"_s));
    dao::TableDef table = Letters();
    table.Indexes.push_back({u"PK2"_s, {u"Title"_s}, true, true, false});
    QCOMPARE(ErrorNumber([&] { db->AppendTable(table); }), 3283);
    table.Indexes.back() = {u"idx1"_s, {u"Title"_s}, false, false, false};
    QCOMPARE(ErrorNumber([&] { db->AppendTable(table); }), 3284);
    QCOMPARE(CRawDatabase(Path(u"a.mdb"_s)).Rows(u"SELECT count(*) FROM sqlite_master"_s), QStringList({u"0"_s}));
}

void tst_DaoTables::RenameKeepsRowsAndIndexes()
{
    const auto db = Database::Create(Path(u"a.mdb"_s));
    db->AppendTable(Letters());
    const auto rows = db->OpenRecordset(u"Letters"_s, dao::RecordsetType::Table);
    rows->AddNew();
    rows->Set(u"ID", dao::Value::FromLong(7));
    rows->Set(u"Board", dao::Value::FromLong(3));
    rows->Set(u"Sent", dao::Value::FromDate(0.5));
    rows->Update();
    db->RenameTable(u"letters"_s, u"Letters_BACK"_s);
    db->AppendTable(Letters()); // the old name, and the old index names, are free again
    const auto back = db->OpenRecordset(u"Letters_BACK"_s, dao::RecordsetType::Table);
    back->SetIndex(u"PK");
    back->Seek(u"=", {dao::Value::FromLong(7), dao::Value::FromLong(3)});
    QVERIFY(!back->NoMatch());
    QCOMPARE(back->Long(1), 3);
    QCOMPARE(db->OpenRecordset(u"Letters"_s, dao::RecordsetType::Table)->RecordCount(), 0);
    db->DeleteTable(u"Letters_BACK"_s);
    QVERIFY(db->TableDefs().back().FindIndex(u"IDX1"));
    QCOMPARE(CRawDatabase(Path(u"a.mdb"_s))
                 .Rows(u"SELECT DISTINCT TableName FROM \"~Indexes\" UNION SELECT TableName FROM \"~Fields\""_s),
             QStringList({u"Letters"_s}));
}

void tst_DaoTables::RenameRefusals()
{
    const auto db = Database::Create(Path(u"a.mdb"_s));
    dao::TableDef second = Letters();
    second.Name = u"Second"_s;
    db->AppendTable(Letters());
    db->AppendTable(second);
    QCOMPARE(ErrorNumber([&] { db->RenameTable(u"Nope"_s, u"X"_s); }), 3265);
    QCOMPARE(ErrorNumber([&] { db->RenameTable(u"Second"_s, u"LETTERS"_s); }), 3010);
    QCOMPARE(ErrorNumber([&] { db->RenameTable(u"Second"_s, u"a!b"_s); }), 3125);
    QCOMPARE(ErrorNumber([&] { db->RenameTable(u"Second"_s, u"SECOND"_s); }), 0);
}

void tst_DaoTables::RollbackBringsTablesBack()
{
    const auto db = Database::Create(Path(u"a.mdb"_s));
    db->AppendTable(Letters());
    const QString before = Described(db->TableDefs().back());
    {
        const dao::CTransaction transaction(*db);
        db->DeleteTable(u"Letters"_s);
        dao::TableDef other = Letters();
        other.Name = u"Other"_s;
        db->AppendTable(other);
    }
    QCOMPARE(Described(db->TableDefs().back()), before);
    QCOMPARE(ErrorNumber([&] { db->OpenRecordset(u"Other"_s, dao::RecordsetType::Table); }), 3011);
}

void tst_DaoTables::OwnTablesAreHidden()
{
    const auto db = Database::Create(Path(u"a.mdb"_s));
    dao::TableDef hidden = Letters();
    hidden.Name = u"Secret"_s;
    hidden.Attributes = dao::TableDef::HiddenAttributes;
    db->AppendTable(hidden);
    db->AppendTable(Letters());
    QStringList listed;
    for (const dao::TableDef& table : db->TableDefs()) {
        if (table.Attributes == 0)
            listed.append(table.Name);
    }
    QCOMPARE(listed, QStringList({u"Letters"_s}));
    QCOMPARE(ErrorNumber([&] { db->DeleteTable(u"~Queries"_s); }), 3328);
    QCOMPARE(ErrorNumber([&] { db->OpenRecordset(u"~Queries"_s, dao::RecordsetType::Table); }), 3011);
}

void tst_DaoTables::TablesOfAnotherProgram()
{
    QCOMPARE(CRawDatabase(Path(u"a.mdb"_s))
                 .Run(u"CREATE TABLE t (a INTEGER PRIMARY KEY, b VARCHAR(20), c VARCHAR, d FLOAT, e BLOB, f, "
                      "g Date NOT NULL); CREATE INDEX t_b ON t(b); CREATE INDEX t_p ON t(c) WHERE a > 1"_s),
             QString());
    const auto db = Database::Open(Path(u"a.mdb"_s));
    QCOMPARE(Described(db->TableDefs().front()),
             u"t 0; a 4 0; b 10 20 empty; c 12 0 empty; d 7 0; e 11 0; f 12 0 empty; g 8 0 required; "
             "PrimaryKey(a) primary unique; t_b(b)"_s);
    db->AppendTable(Letters());
    QVERIFY(db->TableDefs().front().FindIndex(u"t_b"));
}

QTEST_GUILESS_MAIN(tst_DaoTables)
#include "tst_DaoTables.moc"
