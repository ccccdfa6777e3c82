// viewer/CBoardCounts.h
// The numbers of unread messages behind the boards' names.

#ifndef VIEWER_CBOARDCOUNTS_H
#define VIEWER_CBOARDCOUNTS_H

#include <QtGlobal>

#include <map>
#include <optional>
#include <vector>

class Application;

/// One integer a board, counted in the database when first asked for and then kept by the changes that really happened.
class CBoardCounts
{
public:
    explicit CBoardCounts(Application& App)
        : m_app(App)
    {}

    /// 0 when the database cannot be read.
    int Count(qint32 BBS_ID);
    /// The count after Change more unread messages, which the database already holds. Change 0 counts anew.
    int Add(qint32 BBS_ID, int Change);
    /// The boards asked for so far; their counts are forgotten, so that the next question counts anew.
    std::vector<qint32> Forget();

private:
    std::optional<int> CountStored(qint32 BBS_ID) const;

    Application& m_app;
    std::map<qint32, int> m_counts;
};

#endif // VIEWER_CBOARDCOUNTS_H
