// board/work_watch.h
// What a piece of work that may take long needs of whoever shows the user that it goes on.

#ifndef BOARD_WORK_WATCH_H
#define BOARD_WORK_WATCH_H

/// What is being done, for the words that tell of it.
enum class Work {
    Query,  ///< a statement, or the reading of its rows
    Find,   ///< bodies are searched
    Sort,   ///< a list is sorted
    Change, ///< the read state or the mark of many messages is written
    Delete  ///< messages are deleted
};

/// The main window as a long piece of work sees it.
class WorkWatch
{
public:
    virtual ~WorkWatch() = default;

    /// The work begins. WorkEnds follows whatever happens; the pairs do not nest.
    virtual void WorkBegins(Work What) = 0;
    /// Asked every few milliseconds, mostly from inside of a statement: no other statement may run before this
    /// returns, and no list may change. It may process events. False breaks the work off; what it has done is to be
    /// taken back (a statement ends as error 3059). Must not throw.
    virtual bool WorkGoesOn() = 0;
    virtual void WorkEnds() = 0;
};

/// A piece of work is watched as long as this lives. Without a watch it does nothing.
class CWatchedWork
{
public:
    CWatchedWork(WorkWatch* Watch, Work What)
        : m_watch(Watch)
    {
        if (m_watch)
            m_watch->WorkBegins(What);
    }
    ~CWatchedWork()
    {
        if (m_watch)
            m_watch->WorkEnds();
    }
    CWatchedWork(const CWatchedWork&) = delete;
    CWatchedWork& operator=(const CWatchedWork&) = delete;

    /// False when the user has broken the work off.
    bool GoesOn() const { return !m_watch || m_watch->WorkGoesOn(); }

private:
    WorkWatch* m_watch;
};

#endif // BOARD_WORK_WATCH_H
