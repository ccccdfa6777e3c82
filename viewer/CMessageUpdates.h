// viewer/CMessageUpdates.h
// Writes the read state and the mark of stored messages.

#ifndef VIEWER_CMESSAGEUPDATES_H
#define VIEWER_CMESSAGEUPDATES_H

#include "viewer/CMessageItem.h"

#include <map>
#include <optional>
#include <vector>

class Application;
class CBBS;

/// Each call is all or nothing: when the database refuses (locked, read-only, full), nothing has changed and the user
/// has been told. What a running receive has stored so far is committed first, so that its failure takes no change
/// along.
class CMessageUpdates
{
public:
    /// FirstOnly: a refusal is told once and then not again until something could be written. For what happens by
    /// itself while the user reads on.
    enum class Report { Always, FirstOnly };

    CMessageUpdates(Application& App, CBBS& Board)
        : m_app(App)
        , m_bbs(Board)
    {}

    /// The number of messages of each board whose state is another one now. Empty when refused.
    std::optional<std::map<qint32, int>> SetRead(const std::vector<CMessageId>& Ids, bool Read, Report Reporting);
    /// False when refused.
    bool SetMark(const std::vector<CMessageId>& Ids, qint32 Mark);

private:
    template<class Write> bool Run(const std::vector<CMessageId>& Ids, Report Reporting, Write WriteOne);
    void Tell(const QString& Reason, Report Reporting);

    Application& m_app;
    CBBS& m_bbs;
    bool m_hasToldRefusal = false;
};

#endif // VIEWER_CMESSAGEUPDATES_H
