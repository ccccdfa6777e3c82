// board/CQueryRunner.cpp
// Runs a statement that the user or the viewer wants and holds its rows.

#include "board/CQueryRunner.h"

#include "board/work_watch.h"
#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

#include <QScopeGuard>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr int NoDatabase = 3420;
constexpr int OperationCancelled = 3059;

/// Columns of the messages' table in their order.
enum Column { BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, RootThread, Mark };

QString TemporaryQuery() { return u"__TEMP__"_s; }

CMessage MessageFrom(const dao::Recordset& Row)
{
    return {.BBS_ID = Row.Long(BBS_ID),
            .ID = Row.Long(ID),
            .Subject = Row.Text(Subject),
            .HomePage = Row.Text(HomePage),
            .Mail = Row.Text(Mail),
            .PostName = Row.Text(PostName),
            .PostDate = Row.Double(PostDate),
            .InReplyTo = Row.Long(InReplyTo),
            .Body = Row.Text(Body),
            .RootThread = Row.Long(RootThread),
            .Mark = Row.Long(Mark),
            .Read = Row.Boolean(Read)};
}
} // namespace

CQueryRunner::CQueryRunner(Application& App)
    : m_app(App)
{
}

CQueryRunner::~CQueryRunner() = default;

void CQueryRunner::SetDatabase(dao::Database* Database)
{
    CloseLogMessages();
    m_database = Database;
}

qint16 CQueryRunner::ExecSQL(const QString& SQLString)
{
    if (!m_database)
        throw jetsql::MakeError(NoDatabase);
    DropTemporaryQuery(); // one that an earlier run left behind
    const auto query = m_database->CreateQueryDef(TemporaryQuery(), SQLString);
    const auto cleanUp = qScopeGuard([this] { DropTemporaryQuery(); });
    AskParameters(*query);
    return RunWatched(*query);
}

qint16 CQueryRunner::RunWatched(dao::QueryDef& Query)
{
    if (!m_watch)
        return Run(Query);
    const CWatchedWork watched(m_watch, Work::Query);
    m_database->SetProgress([this] { return m_watch->WorkGoesOn(); });
    const auto noMore = qScopeGuard([database = m_database] { database->SetProgress({}); });
    return Run(Query);
}

qint16 CQueryRunner::Run(dao::QueryDef& Query)
{
    const dao::QueryType type = Query.Type();
    switch (type) {
    case dao::QueryType::Append:
    case dao::QueryType::Delete:
    case dao::QueryType::Update:
    case dao::QueryType::Ddl:
    case dao::QueryType::MakeTable:
        Query.Execute(dao::ExecuteOption::FailOnError);
        m_count = Query.RecordsAffected();
        break;
    case dao::QueryType::Select:
    case dao::QueryType::Union:
    case dao::QueryType::Crosstab:
        OpenResult(Query);
        break;
    case dao::QueryType::Compound:
    case dao::QueryType::Procedure:
        break;
    }
    return qint16(type);
}

void CQueryRunner::AskParameters(dao::QueryDef& Query)
{
    const auto parameters = Query.Parameters();
    for (int index = 0; index < int(parameters.size()); ++index) {
        const auto answer = m_app.Shell.InputBox(parameters[std::size_t(index)].Name, m_app.AppTitle());
        if (!answer)
            throw jetsql::MakeError(OperationCancelled);
        Query.SetParameter(index, dao::Value::FromText(*answer));
    }
}

/// The new result is opened before the old one is closed: a statement that fails leaves what is on view alone.
void CQueryRunner::OpenResult(dao::QueryDef& Query)
{
    auto result = Query.OpenRecordset(dao::RecordsetType::Snapshot);
    qint32 count = 0;
    if (!result->Eof()) {
        result->MoveLast();
        count = result->RecordCount();
    }
    const qint32 type = HoldsMessages(*result) ? 0 : 1;
    CloseLogMessages();
    m_recordset = std::move(result);
    m_count = count;
    m_sqlType = type;
}

bool CQueryRunner::HoldsMessages(const dao::Recordset& Result) const
{
    const auto messages = m_database->OpenRecordset(u"SELECT TOP 1 *"_s + u"  FROM Message"_s);
    if (messages->FieldCount() != Result.FieldCount())
        return false;
    for (int field = 0; field < messages->FieldCount(); ++field)
        if (messages->Field(field).Name.compare(Result.Field(field).Name, Qt::CaseInsensitive) != 0)
            return false;
    return true;
}

void CQueryRunner::DropTemporaryQuery()
{
    try {
        m_database->DeleteQueryDef(TemporaryQuery());
    } catch (const dao::Error&) {
        // There was none.
    }
}

std::optional<CMessage> CQueryRunner::Messages(qint32 Index) const
{
    if (!m_recordset || Index < 0 || Index >= m_count)
        return {};
    m_recordset->MoveFirst();
    m_recordset->Move(Index);
    return GetMessage();
}

std::optional<CMessage> CQueryRunner::GetMessage() const
{
    if (!m_recordset || m_recordset->Bof() || m_recordset->Eof())
        return {};
    return MessageFrom(*m_recordset);
}

void CQueryRunner::CloseLogMessages()
{
    if (m_recordset)
        m_recordset->Close();
    m_recordset.reset();
}
