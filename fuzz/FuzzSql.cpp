// fuzz/FuzzSql.cpp
// Statements of the dialect, whatever they are, run against a database with boards and messages.

#include "fuzz/Demand.h"
#include "fuzz/Statements.h"
#include "platform/dao/Database.h"
#include "store/Schema.h"

#include <QDeadlineTimer>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

/// What the statements of one input may take together.
constexpr int LimitMs = 400;
constexpr qint64 LimitBytes = 16 * 1024 * 1024;
constexpr int ReadRows = 50;

const QString MessageRows[] = {
    u"INSERT INTO Message VALUES(1,1,-1,'はじめまして','','a@x','太郎',#2002/01/15 12:45#,0,'本文です ABC',1,0)"_s,
    u"INSERT INTO Message VALUES(1,2,0,'Re: はじめまして','','','花子',#2002/01/16 6:00#,1,'ａｂｃ がぎぐ',1,2)"_s,
    u"INSERT INTO Message VALUES(1,3,0,'質問 50%','http://x/','b@x','太郎',#2002/02/01#,0,Null,3,0)"_s,
    u"INSERT INTO Message VALUES(2,1,0,'HELLO','','','Taro',#1999/12/31 23:59#,0,'x[1]*y',1,1)"_s,
    u"INSERT INTO Message VALUES(2,2,-1,'hello','','','ＴＡＲＯ',#1999/12/31 23:59#,1,'50#',1,0)"_s,
};

/// The database that every input finds as it was made: each runs in a transaction that is rolled back.
class CSubject
{
public:
    CSubject()
        : m_db(dao::Database::Create(m_folder.filePath(u"log.mdb"_s)))
    {
        Demand(mdlSchema::CreateBBSTable(*m_db) && mdlSchema::CreateMessageTable(*m_db) &&
                   mdlSchema::CreateMarkTable(*m_db) && mdlSchema::WriteVersionTable(*m_db, QString()),
               "the schema is made");
        for (const QString& row : MessageRows)
            m_db->Execute(row);
        m_db->CreateQueryDef(u"未読"_s, u"SELECT * FROM Message WHERE Read = False"_s);
        m_db->CreateQueryDef(u"ByBoard"_s, u"PARAMETERS b Long; SELECT ID, Subject FROM Message WHERE BBS_ID = b"_s);
        m_db->SetMaxFileSize(LimitBytes);
        m_db->SetMaxResultSize(LimitBytes);
        m_db->SetProgress([this] { return !m_deadline.hasExpired(); });
        m_before = Summary();
    }

    void Run(const std::vector<CFuzzStatement>& Block)
    {
        m_deadline.setRemainingTime(LimitMs);
        m_db->BeginTrans();
        for (const CFuzzStatement& each : Block)
            Run(each);
        m_deadline = QDeadlineTimer(QDeadlineTimer::Forever);
        if (m_db->InTransaction())
            m_db->Rollback();
        Demand(Summary() == m_before, "a rolled back transaction leaves nothing behind");
    }

private:
    void Run(const CFuzzStatement& Statement)
    {
        try {
            CheckText(Statement.Sql);
            const auto query = m_db->CreateQueryDef(Statement.Name, Statement.Sql);
            for (int i = 0; i < static_cast<int>(query->Parameters().size()); ++i)
                query->SetParameter(i, dao::Value::FromText(i % 2 == 0 ? u"1"_s : u"2002/1/15"_s));
            if (jetsql::ReturnsRows(query->Type()))
                Read(*query->OpenRecordset(Statement.Sql.size() % 2 == 0 ? dao::RecordsetType::Snapshot
                                                                         : dao::RecordsetType::Dynaset));
            else
                query->Execute(Statement.Sql.size() % 2 == 0 ? dao::ExecuteOption::FailOnError
                                                             : dao::ExecuteOption::None);
        } catch (const dao::Error& error) {
            CheckError(error, Statement.Sql);
        }
    }

    static void CheckText(const QString& Sql)
    {
        const jetsql::Shape shape = jetsql::TakeShape(Sql);
        Demand(shape.Offsets.size() == 2 * shape.Literals.size(), "two offsets for a literal");
        for (const int offset : shape.Offsets)
            Demand(offset >= 0 && offset <= Sql.size(), "literals lie within the statement");
    }

    static void CheckError(const dao::Error& Error, const QString& Sql)
    {
        Demand(Error.Number > 0, "an error has a number");
        Demand(!Error.Description.isEmpty(), "an error has a text");
        Demand(Error.Offset >= -1 && Error.Offset <= Sql.size(), "an error's place lies within the statement");
    }

    static void Read(dao::Recordset& Rows)
    {
        for (int row = 0; row < ReadRows && !Rows.Eof(); ++row, Rows.MoveNext()) {
            for (int field = 0; field < Rows.FieldCount(); ++field) {
                Demand(!Rows.Field(field).Name.isEmpty(), "a column has a name");
                Demand(Rows.Get(field).ToText() == Rows.Text(field), "both ways of reading give the same text");
            }
        }
    }

    /// Tables, queries and a few values: what a rollback that does not reach everything would change.
    QString Summary()
    {
        QStringList parts = m_db->QueryDefs();
        for (const dao::TableDef& table : m_db->TableDefs())
            parts << table.Name << QString::number(table.Fields.size());
        const auto rows = m_db->OpenRecordset(u"SELECT Count(*), Sum(ID), Max(Subject), Sum(Mark) FROM Message"_s);
        for (int field = 0; field < rows->FieldCount(); ++field)
            parts << rows->Text(field);
        return parts.join(u'|');
    }

    QTemporaryDir m_folder;
    std::unique_ptr<dao::Database> m_db;
    QDeadlineTimer m_deadline{QDeadlineTimer::Forever};
    QString m_before;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size)
{
    static CSubject subject;
    for (const auto& block : ReadStatements(TextOf(Data, Size)))
        subject.Run(block);
    return 0;
}
