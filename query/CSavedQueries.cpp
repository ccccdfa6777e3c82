// query/CSavedQueries.cpp
// The saved queries of the database: what can be chosen, and the questions before one is replaced or deleted.

#include "query/CSavedQueries.h"

#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/desktop.h"

using namespace Qt::StringLiterals;

CSavedQueries::CSavedQueries(Application& App)
    : m_app(App)
{}

QStringList CSavedQueries::Names() const
{
    try {
        return m_app.LogDB() ? m_app.LogDB()->QueryDefs() : QStringList();
    } catch (const dao::Error&) {
        return {}; // a damaged or locked file: the statement can be written and run all the same
    }
}

std::optional<QString> CSavedQueries::Statement(const QString& Name) const
{
    try {
        const auto query = m_app.LogDB() ? m_app.LogDB()->FindQueryDef(Name) : nullptr;
        return query ? std::optional(query->Sql()) : std::nullopt;
    } catch (const dao::Error&) {
        return std::nullopt;
    }
}

QString CSavedQueries::AskName() const
{
    return m_app.Shell.InputBox(u"クエリー名を入力してください。"_s, m_app.AppTitle()).value_or(QString()).trimmed();
}

bool CSavedQueries::Save(const QString& Name, const QString& Sql)
{
    m_errorOffset = -1;
    if (Name.isEmpty() || !m_app.LogDB())
        return false;
    if (Name.startsWith(u'_')) { // such names are the program's own
        Tell(u"\"_\"で始まるクエリー名は登録できません。"_s);
        return false;
    }
    if (Statement(Name) && !AskReplace(Name))
        return false;
    try {
        Store(Name, Sql);
        return true;
    } catch (const dao::Error& error) {
        m_errorOffset = error.Offset;
        Tell(u"実行時エラー '"_s + QString::number(error.Number) + u"':\r\n\r\n"_s + error.Description +
             u"\r\n\r\nクエリーを保存できませんでした。"_s);
        return false;
    }
}

/// Made anew instead of changed, so that it also takes the new spelling of its name; in a transaction, so that the old
/// one is still there when the new one is refused.
void CSavedQueries::Store(const QString& Name, const QString& Sql) const
{
    dao::Database& database = *m_app.LogDB();
    dao::CTransaction transaction(database);
    if (database.FindQueryDef(Name))
        database.DeleteQueryDef(Name);
    database.CreateQueryDef(Name, Sql);
    transaction.Keep();
}

bool CSavedQueries::AskReplace(const QString& Name) const
{
    return m_app.Shell.MessageBox(u"既に"_s + Name + u"は存在します。\r\n上書きしてもよろしいですか？"_s,
                                  m_app.AppTitle(), Desktop::Icon::Information, Desktop::Buttons::OkCancel,
                                  Desktop::Answer::Cancel) == Desktop::Answer::Ok;
}

bool CSavedQueries::AskDelete(const QString& Name) const
{
    return m_app.Shell.MessageBox(Name + u"を削除してもよろしいですか？\r\n"_s, m_app.AppTitle(),
                                  Desktop::Icon::Information, Desktop::Buttons::OkCancel,
                                  Desktop::Answer::Cancel) == Desktop::Answer::Ok;
}

void CSavedQueries::Delete(const QString& Name)
{
    try {
        if (m_app.LogDB())
            m_app.LogDB()->DeleteQueryDef(Name);
    } catch (const dao::Error&) {
        // One that is gone already, or in a file that cannot be written, stays as it is.
    }
}

void CSavedQueries::Tell(const QString& Text) const
{
    m_app.Shell.MessageBox(Text, m_app.AppTitle(), Desktop::Icon::Information);
}
