// store/Recovery.cpp
// Two questions and the work between them.

#include "store/Recovery.h"

#include "platform/dao/CTransaction.h"
#include "platform/dao/Database.h"
#include "platform/dao/FileSync.h"
#include "platform/dao/Recover.h"
#include "platform/desktop/desktop.h"
#include "store/FileNames.h"
#include "store/Schema.h"
#include "store/SeedRows.h"

#include <QFileInfo>

namespace mdlStore
{

using namespace Qt::StringLiterals;

namespace
{

constexpr int Damaged = 3049;
constexpr int NotRecognised = 3343;
constexpr int BrokenOff = 3059;

void Tell(Application& App, const QString& Text, Desktop::Icon Icon)
{
    App.Shell.MessageBox(Text, App.AppTitle(), Icon);
}

bool Ask(Application& App, const QString& Text, Desktop::Icon Icon)
{
    return App.Shell.MessageBox(Text, App.AppTitle(), Icon, Desktop::Buttons::YesNo) == Desktop::Answer::Yes;
}

QString RecoveredName(const QString& FileName)
{
    const QFileInfo info(FileName);
    return mdlFileNames::FreeName(info.absolutePath() + u'/' + info.completeBaseName() + u"-recovered."_s +
                                  info.suffix());
}

bool HasLosses(const dao::Recovered::Table& Table)
{
    return Table.Rows == 0 || Table.LostRows > 0 || Table.UnreadablePages > 0;
}

/// Boards and marks that every database has, and the versions, so that the recovered file can be used.
void FillGaps(const QString& FileName, const dao::Recovered& Result)
{
    const auto db = dao::Database::Open(FileName);
    dao::CTransaction transaction(*db);
    QStringList statements;
    if (HasLosses(Result.Find(u"BBS")))
        statements += mdlSeedRows::BBSStatements();
    if (HasLosses(Result.Find(u"Mark")))
        statements += mdlSeedRows::MarkStatements();
    for (const QString& statement : statements)
        db->Execute(statement, dao::ExecuteOption::None);
    if (HasLosses(Result.Find(u"Version")))
        mdlSchema::WriteVersionTable(*db, {});
    transaction.Keep();
    db->LeaveLog();
}

QString Line(const QString& What, const dao::Recovered::Table& Table)
{
    QString line = u"  %1: %2件"_s.arg(What).arg(Table.Rows);
    if (Table.Expected > Table.Rows)
        line += u" (全%1件のうち)"_s.arg(Table.Expected);
    return line + u'\n';
}

/// The layer keeps things in tables of its own, whose names say nothing to the user.
QString Shown(const QString& Table)
{
    if (Table == u"~Queries"_s)
        return u"保存クエリ"_s;
    return Table.startsWith(u'~') ? u"テーブルの補助情報"_s : Table + u"テーブル"_s;
}

QString Losses(const dao::Recovered& Result)
{
    QStringList lines;
    for (const dao::Recovered::Table& table : Result.Tables) {
        if (table.CutRows > 0)
            lines.append(u"%1: %2件は途中までしかありません。"_s.arg(Shown(table.Name), QString::number(table.CutRows)));
        if (table.LostRows > 0)
            lines.append(u"%1: %2件を読み出せませんでした。"_s.arg(Shown(table.Name), QString::number(table.LostRows)));
        if (table.UnreadablePages > 0)
            lines.append(
                u"%1: 壊れたページが%2ページありました。"_s.arg(Shown(table.Name), QString::number(table.UnreadablePages)));
    }
    if (!Result.LostObjects.isEmpty())
        lines.append(u"作り直せなかったもの: %1"_s.arg(Result.LostObjects.join(u", "_s)));
    if (Result.StrayPages > 0)
        lines.append(u"どのテーブルのものか分からないページが%1ページありました。"_s.arg(Result.StrayPages));
    return lines.isEmpty() ? u"すべてのデータを取り出しました。\n"_s : u"  "_s + lines.join(u"\n  "_s) + u'\n';
}

QString Summary(const dao::Recovered& Result)
{
    return Line(u"メッセージ"_s, Result.Find(u"Message")) + Line(u"掲示板"_s, Result.Find(u"BBS")) +
           Line(u"マーク"_s, Result.Find(u"Mark")) + u'\n' + Losses(Result);
}

/// Writes the recovered file; throws. It appears under its name only when it is complete.
dao::Recovered Recover(const QString& FileName, const QString& NewName, const JobWindow& Jobs)
{
    const QString passingName = mdlFileNames::PassingName(FileName);
    if (passingName.isEmpty())
        throw jetsql::MakeError(3051, {NewName});
    const dao::Progress report = Jobs ? Jobs(u"データを取り出しています..."_s) : dao::Progress();
    const dao::Recovered result = dao::RecoverDatabase(FileName, passingName, mdlSchema::Tables(), report);
    try {
        FillGaps(passingName, result);
        dao::mdlFileSync::SyncFile(passingName);
        dao::mdlFileSync::Rename(passingName, NewName);
    } catch (const dao::Error&) {
        mdlFileNames::Remove(passingName);
        throw;
    }
    dao::mdlFileSync::SyncFolderOf(NewName);
    return result;
}

/// The damaged file gets a second name before the recovered one takes its first; without such a thing it is renamed.
void Exchange(const QString& FileName, const QString& NewName, const QString& BackupName)
{
    if (!dao::mdlFileSync::AddName(FileName, BackupName))
        dao::mdlFileSync::Rename(FileName, BackupName);
    if (!mdlFileNames::MoveLog(FileName, BackupName))
        throw jetsql::MakeError(3051, {FileName});
    dao::mdlFileSync::Rename(NewName, FileName);
    dao::mdlFileSync::SyncFolderOf(FileName);
}

bool IsWanted(const QString& FileName, const QString& NewName, Application& App)
{
    return Ask(App,
               u"データベースファイル "_s + mdlFileNames::WithoutFolder(FileName) +
                   u" が壊れています。\n読み出せるデータを新しいファイル "_s + mdlFileNames::WithoutFolder(NewName) +
                   u" に取り出しますか？\n\n元のファイルは変更しません。"_s,
               Desktop::Icon::Exclamation);
}

bool IsToBeUsed(const QString& FileName, const QString& NewName, const QString& BackupName,
                const dao::Recovered& Result, Application& App)
{
    const QString name = mdlFileNames::WithoutFolder(FileName);
    return Ask(App,
               mdlFileNames::WithoutFolder(NewName) + u" に取り出しました。\n\n"_s + Summary(Result) +
                   u"\n取り出したファイルを使いますか？\n「はい」を選ぶと、壊れたファイルを "_s +
                   mdlFileNames::WithoutFolder(BackupName) + u" という名前で残し、取り出したファイルを "_s + name +
                   u" にします。\n「いいえ」を選ぶと、どちらのファイルもそのまま残します。"_s,
               Desktop::Icon::Question);
}

} // namespace

bool IsDamage(int ErrorNumber) { return ErrorNumber == Damaged || ErrorNumber == NotRecognised; }

QString RefusalText(const dao::Error& Refusal)
{
    const QString text = u"実行時エラー '"_s + QString::number(Refusal.Number) + u"':\r\n\r\n"_s + Refusal.Description +
                         u"\r\n\r\n処理が実行できませんでした。"_s;
    if (!IsDamage(Refusal.Number))
        return text;
    return text + u"\r\n「ツール」メニューの「最適化」で、読み出せるデータを別のファイルに取り出せます。"_s;
}

bool OfferRecovery(const QString& FileName, Application& App, const JobWindow& Jobs)
{
    const QString file = mdlFileNames::RealName(FileName);
    const QString newName = RecoveredName(file);
    if (!IsWanted(file, newName, App))
        return false;
    try {
        const dao::Recovered result = Recover(file, newName, Jobs);
        const QString backup = mdlFileNames::FreeName(mdlFileNames::BackupName(file));
        if (!IsToBeUsed(file, newName, backup, result, App))
            return false;
        Exchange(file, newName, backup);
        return true;
    } catch (const dao::Error& error) {
        if (error.Number == BrokenOff)
            Tell(App, u"取り出しを中止しました。\n元のファイルはそのままです。"_s, Desktop::Icon::Information);
        else
            Tell(App, u"データを取り出せませんでした。\n元のファイルはそのままです。\n\n"_s + error.Description,
                 Desktop::Icon::Critical);
        return false;
    }
}

} // namespace mdlStore
