// platform/dao/Recover.cpp
// The two files of a recovery.

#include "platform/dao/Recover.h"

#include "platform/dao/CRecovery.h"
#include "platform/dao/FileSync.h"
#include "platform/dao/OpenFile.h"

#include <QFile>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

/// The new file is worth nothing until it is complete, so it needs no journal.
constexpr const char* Settings = "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF";

} // namespace

Recovered::Table Recovered::Find(QStringView Name) const
{
    const auto found = std::find_if(Tables.begin(), Tables.end(), [&](const Table& Entry) {
        return QStringView(Entry.Name).compare(Name, Qt::CaseInsensitive) == 0;
    });
    return found == Tables.end() ? Table() : *found;
}

bool Recovered::IsComplete() const
{
    return LostObjects.isEmpty() && StrayPages == 0 &&
           std::all_of(Tables.begin(), Tables.end(), [](const Table& Entry) {
               return Entry.CutRows == 0 && Entry.LostRows == 0 && Entry.UnreadablePages == 0;
           });
}

Recovered RecoverDatabase(const QString& Source, const QString& Destination, const std::vector<TableDef>& Known,
                          const Progress& Report)
{
    CPageFile file(Source);
    std::unique_ptr<CConnection> target = mdlOpenFile::Create(Destination);
    try {
        target->LeaveLog();
        target->Run(Settings);
        Recovered result = CRecovery(file, *target, Report).Run(Known);
        target.reset();
        QFile::setPermissions(Destination, QFile::permissions(Source) | QFile::ReadOwner | QFile::WriteOwner);
        mdlFileSync::SyncFile(Destination);
        return result;
    } catch (const Error&) {
        target.reset();
        QFile::remove(Destination);
        throw;
    }
}

} // namespace dao
