// viewer/CListLoader.cpp
// Statement, question, rows.

#include "viewer/CListLoader.h"

#include "app/Application.h"
#include "app/Version.h"
#include "board/CBBS.h"
#include "board/work_watch.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"
#include "store/Recovery.h"
#include "viewer/CMarks.h"
#include "viewer/viewer_host.h"

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

using dao::QueryType;

constexpr int OperationCancelled = 3059;
constexpr int TooLarge = 3183;

/// What the box says about an action that changed Count rows; empty for what is no action.
QString ActionText(qint16 Code, qint32 Count)
{
    const QString count = QString::number(Count);
    switch (static_cast<QueryType>(Code)) {
    case QueryType::Delete:
        return count + u"件削除しました。"_s;
    case QueryType::Update:
        return count + u"件更新しました。"_s;
    case QueryType::Append:
        return count + u"件追加しました。"_s;
    case QueryType::MakeTable:
        return u"テーブルを作成し"_s + count + u"件追加しました。"_s;
    case QueryType::Ddl:
        return u"データ定義を完了しました。"_s;
    default:
        return {};
    }
}

bool GivesRows(qint16 Code)
{
    const auto type = static_cast<QueryType>(Code);
    return type == QueryType::Select || type == QueryType::Crosstab || type == QueryType::Union;
}

} // namespace

CListLoader::CListLoader(Application& App, CBBS& Board, ViewerHost& Host, const CMarks& Marks)
    : m_app(App)
    , m_bbs(Board)
    , m_host(Host)
    , m_marks(Marks)
{}

void CListLoader::Tell(const QString& Text) const
{
    m_app.Shell.MessageBox(Text, m_app.AppTitle(), Desktop::Icon::Information);
}

CListLoader::Result CListLoader::Run(const QString& Sql, bool IsBoardList)
{
    try {
        m_bbs.CommitPending(); // the statement may change rows of the user's own accord
        const qint16 code = m_bbs.ExecSQL(Sql);
        if (GivesRows(code)) {
            const auto letGo = qScopeGuard([this] { m_bbs.CloseLogMessages(); }); // the list holds the rows now
            return ReadRows(IsBoardList);
        }
        Result result;
        result.What = TellAction(code);
        return result;
    } catch (const dao::Error& error) {
        return Refuse(error);
    }
}

CListLoader::Result CListLoader::Refuse(const jetsql::Error& Error) const
{
    if (Error.Number != OperationCancelled) // whoever cancelled knows
        Tell(mdlStore::RefusalText(Error));
    Result result;
    result.What = Outcome::Refused;
    result.ErrorOffset = Error.Offset;
    return result;
}

CListLoader::Outcome CListLoader::TellAction(qint16 Code)
{
    const QString text = ActionText(Code, m_bbs.Count());
    if (!text.isEmpty()) {
        Tell(text);
        return Outcome::Done;
    }
    if (Code == -1)
        m_app.Shell.MessageBox(u"起り得ないエラー"_s, mdlVersion::ProductName(), Desktop::Icon::None);
    else if (static_cast<QueryType>(Code) == QueryType::Compound)
        Tell(u"現在未対応ですm(_ _)m"_s);
    return Outcome::NoRows;
}

CListLoader::Result CListLoader::ReadRows(bool IsBoardList)
{
    Result result;
    if (m_bbs.SQLType() == 0) {
        result.What = Outcome::Messages;
        result.Items = ReadMessages(RowsToShow());
    } else if (IsBoardList) {
        result.What = Outcome::NotShown;
        m_app.Shell.MessageBox(u"そんなの表示できない。"_s, m_app.AppTitle(), Desktop::Icon::Critical);
    } else {
        result.What = Outcome::RawTable;
        ReadTable(result);
    }
    return result;
}

int CListLoader::RowsToShow() const
{
    const int found = m_bbs.Count();
    const int most = m_app.Option().AddMax;
    if (found <= most)
        return found;
    const QString number = QString::number(most);
    const auto answer = m_app.Shell.MessageBox(
        u"検索結果が"_s + number + u"件を超えました ("_s + QString::number(found) + u"件)\r\n全件表示しますか？\r\n"_s +
            u"(いいえを選択すると最初の"_s + number + u"件のみ表示します。)"_s,
        mdlVersion::ProductName(), Desktop::Icon::Question, Desktop::Buttons::YesNo, Desktop::Answer::No);
    return answer == Desktop::Answer::Yes ? found : most;
}

void CListLoader::TellProgress(int Done, int Of) const
{
    if (Of <= ProgressStep || (Done % ProgressStep != 0 && Done != Of))
        return;
    m_host.Progress(Done, Of);
    if (WorkWatch* watch = m_bbs.Watch(); watch && !watch->WorkGoesOn())
        throw jetsql::MakeError(OperationCancelled);
}

CMessageItem CListLoader::MakeItem(CMessage Msg) const
{
    CMessageItem item;
    item.Message = std::move(Msg);
    if (item.Message.Mark != 0)
        item.ForeColor = m_marks.ForeColor(item.Message.Mark).value_or(CMessageItem::NormalColor);
    return item;
}

std::vector<CMessageItem> CListLoader::ReadMessages(int Count)
{
    const CWatchedWork watched(m_bbs.Watch(), Work::Query);
    std::vector<CMessageItem> items;
    items.reserve(static_cast<std::size_t>(Count));
    for (int row = 0; row < Count; ++row) {
        std::optional<CMessage> message = m_bbs.Messages(row);
        if (!message)
            break;
        items.push_back(MakeItem(*std::move(message)));
        TellProgress(row + 1, Count);
    }
    return items;
}

std::vector<CMessageItem> CListLoader::ReadQuietly(const QString& Sql)
{
    try {
        const auto letGo = qScopeGuard([this] { m_bbs.CloseLogMessages(); });
        if (!GivesRows(m_bbs.ExecSQL(Sql)) || m_bbs.SQLType() != 0)
            return {};
        return ReadMessages(m_bbs.Count());
    } catch (const dao::Error&) {
        return {};
    }
}

void CListLoader::ReadTable(Result& To)
{
    dao::Recordset* rows = m_bbs.Recordset();
    if (!rows)
        return;
    const int fields = rows->FieldCount();
    for (int field = 0; field < fields; ++field)
        To.Headers.append(rows->Field(field).Name);
    if (m_bbs.Count() > 0)
        ReadCells(To, fields, m_bbs.Count());
}

void CListLoader::ReadCells(Result& To, int Fields, int Count)
{
    const qint64 cells = qint64(Count) * Fields;
    if (cells > MaxCells) {
        jetsql::Error error = jetsql::MakeError(TooLarge);
        error.Description = u"結果が大きすぎて表示できません ("_s + QString::number(Count) +
                            u"件)。条件を加えて件数を減らしてください。"_s;
        throw error;
    }
    const CWatchedWork watched(m_bbs.Watch(), Work::Query);
    dao::Recordset& rows = *m_bbs.Recordset();
    To.Cells.reserve(static_cast<std::size_t>(cells));
    rows.MoveFirst();
    for (int row = 1; !rows.Eof(); rows.MoveNext(), ++row) {
        for (int field = 0; field < Fields; ++field)
            To.Cells.push_back(rows.Text(field));
        TellProgress(row, Count);
    }
}
