// sqlshell/Commands.cpp
// What the commands of the shell do.

#include "sqlshell/CShell.h"
#include "sqlshell/CTableOutput.h"
#include "sqlshell/Schema.h"

#include "platform/text/Fold.h"

#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace sqlshell
{

struct CShell::CCommand
{
    enum class Takes { Nothing, MayName, Name };

    QString Name;
    Takes What;
    void (*Run)(CShell&, const QString&);
    QString Help; ///< two parts with a tab between them
};

const std::vector<CShell::CCommand>& CShell::Commands()
{
    using Takes = CCommand::Takes;
    static const std::vector<CCommand> commands = {
        {u".tables"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Tables(); },
         u".tables            テーブルの名前"_s},
        {u".schema"_s, Takes::MayName, [](CShell& s, const QString& name) { s.Schema(name); },
         u".schema [名前]     テーブルを作る文、保存したクエリなら SQL 文"_s},
        {u".queries"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Queries(); },
         u".queries           保存したクエリの名前、種類、SQL 文"_s},
        {u".save"_s, Takes::Name, [](CShell& s, const QString& rest) { s.Save(rest); },
         u".save 名前 SQL 文  クエリを保存 (SQL 文を省くと、次の文を保存)"_s},
        {u".delete"_s, Takes::Name, [](CShell& s, const QString& name) { s.Delete(name); },
         u".delete 名前       保存したクエリを削除"_s},
        {u".begin"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Begin(); },
         u".begin             トランザクションを開始"_s},
        {u".commit"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Commit(); },
         u".commit            .begin からの変更を確定"_s},
        {u".rollback"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Rollback(); },
         u".rollback          .begin からの変更を取り消し"_s},
        {u".help"_s, Takes::Nothing, [](CShell& s, const QString&) { s.Help(); }, u".help              この一覧"_s},
        {u".quit"_s, Takes::Nothing, [](CShell& s, const QString&) { s.m_isQuitting = true; },
         u".quit              終了"_s},
    };
    return commands;
}

namespace
{

/// A refusal of the shell itself, not of the engine; 3001 is its number for a wrong argument.
dao::Error WrongCommand(const QString& Sentence) { return {3001, Sentence, u"tavora-sql"_s}; }

/// Takes the name at the beginning of Text away: one word, or anything in brackets or quotes.
QString TakeName(QString& Text)
{
    static const QString marks = u"['\""_s;
    static const QString ends = u"]'\""_s;
    const qsizetype mark = Text.isEmpty() ? -1 : marks.indexOf(Text.front());
    qsizetype end = 0;
    if (mark >= 0)
        end = Text.indexOf(ends[mark], 1);
    else
        while (end < Text.size() && !Text[end].isSpace())
            ++end;
    if (end < 0)
        throw jetsql::MakeError(3126, {Text});
    const QString name = mark >= 0 ? Text.mid(1, end - 1) : Text.left(end);
    Text = Text.mid(mark >= 0 ? end + 1 : end).trimmed();
    return name;
}

QString WholeName(QString Text)
{
    const QString name = TakeName(Text);
    if (name.isEmpty() || !Text.isEmpty())
        throw jetsql::MakeError(3125, {name + Text});
    return name;
}

} // namespace

void CShell::RunCommand(const CPiece& Piece)
{
    QString rest = QString::fromUtf8(Piece.Text).trimmed();
    while (rest.endsWith(u';'))
        rest = rest.chopped(1).trimmed();
    m_commandSize = int(rest.size());
    const QString word = TakeName(rest).toLower();
    for (const CCommand& command : Commands()) {
        if (command.Name != word)
            continue;
        if (command.What == CCommand::Takes::Nothing ? !rest.isEmpty()
                                                     : command.What == CCommand::Takes::Name && rest.isEmpty())
            throw WrongCommand(u"%1 の使い方が違います。.help で一覧を表示します。"_s.arg(word));
        return command.Run(*this, rest);
    }
    throw WrongCommand(u"%1 というコマンドはありません。.help で一覧を表示します。"_s.arg(word));
}

// --type-only promises that nothing changes.
void CShell::RequireChanging() const
{
    if (m_options.TypeOnly)
        throw WrongCommand(u"--type-only では使えません。"_s);
}

void CShell::Tables()
{
    CListing listing{u"tables"_s, {}, {}, {}};
    for (const dao::TableDef& table : Database().TableDefs()) {
        if (table.Attributes != 0)
            continue;
        listing.Rows.push_back({table.Name});
        listing.Json.append(table.Name);
    }
    m_output.List(listing);
}

void CShell::Schema(const QString& Name)
{
    const QString wanted = Name.isEmpty() ? QString() : WholeName(Name);
    if (const auto query = wanted.isEmpty() ? nullptr : Database().FindQueryDef(wanted))
        return m_output.Text(query->Sql() + u";\n"_s, u"sql"_s, query->Sql());
    QString sql;
    QString keys;
    QJsonArray json;
    for (const dao::TableDef& table : Database().TableDefs()) {
        const bool isWanted = wanted.isEmpty() ? table.Attributes == 0 : text::EqualText(table.Name, wanted);
        if (!isWanted)
            continue;
        sql += mdlSchema::Sql(table);
        keys += mdlSchema::ForeignKeys(table);
        json.append(mdlSchema::Json(table));
    }
    if (!wanted.isEmpty() && json.isEmpty())
        throw jetsql::MakeError(3078, {wanted});
    m_output.Text(sql + keys, u"schema"_s, json);
}

void CShell::Queries()
{
    CListing listing{u"queries"_s, {u"名前"_s, u"種類"_s, u"SQL"_s}, {}, {}};
    for (const QString& name : Database().QueryDefs()) {
        const auto query = Database().FindQueryDef(name);
        const dao::QueryType type = jetsql::TypeOf(query->Sql());
        listing.Rows.push_back({name, TypeName(type), query->Sql()});
        listing.Json.append(QJsonObject{{u"name"_s, name}, {u"type"_s, int(type)}, {u"sql"_s, query->Sql()}});
    }
    m_output.List(listing);
}

void CShell::Save(const QString& NameAndSql)
{
    QString sql = NameAndSql;
    const QString name = TakeName(sql);
    RequireChanging();
    if (sql.isEmpty()) {
        m_saveAs = name;
        return;
    }
    try {
        SaveQuery(name, sql);
    } catch (dao::Error& error) {
        if (error.Offset >= 0)
            error.Offset += m_commandSize - int(sql.size()); // the statement ends the command
        throw;
    }
}

void CShell::SaveQuery(const QString& Name, const QString& Sql)
{
    Database().CreateQueryDef(Name, Sql);
    m_output.Done(u"saved"_s, Name, u"クエリ '%1' を保存しました。"_s.arg(Name));
}

void CShell::Delete(const QString& Name)
{
    RequireChanging();
    const QString name = WholeName(Name);
    Database().DeleteQueryDef(name);
    m_output.Done(u"deleted"_s, name, u"クエリ '%1' を削除しました。"_s.arg(name));
}

void CShell::Help()
{
    QString help;
    for (const CCommand& command : Commands())
        help += command.Help + u'\n';
    m_output.Text(help, u"help"_s, help);
}

void CShell::Begin()
{
    RequireChanging();
    Database().BeginTrans();
    m_output.Done(u"transaction"_s, u"begin"_s, u"トランザクションを開始しました。"_s);
}

void CShell::Commit()
{
    Database().CommitTrans();
    m_output.Done(u"transaction"_s, u"commit"_s, u"確定しました。"_s);
}

void CShell::Rollback()
{
    Database().Rollback();
    m_output.Done(u"transaction"_s, u"rollback"_s, u"取り消しました。"_s);
}

} // namespace sqlshell
