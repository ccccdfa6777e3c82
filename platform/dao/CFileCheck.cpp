// platform/dao/CFileCheck.cpp
// SQLite's own check, and a count of rows.

#include "platform/dao/CFileCheck.h"

#include "platform/dao/CRun.h"
#include "platform/dao/SchemaText.h"

#include <sqlite3.h>

#include <algorithm>

namespace dao
{

using namespace Qt::StringLiterals;

namespace
{

/// What the check takes for a row of a table of ours with its indexes, roughly; only the progress depends on it.
constexpr qint64 StepsPerRow = 60;

bool IsDamage(const QString& Finding)
{
    return Finding != u"ok" && !Finding.startsWith(u"CHECK constraint failed") && !Finding.startsWith(u"NULL value in");
}

} // namespace

std::vector<QByteArray> CFileCheck::Tables(CConnection& Connection)
{
    std::vector<QByteArray> names;
    CRun run(Connection, "SELECT name FROM sqlite_master WHERE type = 'table' AND rootpage > 0 ORDER BY name");
    while (run.Step())
        names.push_back(mdlSchemaText::Quoted(run.Text(0)));
    return names;
}

qint64 CFileCheck::RowTotal()
{
    qint64 total = 0;
    for (const QByteArray& table : Tables(m_connection))
        total += m_connection.RunForNumber("SELECT count(*) FROM " + table);
    return total;
}

bool CFileCheck::IsSound(const Progress& Report)
{
    const qint64 steps = std::max<qint64>(1, RowTotal() * StepsPerRow);
    CRun run(m_connection, "PRAGMA integrity_check(1000000)");
    m_connection.SetProgress([&] {
        const qint64 done = sqlite3_stmt_status(run.Handle(), SQLITE_STMTSTATUS_VM_STEP, 0);
        return !Report || Report(int(std::clamp<qint64>(100 * done / steps, 0, 99)));
    });
    bool isSound = true;
    while (run.Step())
        isSound = isSound && !IsDamage(run.Text(0));
    m_connection.SetProgress({});
    return isSound;
}

bool CFileCheck::HasRowsOf(CConnection& Other)
{
    const std::vector<QByteArray> tables = Tables(m_connection);
    if (tables != Tables(Other))
        return false;
    return std::all_of(tables.begin(), tables.end(), [&](const QByteArray& Table) {
        const QByteArray sql = "SELECT count(*) FROM " + Table;
        return m_connection.RunForNumber(sql) == Other.RunForNumber(sql);
    });
}

} // namespace dao
