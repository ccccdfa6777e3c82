// platform/dao/Database.cpp
// The face of the database layer; the work is the session's.

#include "platform/dao/Database.h"

#include "platform/dao/CSession.h"
#include "platform/dao/OpenFile.h"
#include "platform/dao/SchemaText.h"
#include "platform/text/Fold.h"

#include <sqlite3.h>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

const std::vector<Value> NoParameters;

/// Names are at most this long; what is longer cannot be the name of a saved query.
constexpr qsizetype MaxNameSize = 66;

} // namespace

Database::Database(std::shared_ptr<CSession> Session)
    : m_session(std::move(Session))
{}

Database::~Database() { m_session->Close(); }

std::unique_ptr<Database> Database::Open(const QString& FileName)
{
    return std::unique_ptr<Database>(new Database(std::make_shared<CSession>(mdlOpenFile::Open(FileName))));
}

std::unique_ptr<Database> Database::Create(const QString& FileName)
{
    return std::unique_ptr<Database>(new Database(std::make_shared<CSession>(mdlOpenFile::Create(FileName))));
}

CSession& Database::Session() const
{
    m_session->Connection().RequireOpen();
    m_session->Connection().RequireIdle();
    return *m_session;
}

QString Database::Name() const { return m_session->Connection().FileName(); }

bool Database::IsReadOnly() const { return m_session->Connection().IsReadOnly(); }

bool Database::IsOpen() const { return m_session->Connection().IsOpen(); }

void Database::Close()
{
    m_session->Connection().RequireIdle();
    m_session->Close();
}

void Database::Checkpoint() { Session().Connection().Checkpoint(); }

void Database::LeaveLog() { Session().Connection().LeaveLog(); }

QString Database::StatementText(const QString& Source) const
{
    if (Source.size() > MaxNameSize)
        return Source;
    QStringView name = QStringView(Source).trimmed();
    if (name.startsWith(u'[') && name.endsWith(u']'))
        name = name.mid(1, name.size() - 2);
    const QString* saved = Session().Schema().FindQuery(name);
    return saved ? *saved : Source;
}

void Database::Execute(const QString& Sql, ExecuteOption Option)
{
    m_recordsAffected = 0;
    const jetsql::Shape shape = jetsql::TakeShape(StatementText(Sql));
    const auto statement = Session().Compile(shape);
    m_recordsAffected = Session().Run({*statement, shape, NoParameters}, Option);
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& Source, RecordsetType Type)
{
    if (Type == RecordsetType::Table) {
        const TableDef* table = Session().Schema().FindTableDef(Source);
        if (!table || table->Attributes == TableDef::SystemAttributes)
            throw jetsql::MakeError(3011, {Source});
        return Session().OpenTable(*table);
    }
    const jetsql::Shape shape = jetsql::TakeShape(StatementText(Source));
    const auto statement = Session().Compile(shape);
    return Session().Open({*statement, shape, NoParameters}, Type);
}

void Database::BeginTrans() { Session().Connection().Begin(); }

void Database::CommitTrans() { Session().Commit(); }

void Database::Rollback() { Session().Rollback(); }

bool Database::InTransaction() const { return m_session->Connection().Depth() > 0; }

const std::vector<TableDef>& Database::TableDefs() { return Session().FreshSchema().Tables(); }

void Database::AppendTable(const TableDef& Table) { Session().SchemaToChange().AppendTable(Table); }

void Database::DeleteTable(const QString& TableName) { Session().SchemaToChange().DeleteTable(TableName); }

void Database::RenameTable(const QString& OldName, const QString& NewName)
{
    Session().SchemaToChange().RenameTable(OldName, NewName);
}

std::unique_ptr<QueryDef> Database::CreateQueryDef(const QString& QueryName, const QString& Sql)
{
    if (!QueryName.isEmpty())
        Session().FreshSchema().RequireFreeName(QueryName, 3012);
    Session().Compile(jetsql::TakeShape(Sql));
    if (!QueryName.isEmpty())
        Session().QueriesToChange().SaveQuery(QueryName, Sql);
    return std::make_unique<QueryDef>(*this, QueryName, Sql);
}

QStringList Database::QueryDefs() { return Session().FreshSchema().QueryNames(); }

std::unique_ptr<QueryDef> Database::FindQueryDef(const QString& QueryName)
{
    const QString* sql = Session().FreshSchema().FindQuery(QueryName);
    return sql ? std::make_unique<QueryDef>(*this, QueryName, *sql) : nullptr;
}

void Database::DeleteQueryDef(const QString& QueryName) { Session().QueriesToChange().DeleteQuery(QueryName); }

void Database::SetBusyTimeout(int Milliseconds) { sqlite3_busy_timeout(Session().Connection().Handle(), Milliseconds); }

void Database::SetProgress(std::function<bool()> KeepGoing)
{
    Session().Connection().SetProgress(std::move(KeepGoing));
}

void Database::SetMaxResultSize(qint64 Bytes) { Session().Connection().SetMaxResultSize(Bytes); }

void Database::SetMaxFileSize(qint64 Bytes)
{
    CConnection& connection = Session().Connection();
    const qint64 pageSize = connection.RunForNumber("PRAGMA page_size");
    const qint64 pages = Bytes > 0 ? std::max<qint64>(1, Bytes / pageSize) : 0xfffffffe;
    connection.Run("PRAGMA max_page_count=" + QByteArray::number(pages));
}

} // namespace dao
