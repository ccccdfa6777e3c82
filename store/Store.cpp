// store/Store.cpp
// What happens to the message database at start-up.

#include "store/Store.h"

#include "app/CFile.h"
#include "platform/desktop/desktop.h"
#include "store/Convert.h"
#include "store/FileNames.h"
#include "store/FileVersion.h"
#include "store/Recovery.h"
#include "store/Schema.h"

#include <QFile>

namespace mdlStore
{

using namespace Qt::StringLiterals;
using dao::Database;

namespace
{

using DatabasePtr = std::unique_ptr<Database>;

/// Engine errors that opening answers in a way of its own.
constexpr int FileNotFound = 3024;
constexpr int UnrecognisedFormat = 3343;

void Tell(Application& App, const QString& Text, Desktop::Icon Icon)
{
    App.Shell.MessageBox(Text, App.AppTitle(), Icon);
}

/// Moves the file to the backup name unless something is there already.
void SetAside(const QString& FileName)
{
    CFile file(FileName);
    file.SetExt(u"bak"_s);
    if (file.Move())
        mdlFileNames::MoveLog(FileName, file.FullPath());
}

/// Builds a complete database under a passing name and closes it again; throws.
void BuildDatabase(const QString& FileName)
{
    const DatabasePtr db = Database::Create(FileName);
    dao::CTransaction transaction(*db);
    mdlSchema::CreateBBSTable(*db);
    mdlSchema::CreateMessageTable(*db);
    mdlSchema::CreateMarkTable(*db);
    mdlSchema::WriteVersionTable(*db, QString());
    transaction.Keep();
    db->LeaveLog();
    db->Close();
}

/// A new database, or the reason why there is none: without it the user would only see the program end.
DatabasePtr CreateOrTell(const QString& FileName, Application& App)
{
    if (DatabasePtr db = CreateNewDatabase(FileName))
        return db;
    if (mdlFileNames::Exists(FileName))
        Tell(
            App,
            u"ログのバックアップ("_s + mdlFileNames::WithoutFolder(mdlFileNames::BackupName(FileName)) +
                u")を作成できませんでした。\n同じ名前のファイルがあるときは、別の場所へ移してからもう一度起動してください。"_s,
            Desktop::Icon::Critical);
    else
        Tell(App, u"データベースファイルを作成できませんでした。\n"_s + FileName, Desktop::Icon::Critical);
    return nullptr;
}

/// A file that the user has, but cannot use as it is.
DatabasePtr AnswerTrouble(const dao::Error& Refusal, const QString& FileName, Application& App, const JobWindow& Jobs)
{
    Tell(App, Refusal.Description, Desktop::Icon::Critical);
    if (IsDamage(Refusal.Number) && OfferRecovery(FileName, App, Jobs))
        return OpenLogDatabase(FileName, App, Jobs);
    return nullptr;
}

DatabasePtr AnswerFailedOpen(const dao::Error& Refusal, const QString& FileName, Application& App,
                             const JobWindow& Jobs)
{
    if (Refusal.Number == FileNotFound) {
        Tell(App, u"データベースファイルが存在しません。\n新しく作成します。"_s, Desktop::Icon::Information);
        return CreateOrTell(FileName, App);
    }
    if (Refusal.Number == UnrecognisedFormat) {
        const QString backup = mdlFileNames::WithoutFolder(mdlFileNames::BackupName(FileName));
        Tell(App,
             FileName + u"をデータベースファイルとして認識できませんでした。\nログのバックアップ("_s + backup +
                 u")を作成し、新しいデータベースファイルを作成します。"_s,
             Desktop::Icon::Information);
        SetAside(FileName);
        return CreateOrTell(FileName, App);
    }
    return AnswerTrouble(Refusal, FileName, App, Jobs);
}

DatabasePtr CheckVersion(DatabasePtr Db, Application& App, const JobWindow& Jobs)
{
    QString version = mdlFileVersion::Unknown();
    try {
        version = mdlFileVersion::Read(*Db, QString());
    } catch (const dao::Error& error) {
        if (mdlFileVersion::IsFileTrouble(error.Number)) {
            const QString name = Db->Name();
            Db.reset();
            return AnswerTrouble(error, name, App, Jobs);
        }
    }
    if (version < mdlSchema::FileVersion())
        return ConvertLogDatabase(std::move(Db), version, App, Jobs);
    if (version == mdlSchema::FileVersion()) {
        if (!Db->IsReadOnly())
            mdlFileNames::RemoveLeftovers(Db->Name());
        return Db;
    }
    Tell(App, u"データベースファイルが新しすぎます。"_s, Desktop::Icon::Information);
    Db->Close();
    return nullptr;
}

} // namespace

DatabasePtr CreateNewDatabase(const QString& FileName)
{
    // A log without its file goes by a name that no database will ever have.
    if (mdlFileNames::Exists(FileName) || !mdlFileNames::MoveLog(FileName, FileName + u".lost"_s))
        return nullptr;
    const QString passingName = mdlFileNames::PassingName(FileName);
    if (passingName.isEmpty())
        return nullptr;
    try {
        BuildDatabase(passingName);
        if (QFile::rename(passingName, FileName))
            return Database::Open(FileName);
    } catch (const dao::Error&) {
        // The caller only has to know that there is none.
    }
    mdlFileNames::Remove(passingName);
    return nullptr;
}

DatabasePtr OpenLogDatabase(const QString& FileName, Application& App, const JobWindow& Jobs)
{
    DatabasePtr db;
    try {
        db = Database::Open(FileName);
    } catch (const dao::Error& refusal) {
        return AnswerFailedOpen(refusal, FileName, App, Jobs);
    }
    return CheckVersion(std::move(db), App, Jobs);
}

QString GetTableVersion(Database& Db, const QString& Table) { return mdlFileVersion::ReadOrUnknown(Db, Table); }

} // namespace mdlStore
