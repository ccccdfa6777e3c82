// viewer/CMarks.h
// The user's marks: names and colours, as table Mark holds them.

#ifndef VIEWER_CMARKS_H
#define VIEWER_CMARKS_H

#include <QString>

#include <map>
#include <optional>

namespace dao
{
class Database;
}

/// One row of table Mark. Colours: red + 256 x green + 65536 x blue, or 0x80000000 + a system colour.
struct Mark
{
    QString Name;
    quint32 ForeColor = 0;
    quint32 BackColor = 0;

    bool operator==(const Mark& Other) const = default;
};

/// The marks by number. Number 0 means no mark and is never an entry.
class CMarks
{
public:
    /// Reads the table anew; what the engine refuses leaves no marks. Whether they are others now.
    bool Read(dao::Database* Db);

    const std::map<qint32, Mark>& All() const { return m_marks; }
    /// Text colour of a message with mark Number: that of the row; black for a number without a row below the highest;
    /// empty above the highest, where a message keeps the colour that it has.
    std::optional<quint32> ForeColor(qint32 Number) const;

private:
    std::map<qint32, Mark> m_marks;
};

#endif // VIEWER_CMARKS_H
