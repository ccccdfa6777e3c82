// viewer/CMessageUpdates.h
// Writes the read state and the mark of stored messages, and deletes them.

#ifndef VIEWER_CMESSAGEUPDATES_H
#define VIEWER_CMESSAGEUPDATES_H

#include "board/work_watch.h"
#include "viewer/CMessageItem.h"

#include <map>
#include <optional>
#include <vector>

class Application;
class CBBS;

/// Each call is all or nothing: when the database refuses (locked, read-only, full), nothing has changed and the user
/// has been told; when the user breaks it off, nothing has changed either. What a running receive has stored so far is
/// committed first, so that its failure takes no change along.
class CMessageUpdates
{
public:
    /// FirstOnly: a refusal is told once and then not again until something could be written. For what happens by
    /// itself while the user reads on.
    enum class Report { Always, FirstOnly };
    /// Number of messages by board.
    using Counts = std::map<qint32, int>;

    CMessageUpdates(Application& App, CBBS& Board)
        : m_app(App)
        , m_bbs(Board)
    {}

    /// How many messages of each board are in another state now. Empty when refused or broken off.
    std::optional<Counts> SetRead(const std::vector<CMessageId>& Ids, bool Read, Report Reporting);
    /// False when refused or broken off.
    bool SetMark(const std::vector<CMessageId>& Ids, qint32 Mark);
    /// How many unread messages each board has lost. Empty when refused or broken off.
    std::optional<Counts> Delete(const std::vector<CMessageId>& Ids);

private:
    struct Job
    {
        Work What;
        Report Reporting;
        QString Refusal; // what the user is told
    };

    template<class Write> bool Run(const std::vector<CMessageId>& Ids, const Job& Doing, Write WriteOne);
    void Tell(const QString& Reason, const Job& Doing);

    Application& m_app;
    CBBS& m_bbs;
    bool m_hasToldRefusal = false;
};

#endif // VIEWER_CMESSAGEUPDATES_H
