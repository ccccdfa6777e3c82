// tests/platform/tst_DaoDefinition.cpp
// Definitions, rules and what action statements do with refused rows, from the text files in tests/data/dao.

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Table.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;
using dao::ExecuteOption;

/// Each case is a block of lines on an empty database. A step is "> " a statement with fail-on-error, "- " one without,
/// "? " a table's name to be described, "$ " SQLite's own statement by another program, "^" closing and opening again.
/// Below a step stands what it gives: "= a|b" each row or line of the description, "+ n" rows changed, "! number
/// offset" an error. A statement with nothing below it must succeed.
class tst_DaoDefinition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Steps_data();
    void Steps();
    void RowsSurviveEveryChange();
    void CounterIsKnownBeforeItIsStored();
    void DescendingIndex();
    void LongNames();
    void HostileNames_data();
    void HostileNames();

private:
    QTemporaryDir m_folder;
};

namespace
{

struct Step
{
    QChar Kind;
    QString Text;
    QStringList Wanted;
};
using Block = std::vector<Step>;

QStringList Described(const dao::TableDef& Table)
{
    QStringList lines;
    for (const dao::FieldDef& field : Table.Fields)
        lines.append(u"= %1 %2 %3 %4%5"_s.arg(field.Name)
                         .arg(int(field.Type))
                         .arg(field.DataSize())
                         .arg(field.Attributes())
                         .arg(field.Required ? u" required"_s : u""_s));
    for (const dao::IndexDef& index : Table.Indexes) {
        QStringList fields;
        for (const QString& field : index.Fields)
            fields.append(field + (index.Descending.contains(field) ? u" desc"_s : u""_s));
        lines.append(u"= %1(%2)%3%4%5%6"_s.arg(
            index.Name, fields.join(u','), index.Primary ? u" primary"_s : u""_s, index.Unique ? u" unique"_s : u""_s,
            index.Required ? u" required"_s : u""_s, index.IgnoreNull ? u" ignore"_s : u""_s));
    }
    for (const dao::ConstraintDef& rule : Table.Constraints)
        lines.append(u"= %1(%2) %3(%4)"_s.arg(rule.Name, rule.Fields.join(u','), rule.ForeignTable,
                                              rule.ForeignFields.join(u',')));
    return lines;
}

/// What a step gives, in the form of the files.
QStringList Outcome(Database& Db, const Step& Done)
{
    try {
        if (Done.Kind == u'?') {
            for (const dao::TableDef& table : Db.TableDefs())
                if (table.Name == Done.Text)
                    return Described(table);
            return {};
        }
        const bool isQuery = Done.Text.startsWith(u"SELECT"_s) && !Done.Text.contains(u" INTO "_s);
        if (isQuery) {
            QStringList rows;
            for (const QString& row : Rows(Db, Done.Text))
                rows.append(u"= "_s + row);
            return rows;
        }
        Db.Execute(Done.Text, Done.Kind == u'-' ? ExecuteOption::None : ExecuteOption::FailOnError);
        return Done.Wanted.isEmpty() ? QStringList() : QStringList(u"+ %1"_s.arg(Db.RecordsAffected()));
    } catch (const dao::Error& error) {
        return {u"! %1 %2"_s.arg(error.Number).arg(error.Offset)};
    }
}

Block ParseBlock(const QStringList& Lines)
{
    Block block;
    for (const QString& line : Lines) {
        if (u">-?$^"_s.contains(line[0]))
            block.push_back({line[0], line.mid(2), {}});
        else
            block.back().Wanted.append(line);
    }
    return block;
}

} // namespace

Q_DECLARE_METATYPE(Block)

void tst_DaoDefinition::Steps_data()
{
    QTest::addColumn<Block>("steps");
    for (const mdlTable::CBlock& block : mdlTable::Blocks("dao"))
        QTest::newRow(qPrintable(block.Place)) << ParseBlock(block.Lines);
}

void tst_DaoDefinition::Steps()
{
    QFETCH(Block, steps);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.mdb"_s);
    auto db = Database::Create(path);
    for (const Step& step : steps) {
        if (step.Kind == u'^') {
            db.reset();
            db = Database::Open(path);
        } else if (step.Kind == u'$') {
            QCOMPARE(CRawDatabase(path).Run(step.Text), step.Wanted.join(u'\n').mid(2));
        } else {
            const QStringList got = Outcome(*db, step);
            QVERIFY2(got == step.Wanted, qPrintable(step.Text + u"\ngot:\n"_s + got.join(u'\n') + u"\nwanted:\n"_s +
                                                    step.Wanted.join(u'\n')));
        }
    }
    QCOMPARE(CRawDatabase(path).Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
}

/// A table like the one with the messages: hidden index, descriptions, another program's trigger, an open recordset.
void tst_DaoDefinition::RowsSurviveEveryChange()
{
    const QString path = m_folder.filePath(u"survive.mdb"_s);
    const auto db = Database::Create(path);
    dao::TableDef table;
    table.Name = u"手紙"_s;
    table.Fields = {Field(u"ID"_s, dao::FieldType::Long), Field(u"題名"_s, dao::FieldType::Text, 20, true),
                    Field(u"Old"_s, dao::FieldType::Long)};
    table.Fields[1].Description = u"題"_s;
    table.Indexes = {{u"PK"_s, {u"ID"_s}, true, true, false}, {u"Inner"_s, {u"題名"_s, u"ID"_s}, false, false, true}};
    db->AppendTable(table);
    for (int id = 1; id <= 50; ++id)
        db->Execute(u"INSERT INTO 手紙 VALUES(%1, '題%1', %1)"_s.arg(id * 3));
    QCOMPARE(
        CRawDatabase(path).Run(u"CREATE TABLE Log(ID); CREATE TRIGGER t AFTER DELETE ON 手紙 BEGIN INSERT INTO Log "
                               "VALUES(OLD.ID); END"_s),
        QString());
    const auto open = db->OpenRecordset(u"SELECT ID FROM 手紙 ORDER BY ID DESC"_s, dao::RecordsetType::Dynaset);
    for (const QString& change :
         {u"ALTER TABLE 手紙 DROP COLUMN Old"_s, u"ALTER TABLE 手紙 ADD COLUMN 数 LONG"_s,
          u"CREATE INDEX 数 ON 手紙 (数) WITH IGNORE NULL"_s, u"ALTER TABLE 手紙 DROP CONSTRAINT PK"_s,
          u"ALTER TABLE 手紙 ADD 番 COUNTER"_s, u"CREATE INDEX Both ON 手紙 (ID DESC, 番) WITH PRIMARY"_s,
          u"ALTER TABLE 手紙 ADD CONSTRAINT Need NOT NULL (題名)"_s})
        db->Execute(change);
    open->MoveNext();
    QCOMPARE(open->Long(0), 147);
    QCOMPARE(Rows(*db, u"SELECT Count(*), Sum(ID), Sum(番), Max(題名) FROM 手紙"_s),
             QStringList({u"50|3825|1275|題99"_s}));
    const auto tables = db->TableDefs();
    const auto now =
        std::find_if(tables.begin(), tables.end(), [](const auto& table) { return table.Name == u"手紙"_s; });
    QVERIFY(now != tables.end());
    QCOMPARE(now->FindField(u"題名")->Description, u"題"_s);
    QVERIFY(now->FindField(u"題名")->AllowZeroLength && now->FindField(u"題名")->Required);
    db->Execute(u"DELETE FROM 手紙 WHERE ID = 3"_s);
    QCOMPARE(
        CRawDatabase(path).Rows(u"SELECT name FROM sqlite_master WHERE tbl_name = '手紙' AND sql > '' ORDER BY 1"_s),
        QStringList({u"手紙"_s, u"手紙.Both"_s, u"手紙.Inner"_s, u"手紙.数"_s, u"t"_s}));
    QCOMPARE(CRawDatabase(path).Rows(u"SELECT ID FROM Log"_s), QStringList({u"3"_s}));
}

void tst_DaoDefinition::CounterIsKnownBeforeItIsStored()
{
    const auto db = Database::Create(m_folder.filePath(u"counter.mdb"_s));
    db->Execute(u"CREATE TABLE T (Nr COUNTER PRIMARY KEY, Name TEXT(5))"_s);
    const auto rows = db->OpenRecordset(u"T"_s, dao::RecordsetType::Table);
    rows->AddNew();
    QCOMPARE(rows->Long(0), 1);
    db->Execute(u"INSERT INTO T(Name) VALUES('other')"_s); // takes the number meanwhile
    rows->Set(1, dao::Value::FromText(u"mine"_s));
    rows->Update();
    rows->AddNew();
    QCOMPARE(rows->Long(0), 3);
    rows->CancelUpdate();
    rows->MoveFirst();
    rows->Edit();
    QCOMPARE(ErrorNumber([&] { rows->Set(0, dao::Value::FromLong(9)); }), 3113);
    rows->CancelUpdate();
    db->Execute(u"DELETE FROM T WHERE Nr = 2"_s);
    db->Execute(u"INSERT INTO T(Name) VALUES('third')"_s);
    QCOMPARE(Rows(*db, u"SELECT * FROM T ORDER BY Nr"_s), QStringList({u"1|other"_s, u"3|third"_s}));
}

/// What comes later in the index is "greater", whichever way its fields go.
void tst_DaoDefinition::DescendingIndex()
{
    const auto db = Database::Create(m_folder.filePath(u"descending.mdb"_s));
    db->Execute(u"CREATE TABLE T (n LONG, t TEXT(1))"_s);
    db->Execute(u"CREATE INDEX i ON T (n, t DESC)"_s);
    for (const char* row : {"1,'z'", "2,'a'", "2,'b'", "2,'c'", "3,'a'"})
        db->Execute(u"INSERT INTO T VALUES(%1)"_s.arg(QLatin1StringView(row)));
    const auto rows = db->OpenRecordset(u"T"_s, dao::RecordsetType::Table);
    rows->SetIndex(u"i"_s);
    QCOMPARE(Rows(*rows), QStringList({u"1|z"_s, u"2|c"_s, u"2|b"_s, u"2|a"_s, u"3|a"_s}));
    QStringList found;
    for (const QString& sign : {u"="_s, u">="_s, u">"_s, u"<="_s, u"<"_s}) {
        rows->Seek(sign, {dao::Value::FromLong(2), dao::Value::FromText(u"B"_s)});
        found.append(sign + rows->Text(0) + rows->Text(1));
    }
    QCOMPARE(found, QStringList({u"=2b"_s, u">=2b"_s, u">2a"_s, u"<=2b"_s, u"<2c"_s}));
}

void tst_DaoDefinition::LongNames()
{
    const auto db = Database::Create(m_folder.filePath(u"names.mdb"_s));
    const QString longest(64, u'名');
    db->Execute(u"CREATE TABLE %1 (%1 LONG CONSTRAINT %1 UNIQUE)"_s.arg(longest));
    QCOMPARE(ErrorNumber([&] { db->Execute(u"CREATE TABLE %1x (a LONG)"_s.arg(longest)); }), 3125);
    QCOMPARE(ErrorNumber([&] { db->CreateQueryDef(longest, u"SELECT 1"_s); }), 3012);
    QString fields = u"f0 LONG"_s;
    for (int field = 1; field < 255; ++field)
        fields += u", f%1 TEXT(1)"_s.arg(field);
    db->Execute(u"CREATE TABLE Wide (%1)"_s.arg(fields));
    QCOMPARE(ErrorNumber([&] { db->Execute(u"ALTER TABLE Wide ADD x LONG"_s); }), 3190);
    QCOMPARE(ErrorNumber([&] { db->Execute(u"CREATE TABLE Wider (%1, x LONG)"_s.arg(fields)); }), 3190);
    for (int index = 0; index < 32; ++index)
        db->Execute(u"CREATE INDEX i%1 ON Wide (f%1)"_s.arg(index));
    QCOMPARE(ErrorNumber([&] { db->Execute(u"CREATE INDEX i32 ON Wide (f32)"_s); }), 3626);
}

void tst_DaoDefinition::HostileNames_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = {u"a\"b"_s,     u"a'b"_s,     u"\"); DROP TABLE \"~Queries\"; --"_s,
                               u"a b"_s,      u"a;b"_s,     u"'); --"_s,
                               u"%1 %2"_s,    u"ソ表"_s,    u"SELECT"_s,
                               u"rowid"_s,    u"_rowid_"_s, u"a/*b"_s,
                               u"?1 :x @y"_s, u"𠮟る"_s,    u"ﾊﾟｰﾂ"_s,
                               u"(1)"_s};
    for (const QString& name : names)
        QTest::newRow(qPrintable(name)) << name;
}

/// A name goes through every statement that SQLite is given with it.
void tst_DaoDefinition::HostileNames()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const auto db = Database::Create(folder.filePath(u"a.mdb"_s));
    const QString n = u'[' + name + u']';
    db->Execute(u"CREATE TABLE P (k LONG CONSTRAINT %1 PRIMARY KEY)"_s.arg(n));
    db->Execute(u"CREATE TABLE %1 (%1 TEXT(20), b LONG CONSTRAINT %1 REFERENCES P)"_s.arg(n));
    db->Execute(u"CREATE INDEX [i%2 ON %1 (%1 DESC) WITH IGNORE NULL"_s.arg(n, n.mid(1)));
    db->Execute(u"INSERT INTO P VALUES(1)"_s);
    db->Execute(u"INSERT INTO %1 (%1, b) VALUES('x', 1)"_s.arg(n));
    QCOMPARE(ErrorNumber([&] { db->Execute(u"INSERT INTO %1 (b) VALUES(2)"_s.arg(n)); }), 3201);
    QCOMPARE(ErrorNumber([&] { db->Execute(u"DELETE FROM P"_s); }), 3200);
    db->Execute(u"ALTER TABLE %1 ADD CONSTRAINT u UNIQUE (%1)"_s.arg(n));
    db->Execute(u"ALTER TABLE %1 ADD CONSTRAINT n NOT NULL (%1)"_s.arg(n));
    const auto rows = db->OpenRecordset(name, dao::RecordsetType::Table);
    rows->SetIndex(u'i' + name);
    rows->Seek(u"=", {dao::Value::FromText(u"Ｘ"_s)});
    QVERIFY(!rows->NoMatch());
    rows->Edit();
    rows->Set(name, dao::Value::FromText(u"y"_s));
    rows->Update();
    QCOMPARE(Rows(*db, u"SELECT %1 FROM %1 ORDER BY %1"_s.arg(n)), QStringList({u"y"_s}));
    db->RenameTable(name, u"Renamed"_s);
    QCOMPARE(ErrorNumber([&] { db->Execute(u"DELETE FROM P"_s); }), 3200);
    db->Execute(u"ALTER TABLE Renamed DROP CONSTRAINT %1"_s.arg(n));
    db->Execute(u"DROP INDEX [i%1 ON Renamed"_s.arg(n.mid(1)));
    db->Execute(u"DROP TABLE Renamed"_s);
    QCOMPARE(CRawDatabase(db->Name())
                 .Rows(u"SELECT name FROM sqlite_master WHERE type IN ('table', 'trigger') "
                       "AND substr(name, 1, 1) <> '~'"_s),
             QStringList({u"P"_s}));
}

QTEST_GUILESS_MAIN(tst_DaoDefinition)
#include "tst_DaoDefinition.moc"
