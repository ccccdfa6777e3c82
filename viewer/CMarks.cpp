// viewer/CMarks.cpp
// Reads table Mark.

#include "viewer/CMarks.h"

#include "platform/dao/Database.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

std::map<qint32, Mark> Stored(dao::Database* Db)
{
    std::map<qint32, Mark> marks;
    if (!Db)
        return marks;
    try {
        const auto rows = Db->OpenRecordset(u"SELECT * FROM Mark ORDER BY ID"_s);
        for (; !rows->Eof(); rows->MoveNext()) {
            const qint32 id = rows->Get(u"ID").ToLong();
            if (id > 0)
                marks[id] = {rows->Get(u"Name").ToText(), static_cast<quint32>(rows->Get(u"ForeColor").ToLong()),
                             static_cast<quint32>(rows->Get(u"BackColor").ToLong())};
        }
    } catch (const dao::Error&) {
        return {};
    }
    return marks;
}

} // namespace

bool CMarks::Read(dao::Database* Db)
{
    const std::map<qint32, Mark> before = std::exchange(m_marks, Stored(Db));
    return m_marks != before;
}

std::optional<quint32> CMarks::ForeColor(qint32 Number) const
{
    constexpr quint32 windowText = 0x80000008U;
    if (Number == 0)
        return windowText;
    const auto found = m_marks.find(Number);
    if (found != m_marks.end())
        return found->second.ForeColor;
    if (Number < 0 || m_marks.empty() || Number > m_marks.rbegin()->first)
        return std::nullopt;
    return 0;
}
