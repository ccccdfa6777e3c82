// mainwin/CQueryProgress.h
// Shows that a query works once it takes long, and lets the user break it off.

#ifndef MAINWIN_CQUERYPROGRESS_H
#define MAINWIN_CQUERYPROGRESS_H

#include "board/query_watch.h"

#include <QElapsedTimer>
#include <QObject>

/// The wait for a query, without the window that tells of it.
///
/// A short query is over before anything is shown. From ShowAfterMs on events are processed every EventsEveryMs, from
/// inside of the statement: windows are painted and can be closed, lists and texts can be scrolled, Esc cancels; every
/// other key and click is dropped, as whatever it means would run another statement within this one.
class CQueryProgress : public QObject, public QueryWatch
{
    Q_OBJECT

public:
    static constexpr int ShowAfterMs = 500;
    static constexpr int EventsEveryMs = 50;

    using QObject::QObject;

    /// A statement works, or its rows are read: no other may be begun.
    bool IsWorking() const { return m_isWorking; }
    /// Stops the query that works; it returns soon after.
    void Cancel() { m_isCancelled = true; }

    void QueryBegins() override;
    bool QueryGoesOn() override;
    void QueryEnds() override;

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// The query takes long: commands are to be shown as off. Ended follows.
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
    bool m_isWorking = false;
    bool m_isShown = false;
    bool m_isCancelled = false;
};

#endif
