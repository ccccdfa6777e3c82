// store/Convert.cpp
// The question, the copy, the steps on the copy, and what the user is told.

#include "store/Convert.h"

#include "platform/dao/CReplacement.h"
#include "platform/desktop/desktop.h"
#include "store/CConversion.h"
#include "store/Compaction.h"
#include "store/FileNames.h"
#include "store/Recovery.h"
#include "store/Store.h"

#include <QFileInfo>

namespace mdlStore
{

using namespace Qt::StringLiterals;
using DatabasePtr = std::unique_ptr<dao::Database>;

namespace
{

constexpr int BrokenOff = 3059;

/// What a conversion came to; Reason is empty when it is done.
struct Outcome
{
    QString FailedStep;
    std::optional<dao::Error> Reason;
    std::map<QString, int> LeftOut;
    QString Backup;
};

bool IsWanted(Application& App)
{
    const QString text = u"データベースファイルが古くなっています。\n"
                         "新しいデータベースファイルにコンバートします。\n\n"
                         "注意！:\n"
                         "  完全にコンバートできるとは限りません。\n"
                         "  必ずデータベースファイルのバックアップをとってください。"_s;
    return App.Shell.MessageBox(text, App.AppTitle(), Desktop::Icon::Information, Desktop::Buttons::OkCancel) ==
           Desktop::Answer::Ok;
}

/// A part of a job: its 0 to 100 percent are From to To of the whole.
dao::Progress Part(const dao::Progress& Whole, int From, int To)
{
    return [&Whole, From, To](int Percent) { return !Whole || Whole(From + (To - From) * Percent / 100); };
}

bool RunSteps(CConversion& Conversion, Outcome& Result)
{
    struct Step
    {
        bool (CConversion::*Do)();
        QStringView Failure;
    };
    constexpr Step Steps[] = {
        {&CConversion::UpgradeVersionTable, u"Versionテーブルのコンバートに失敗しました。"},
        {&CConversion::ConvertBBSTable, u"BBSテーブルのコンバートに失敗しました。"},
        {&CConversion::ConvertMessageTable, u"Messageテーブルのコンバートに失敗しました。"},
        {&CConversion::ConvertMarkTable, u"Markテーブルの更新に失敗しました。"},
        {&CConversion::WriteVersions, u"Versionテーブルの更新に失敗しました。"},
    };
    for (const Step& step : Steps) {
        if (!(Conversion.*step.Do)()) {
            Result.FailedStep = step.Failure.toString();
            Result.Reason = Conversion.Reason();
            return false;
        }
    }
    Result.LeftOut = Conversion.LeftOut();
    return true;
}

/// Converts the copy and leaves it closed and complete by itself.
void ConvertCopy(const QString& FileName, const dao::Progress& Report, Outcome& Result)
{
    DatabasePtr db = dao::Database::Open(FileName);
    CConversion conversion(*db, Part(Report, 10, 60));
    if (!RunSteps(conversion, Result))
        return;
    db->LeaveLog();
    if (!conversion.HasMovedRows())
        return;
    Result.Reason = CompactLogDatabase(db, Part(Report, 60, 100));
    if (Result.Reason)
        Result.FailedStep = u"データベースファイルの最適化に失敗しました。"_s;
}

/// The old file's name as a backup: "log-Ver.0.12.bak".
QString OldName(const QString& FileName, const QString& Version)
{
    const QFileInfo info(FileName);
    return mdlFileNames::FreeName(info.absolutePath() + u'/' + info.completeBaseName() + u'-' + Version + u".bak"_s);
}

void ConvertFile(const QString& FileName, const QString& Version, const dao::Progress& Report, Outcome& Result)
{
    const QString passingName = mdlFileNames::PassingName(FileName);
    if (passingName.isEmpty())
        throw jetsql::MakeError(3027);
    dao::CReplacement replacement(FileName, passingName);
    replacement.Copy(Part(Report, 0, 10));
    ConvertCopy(passingName, Report, Result);
    if (Result.Reason)
        return;
    Result.Backup = OldName(FileName, Version);
    replacement.KeepAs(Result.Backup);
    replacement.PutInPlace();
}

Outcome Convert(const QString& FileName, const QString& Version, const JobWindow& Jobs)
{
    Outcome result;
    const dao::Progress report = Jobs ? Jobs(u"データベースをコンバートしています..."_s) : dao::Progress();
    try {
        ConvertFile(FileName, Version, report, result);
    } catch (const dao::Error& error) {
        result.Reason = error;
    }
    // Damage shows in the copy, but it is the user's file that has it.
    if (result.Reason && IsDamage(result.Reason->Number))
        result.Reason = jetsql::MakeError(result.Reason->Number, {FileName});
    return result;
}

void Tell(Application& App, const QString& Text, Desktop::Icon Icon)
{
    App.Shell.MessageBox(Text, App.AppTitle(), Icon);
}

void TellFailure(const Outcome& Result, Application& App)
{
    if (Result.Reason->Number == BrokenOff) {
        Tell(App, u"コンバートを中止しました。\nデータベースファイルは元のままです。"_s, Desktop::Icon::Information);
        return;
    }
    Tell(App, u"データベースファイルをコンバートできません。元のまま残します。\n\n"_s + Result.Reason->Description,
         Desktop::Icon::Critical);
    if (!Result.FailedStep.isEmpty())
        Tell(App, Result.FailedStep, Desktop::Icon::Critical);
}

/// Nothing goes without a word: what could not be taken over is in the old file still.
void TellLeftOut(const Outcome& Result, Application& App)
{
    if (Result.LeftOut.empty())
        return;
    QString text = u"新しいデータベースファイルに移せなかった、または初期値に戻ったデータがあります。\n\n"_s;
    for (const auto& [table, count] : Result.LeftOut)
        text += u"  %1テーブル: %2件\n"_s.arg(table).arg(count);
    text += u"\n元のデータベースファイルは "_s + mdlFileNames::WithoutFolder(Result.Backup) + u" に残してあります。"_s;
    Tell(App, text, Desktop::Icon::Exclamation);
}

} // namespace

DatabasePtr ConvertLogDatabase(DatabasePtr Old, const QString& Version, Application& App, const JobWindow& Jobs)
{
    const QString name = Old->Name();
    const bool isWanted = IsWanted(App);
    Old.reset();
    if (!isWanted)
        return nullptr;
    const Outcome result = Convert(mdlFileNames::RealName(name), Version, Jobs);
    if (result.Reason) {
        TellFailure(result, App);
        const bool isRecovered = IsDamage(result.Reason->Number) && OfferRecovery(name, App, Jobs);
        return isRecovered ? OpenLogDatabase(name, App, Jobs) : nullptr;
    }
    try {
        DatabasePtr db = dao::Database::Open(name);
        TellLeftOut(result, App);
        Tell(App, u"データベースのコンバートが完了しました。"_s, Desktop::Icon::Information);
        return db;
    } catch (const dao::Error& error) {
        Tell(App, error.Description, Desktop::Icon::Critical);
        return nullptr;
    }
}

} // namespace mdlStore
