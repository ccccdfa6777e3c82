// mainwin/CWorkProgress.h
// Shows that a piece of work goes on once it takes long, and lets the user break it off.

#ifndef MAINWIN_CWORKPROGRESS_H
#define MAINWIN_CWORKPROGRESS_H

#include "board/work_watch.h"

#include <QElapsedTimer>
#include <QObject>

/// The wait for a query, a search or a long change, without the window that tells of it.
///
/// Short work is over before anything is shown. From ShowAfterMs on events are processed every EventsEveryMs, from
/// inside of the work: windows are painted and can be closed, lists and texts can be scrolled, Esc cancels; every other
/// key and click is dropped, as whatever it means would run within a statement or change what is being worked on.
class CWorkProgress : public QObject, public WorkWatch
{
    Q_OBJECT

public:
    static constexpr int ShowAfterMs = 500;
    static constexpr int EventsEveryMs = 50;
    /// So long after work that was shown Esc is dropped: who pressed it meant the work, not the window. Shorter than
    /// ShowAfterMs.
    static constexpr int LateEscapeMs = 300;

    using QObject::QObject;

    /// Something is being worked on: nothing else may be begun.
    bool IsWorking() const { return m_isWorking; }
    /// What is, or was last, worked on.
    Work What() const { return m_what; }
    /// What the user is told of work that was stopped.
    QString CancelledText() const;
    /// Stops the work; it returns soon after.
    void Cancel() { m_isCancelled = true; }

    void WorkBegins(Work What) override;
    bool WorkGoesOn() override;
    void WorkEnds() override;

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// The work takes long: commands are to be shown as off. Ended follows.
    void Began();
    /// Text for the status bar, once a second.
    void Told(const QString& Text);
    void Ended(bool IsCancelled);

private:
    void Show();
    void Tell();

    QElapsedTimer m_clock;
    qint64 m_nextEvents = 0; // by the clock
    qint64 m_toldSeconds = -1;
    Work m_what = Work::Query;
    bool m_isWorking = false;
    bool m_isShown = false;
    bool m_isCancelled = false;
};

#endif
