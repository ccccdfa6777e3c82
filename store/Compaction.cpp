// store/Compaction.cpp
// Closing, replacing, opening.

#include "store/Compaction.h"

#include "platform/dao/CReplacement.h"
#include "store/FileNames.h"

namespace mdlStore
{

namespace
{

std::optional<dao::Error> Replace(const QString& FileName, const dao::Progress& Report)
{
    try {
        const QString passingName = mdlFileNames::PassingName(FileName);
        if (passingName.isEmpty())
            throw jetsql::MakeError(3027);
        dao::CReplacement replacement(FileName, passingName);
        replacement.Compact(Report);
        replacement.PutInPlace();
        return std::nullopt;
    } catch (const dao::Error& error) {
        return error;
    }
}

} // namespace

std::optional<dao::Error> CompactLogDatabase(std::unique_ptr<dao::Database>& Db, const dao::Progress& Report)
{
    const QString name = Db->Name();
    Db.reset();
    std::optional<dao::Error> reason = Replace(mdlFileNames::RealName(name), Report);
    try {
        Db = dao::Database::Open(name);
    } catch (const dao::Error& error) {
        reason = reason.value_or(error);
    }
    return reason;
}

} // namespace mdlStore
