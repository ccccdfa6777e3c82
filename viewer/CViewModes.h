// viewer/CViewModes.h
// The five ways to look at a board: their statements, and the menu captions that tell how much each would bring.

#ifndef VIEWER_CVIEWMODES_H
#define VIEWER_CVIEWMODES_H

#include <QString>

#include <array>

namespace dao
{
class Database;
}

/// The window of a board's messages that the board list shows: highest and lowest number loaded, and the pages beside
/// it.
class CViewModes
{
public:
    enum Mode { Newest = 0, NewerPage = 1, OlderPage = 2, Unread = 3, All = 4 };
    static constexpr int ModeCount = 5;

    struct ViewEntry
    {
        QString Caption; ///< of the menu entry
        bool Enabled = true;
        QString ToolTip; ///< of the paging buttons "Back" (entry 1) and "Forword" (entry 2)
        int Count = 0;   ///< messages that the entry would bring; the page size where it would bring none
    };

    CViewModes();

    /// The statement of mode Index for board BBS_ID with pages of PageSize messages.
    QString Statement(int Index, qint32 BBS_ID, int PageSize) const;
    /// Counts anew what entries 0 to 2 would bring. Entries whose count the database refuses are disabled.
    void Recount(dao::Database* Db, qint32 BBS_ID, int PageSize);
    const ViewEntry& Entry(int Index) const { return m_entries[static_cast<std::size_t>(Index)]; }

    qint32 HighestID() const { return m_highestId; }
    qint32 LowestID() const { return m_lowestId; }
    void Reset() { m_highestId = m_lowestId = 0; }
    /// Widens the window by a message that the board list now holds.
    void Note(qint32 ID);

private:
    struct CaptionParts
    {
        QString Word;
        QChar AccessKey;
        QString Shortcut;
    };

    void SetEntry(int Index, const CaptionParts& Parts, int Found, int PageSize);

    std::array<ViewEntry, ModeCount> m_entries;
    qint32 m_highestId = 0;
    qint32 m_lowestId = 0;
};

#endif // VIEWER_CVIEWMODES_H
