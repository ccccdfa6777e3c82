// store/Store.cpp
// What happens to the message database at start-up.

#include "store/Store.h"

#include "app/CFile.h"
#include "app/Shell.h"
#include "platform/desktop/desktop.h"
#include "platform/text/Like.h"
#include "store/Schema.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

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

QString UnknownVersion() { return u"Ver.0.00"_s; }

void Tell(Application& App, const QString& Text, Desktop::Icon Icon)
{
    App.Shell.MessageBox(Text, App.AppTitle(), Icon);
}

bool Exists(const QString& FileName)
{
    const QFileInfo info(FileName);
    return info.exists() || info.isSymLink();
}

/// A name that nothing has, made of Wanted and, where that is taken, a number.
QString FreeName(const QString& Wanted)
{
    QString name = Wanted;
    for (int number = 2; Exists(name); ++number)
        name = Wanted + u'.' + QString::number(number);
    return name;
}

/// What a database file has beside it belongs to that file only: left behind, it would be read into the next file of
/// the same name and spoil it. Moves all of it along with From; false when something cannot be moved.
bool MoveLog(const QString& From, const QString& To)
{
    bool isDone = QFile::remove(From + u"-shm"_s) || !Exists(From + u"-shm"_s);
    for (const QString& suffix : {u"-wal"_s, u"-journal"_s}) {
        if (Exists(From + suffix))
            isDone = QFile::rename(From + suffix, FreeName(To + suffix)) && isDone;
    }
    return isDone;
}

QString BackupName(const QString& FileName)
{
    CFile backup(FileName);
    backup.SetExt(u"bak"_s);
    return backup.FullPath();
}

/// Moves the file to the backup name unless something is there already.
void SetAside(const QString& FileName)
{
    CFile file(FileName);
    file.SetExt(u"bak"_s);
    if (file.Move())
        MoveLog(FileName, file.FullPath());
}

void Remove(const QString& FileName)
{
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
        QFile::remove(FileName + suffix);
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
    if (Exists(FileName))
        Tell(App,
             u"ログのバックアップ("_s + CFile(BackupName(FileName)).Name() +
                 u")を作成できませんでした。\n同じ名前のファイルがあるときは、別の場所へ移してからもう一度起動してください。"_s,
             Desktop::Icon::Critical);
    else
        Tell(App, u"データベースファイルを作成できませんでした。\n"_s + FileName, Desktop::Icon::Critical);
    return nullptr;
}

DatabasePtr AnswerFailedOpen(const dao::Error& Refusal, const QString& FileName, Application& App)
{
    if (Refusal.Number == FileNotFound) {
        Tell(App, u"データベースファイルが存在しません。\n新しく作成します。"_s, Desktop::Icon::Information);
        return CreateOrTell(FileName, App);
    }
    if (Refusal.Number == UnrecognisedFormat) {
        const QString backup = CFile(BackupName(FileName)).Name();
        Tell(App,
             FileName + u"をデータベースファイルとして認識できませんでした。\nログのバックアップ("_s + backup +
                 u")を作成し、新しいデータベースファイルを作成します。"_s,
             Desktop::Icon::Information);
        SetAside(FileName);
        return CreateOrTell(FileName, App);
    }
    Tell(App, Refusal.Description, Desktop::Icon::Critical);
    return nullptr;
}

/// Throws where the version cannot be read.
QString ReadVersion(Database& Db, const QString& Table)
{
    const QString sql = Table.isEmpty() ? u"SELECT Max(Version) AS VER FROM Version"_s
                                        : u"SELECT Version AS VER FROM Version WHERE Table = '"_s + Table + u"'"_s;
    const auto versions = Db.OpenRecordset(sql, dao::RecordsetType::Snapshot);
    const QString version = versions->Eof() ? QString() : versions->Get(u"VER").ToText();
    versions->Close();
    return text::Like(version, u"Ver.[0-9].[0-9][0-9]") ? version : UnknownVersion();
}

/// Damage, a lock or a failing disk are no sign of an old file and must not be taken for one.
bool IsFileTrouble(int Number)
{
    constexpr int Troubles[] = {3040, 3043, 3049, 3051, 3260, UnrecognisedFormat};
    return std::find(std::begin(Troubles), std::end(Troubles), Number) != std::end(Troubles);
}

DatabasePtr CheckVersion(DatabasePtr Db, Application& App)
{
    QString version = UnknownVersion();
    try {
        version = ReadVersion(*Db, QString());
    } catch (const dao::Error& error) {
        if (IsFileTrouble(error.Number)) {
            Tell(App, error.Description, Desktop::Icon::Critical);
            return nullptr;
        }
    }
    if (version == mdlSchema::FileVersion())
        return Db;
    Tell(App,
         version > mdlSchema::FileVersion() ? u"データベースファイルが新しすぎます。"_s
                                            : u"データベースファイルが古くなっています。"_s,
         Desktop::Icon::Information);
    Db->Close();
    return nullptr;
}

} // namespace

DatabasePtr CreateNewDatabase(const QString& FileName)
{
    // A log without its file goes by a name that no database will ever have.
    if (Exists(FileName) || !MoveLog(FileName, FileName + u".lost"_s))
        return nullptr;
    const QString folder = QFileInfo(FileName).absolutePath();
    const QString passingName = mdlShellServices::TempFileName(folder, u"TVR"_s);
    if (passingName.isEmpty() || QFileInfo(passingName).absolutePath() != folder)
        return nullptr;
    try {
        BuildDatabase(passingName);
        if (QFile::rename(passingName, FileName))
            return Database::Open(FileName);
    } catch (const dao::Error&) {
        // The caller only has to know that there is none.
    }
    Remove(passingName);
    return nullptr;
}

DatabasePtr OpenLogDatabase(const QString& FileName, Application& App)
{
    DatabasePtr db;
    try {
        db = Database::Open(FileName);
    } catch (const dao::Error& refusal) {
        return AnswerFailedOpen(refusal, FileName, App);
    }
    return CheckVersion(std::move(db), App);
}

QString GetTableVersion(Database& Db, const QString& Table)
{
    try {
        return ReadVersion(Db, Table);
    } catch (const dao::Error&) {
        return UnknownVersion();
    }
}

} // namespace mdlStore
