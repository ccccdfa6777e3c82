// store/FileVersion.cpp
// Asking table Version.

#include "store/FileVersion.h"

#include "platform/text/Like.h"

#include <algorithm>
#include <iterator>

namespace mdlFileVersion
{

using namespace Qt::StringLiterals;

QString Unknown() { return u"Ver.0.00"_s; }

QString Read(dao::Database& Db, const QString& Table)
{
    const QString sql = Table.isEmpty() ? u"SELECT Max(Version) AS VER FROM Version"_s
                                        : u"SELECT Version AS VER FROM Version WHERE Table = '"_s + Table + u"'"_s;
    const auto versions = Db.OpenRecordset(sql, dao::RecordsetType::Snapshot);
    const QString version = versions->Eof() ? QString() : versions->Get(u"VER").ToText();
    versions->Close();
    return text::Like(version, u"Ver.[0-9].[0-9][0-9]") ? version : Unknown();
}

QString ReadOrUnknown(dao::Database& Db, const QString& Table)
{
    try {
        return Read(Db, Table);
    } catch (const dao::Error&) {
        return Unknown();
    }
}

bool IsFileTrouble(int Number)
{
    constexpr int Troubles[] = {3026, 3027, 3040, 3043, 3049, 3051, 3059, 3260, 3343};
    return std::find(std::begin(Troubles), std::end(Troubles), Number) != std::end(Troubles);
}

} // namespace mdlFileVersion
