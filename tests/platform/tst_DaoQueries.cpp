// tests/platform/tst_DaoQueries.cpp
// Queries that are more than one statement of the file: crosstabs, tables made of rows, updates of several tables.

#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;
using dao::ExecuteOption;
using dao::FieldType;
using dao::Value;

class tst_DaoQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void CrosstabFollowsTheRows();
    void CrosstabParameters();
    void CrosstabTooWide();
    void MakeTableInheritsFields();
    void MakeTableIsWholeOrNothing();
    void MakeTableNames();
    void LongTextMakesAMemo();
    void UpdateOfTwoTablesIsWholeOrNothing();
    void ExecuteSavedQuery();

private:
    int Execute(const QString& Sql, ExecuteOption Option = ExecuteOption::FailOnError)
    {
        return ErrorNumber([&] { m_db->Execute(Sql, Option); });
    }
    QStringList Fields(const QString& Table) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_db;
};

void tst_DaoQueries::init()
{
    m_db.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_db = Database::Create(m_folder->filePath(u"a.mdb"_s));
    dao::TableDef table;
    table.Name = u"Posts"_s;
    table.Fields = {Field(u"ID"_s, FieldType::Long), Field(u"Name"_s, FieldType::Text, 5), Field(u"Read"_s, FieldType::Boolean),
                    Field(u"PostDate"_s, FieldType::Date), Field(u"Body"_s, FieldType::Memo)};
    table.Fields[1].Required = true;
    table.Indexes = {{u"PK"_s, {u"ID"_s}, true, true, false}};
    m_db->AppendTable(table);
    for (const QString& row : {u"1, '太郎', True, #2002/1/5#, 'a'"_s, u"2, '花子', False, #2002/2/5#, Null"_s,
                               u"3, '太郎', False, #2002/2/6#, 'c'"_s})
        m_db->Execute(u"INSERT INTO Posts VALUES(%1)"_s.arg(row));
}

/// "name type size" of each field.
QStringList tst_DaoQueries::Fields(const QString& Table) const
{
    QStringList fields;
    for (const dao::TableDef& table : m_db->TableDefs()) {
        for (const dao::FieldDef& field : table.Fields) {
            if (table.Name == Table)
                fields.append(u"%1 %2 %3 %4"_s.arg(field.Name).arg(int(field.Type)).arg(field.Size).arg(field.Required));
        }
    }
    return fields;
}

// The statement is known after the first run; its columns are not.
void tst_DaoQueries::CrosstabFollowsTheRows()
{
    m_db->CreateQueryDef(u"月別"_s, u"TRANSFORM Count(*) SELECT Name FROM Posts GROUP BY Name PIVOT Month(PostDate)"_s);
    QCOMPARE(Rows(*m_db->OpenRecordset(u"月別"_s)), QStringList({u"花子|NULL|1"_s, u"太郎|1|1"_s}));
    m_db->Execute(u"INSERT INTO Posts VALUES(4, '花子', False, #2002/12/1#, Null)"_s);
    const auto rows = m_db->FindQueryDef(u"月別"_s)->OpenRecordset();
    QCOMPARE(rows->FieldCount(), 4);
    QCOMPARE(rows->Field(3).Name, u"12"_s);
    QCOMPARE(Rows(*rows), QStringList({u"花子|NULL|1|1"_s, u"太郎|1|1|NULL"_s}));
    QCOMPARE(m_db->FindQueryDef(u"月別"_s)->Type(), dao::QueryType::Crosstab);
    QCOMPARE(ErrorNumber([&] { m_db->OpenRecordset(u"SELECT * FROM 月別"_s); }), 3637);
    QCOMPARE(Execute(u"月別"_s), 3065);
}

void tst_DaoQueries::CrosstabParameters()
{
    const auto query = m_db->CreateQueryDef(QString(), u"PARAMETERS [いつから] DateTime; TRANSFORM Min(PostDate) SELECT Read, Count(*) AS n "
                                                       "FROM Posts WHERE PostDate >= [いつから] GROUP BY Read PIVOT Name & Month(PostDate)"_s);
    QCOMPARE(ErrorNumber([&] { query->OpenRecordset(); }), 3061);
    query->SetParameter(0, Value::FromText(u"2002/2/1"_s));
    const auto rows = query->OpenRecordset();
    QCOMPARE(rows->Field(2).Name + u' ' + rows->Field(3).Name, u"花子2 太郎2"_s);
    QCOMPARE(Rows(*rows), QStringList({u"False|2|2002/02/05|2002/02/06"_s}));
}

void tst_DaoQueries::CrosstabTooWide()
{
    m_db->BeginTrans();
    for (int id = 10; id < 2200; ++id)
        m_db->Execute(u"INSERT INTO Posts(ID, Name) VALUES(%1, 'x')"_s.arg(id));
    m_db->CommitTrans();
    for (const QString& condition : {u"ID < 1500"_s, u"True"_s})
        QCOMPARE(ErrorNumber([&] { m_db->OpenRecordset(u"TRANSFORM Count(*) SELECT Name FROM Posts WHERE "_s + condition + u" GROUP BY Name PIVOT ID"_s); }), 3205);
    QCOMPARE(m_db->OpenRecordset(u"TRANSFORM Count(*) SELECT Name FROM Posts WHERE ID < 1000 GROUP BY Name PIVOT ID"_s)->FieldCount(), 994);
}

void tst_DaoQueries::MakeTableInheritsFields()
{
    QCOMPARE(Execute(u"SELECT TOP 1 p.*, Left(Name, 1), Name AS 別名, ID / 2 AS half, Null AS 空 INTO 控え FROM Posts AS p ORDER BY Name DESC"_s), 0);
    QCOMPARE(m_db->RecordsAffected(), 2);
    QCOMPARE(Fields(u"控え"_s), QStringList({u"ID 4 0 0"_s, u"Name 10 5 0"_s, u"Read 1 0 0"_s, u"PostDate 8 0 0"_s, u"Body 12 0 0"_s,
                                             u"Expr1001 10 255 0"_s, u"別名 10 5 0"_s, u"half 7 0 0"_s, u"空 10 255 0"_s}));
    QCOMPARE(Rows(*m_db, u"SELECT ID, Expr1001, half FROM 控え ORDER BY ID"_s), QStringList({u"1|太|0.5"_s, u"3|太|1.5"_s}));
    QCOMPARE(Execute(u"INSERT INTO 控え(Name) VALUES('')"_s), 0);
}

void tst_DaoQueries::MakeTableIsWholeOrNothing()
{
    m_db->BeginTrans();
    QCOMPARE(Execute(u"SELECT ID, 1 / (ID - 3) AS q INTO t FROM Posts ORDER BY ID"_s), 11);
    QCOMPARE(Fields(u"t"_s), QStringList());
    QCOMPARE(Execute(u"SELECT ID INTO t FROM Posts WHERE False"_s), 0);
    QCOMPARE(m_db->RecordsAffected(), 0);
    m_db->Rollback();
    QCOMPARE(Fields(u"t"_s), QStringList());
    QCOMPARE(Execute(u"SELECT ID INTO t FROM Posts WHERE ID = n"_s), 3061);
    QCOMPARE(Execute(u"SELECT ID INTO t FROM Posts"_s), 0);
}

void tst_DaoQueries::MakeTableNames()
{
    m_db->CreateQueryDef(u"Q"_s, u"SELECT ID INTO t FROM Posts"_s);
    QCOMPARE(Execute(u"Q"_s), 0);
    QCOMPARE(Execute(u"Q"_s), 3010);
    QCOMPARE(Execute(u"SELECT ID INTO ｑ FROM Posts"_s), 3012);
    QCOMPARE(Execute(u"SELECT ID INTO posts FROM Posts"_s), 3610);
    QCOMPARE(Execute(u"SELECT a.ID, b.ID, a.ID & 'x' AS [a_ID] INTO u FROM Posts AS a, Posts AS b"_s), 3191);
    QCOMPARE(Fields(u"u"_s), QStringList());
}

void tst_DaoQueries::LongTextMakesAMemo()
{
    const QString statement = u"SELECT String(%1, 'あ') AS s, [どれ] AS p, Name INTO t%1 FROM Posts"_s;
    for (const int size : {255, 256}) {
        const auto query = m_db->CreateQueryDef(QString(), statement.arg(size));
        query->SetParameter(0, Value::FromText(u"x"_s));
        query->Execute();
        QCOMPARE(query->RecordsAffected(), 3);
    }
    QCOMPARE(Fields(u"t255"_s), QStringList({u"s 10 255 0"_s, u"p 10 255 0"_s, u"Name 10 5 0"_s}));
    QCOMPARE(Fields(u"t256"_s), QStringList({u"s 12 0 0"_s, u"p 12 0 0"_s, u"Name 10 5 0"_s}));
}

void tst_DaoQueries::UpdateOfTwoTablesIsWholeOrNothing()
{
    m_db->Execute(u"SELECT ID, Name INTO Other FROM Posts"_s);
    const QString both = u"UPDATE Posts INNER JOIN Other ON Posts.ID = Other.ID SET Other.Name = Posts.Name & '-', Posts.Name = %1 WHERE Posts.ID < 3"_s;
    QCOMPARE(Execute(both.arg(u"Posts.Name & '12345'"_s)), 3163);
    QCOMPARE(Rows(*m_db, u"SELECT Name FROM Other"_s), QStringList({u"太郎"_s, u"花子"_s, u"太郎"_s}));
    QCOMPARE(Execute(both.arg(u"Left(Other.Name, 1)"_s)), 0);
    QCOMPARE(m_db->RecordsAffected(), 2);
    QCOMPARE(Rows(*m_db, u"SELECT Posts.Name, Other.Name FROM Posts INNER JOIN Other ON Posts.ID = Other.ID ORDER BY Posts.ID"_s),
             QStringList({u"太|太郎-"_s, u"花|花子-"_s, u"太郎|太郎"_s}));
    QCOMPARE(Execute(both.arg(u"'123456'"_s), ExecuteOption::None), 0);
}

void tst_DaoQueries::ExecuteSavedQuery()
{
    m_db->CreateQueryDef(u"消す"_s, u"PARAMETERS 番号 Long; DELETE FROM Posts WHERE ID = 番号"_s);
    QCOMPARE(Execute(u"EXECUTE 消す 2"_s), 0);
    QCOMPARE(m_db->RecordsAffected(), 1);
    QCOMPARE(Execute(u"EXECUTE 消す 3"_s), 0);
    QCOMPARE(Rows(*m_db, u"SELECT ID FROM Posts"_s), QStringList({u"1"_s}));
    QCOMPARE(Execute(u"EXECUTE 消す 'x'"_s), 3421);
    QCOMPARE(Execute(u"EXECUTE 消す"_s), 3061);
}

QTEST_GUILESS_MAIN(tst_DaoQueries)
#include "tst_DaoQueries.moc"
