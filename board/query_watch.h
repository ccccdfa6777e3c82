// board/query_watch.h
// What a query that may take long needs of whoever shows the user that it works.

#ifndef BOARD_QUERY_WATCH_H
#define BOARD_QUERY_WATCH_H

/// The main window as a running query sees it.
class QueryWatch
{
public:
    virtual ~QueryWatch() = default;

    /// A statement, or the reading of its rows, begins. QueryEnds follows whatever happens; the pairs do not nest.
    virtual void QueryBegins() = 0;
    /// Asked every few milliseconds, mostly from inside of the statement: no other statement may run before this
    /// returns. It may process events. False stops the query as error 3059. Must not throw.
    virtual bool QueryGoesOn() = 0;
    virtual void QueryEnds() = 0;
};

/// A query is watched as long as this lives. Without a watch it does nothing.
class CWatchedQuery
{
public:
    explicit CWatchedQuery(QueryWatch* Watch)
        : m_watch(Watch)
    {
        if (m_watch)
            m_watch->QueryBegins();
    }
    ~CWatchedQuery()
    {
        if (m_watch)
            m_watch->QueryEnds();
    }
    CWatchedQuery(const CWatchedQuery&) = delete;
    CWatchedQuery& operator=(const CWatchedQuery&) = delete;

private:
    QueryWatch* m_watch;
};

#endif // BOARD_QUERY_WATCH_H
