// mainwin/CWorkProgress.cpp
// Shows that a piece of work goes on once it takes long, and lets the user break it off.

#include "mainwin/CWorkProgress.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

/// Whether the event is the user's doing something with a control.
bool IsInput(QEvent::Type Type)
{
    switch (Type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

bool IsEscape(const QEvent& Event)
{
    const bool isKey = Event.type() == QEvent::KeyPress || Event.type() == QEvent::ShortcutOverride;
    return isKey && static_cast<const QKeyEvent&>(Event).key() == Qt::Key_Escape;
}

struct CWords
{
    Work What;
    QStringView Doing;
    QStringView Cancelled;
};

constexpr CWords Words[] = {
    {Work::Query, u"検索しています…", u"検索を中止しました。"},
    {Work::Find, u"検索しています…", u"検索を中止しました。"},
    {Work::Sort, u"並べ替えています…", u"並べ替えを中止しました。"},
    {Work::Change, u"メッセージの状態を変更しています…", u"変更を中止しました。メッセージの状態は元のままです。"},
    {Work::Delete, u"メッセージを削除しています…", u"削除を中止しました。メッセージはどれも削除されていません。"},
};

const CWords& WordsFor(Work What)
{
    return *std::find_if(std::begin(Words), std::end(Words), [What](const CWords& Line) { return Line.What == What; });
}

} // namespace

QString CWorkProgress::CancelledText() const { return WordsFor(m_what).Cancelled.toString(); }

void CWorkProgress::WorkBegins(Work What)
{
    m_what = What;
    m_isWorking = true;
    m_isCancelled = false;
    m_nextEvents = ShowAfterMs;
    m_toldSeconds = -1;
    m_clock.start();
}

bool CWorkProgress::WorkGoesOn()
{
    if (m_clock.elapsed() < m_nextEvents)
        return !m_isCancelled;
    if (!m_isShown)
        Show();
    Tell();
    QCoreApplication::processEvents();
    m_nextEvents = m_clock.elapsed() + EventsEveryMs;
    return !m_isCancelled;
}

void CWorkProgress::WorkEnds()
{
    m_isWorking = false;
    if (!m_isShown)
        return;
    m_isShown = false;
    QApplication::restoreOverrideCursor();
    QTimer::singleShot(LateEscapeMs, this, [this] {
        if (!m_isShown)
            qApp->removeEventFilter(this);
    });
    Q_EMIT Ended(m_isCancelled);
}

void CWorkProgress::Show()
{
    m_isShown = true;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    qApp->installEventFilter(this);
    Q_EMIT Began();
}

void CWorkProgress::Tell()
{
    const qint64 seconds = m_clock.elapsed() / 1000;
    if (seconds == m_toldSeconds)
        return;
    m_toldSeconds = seconds;
    Q_EMIT Told(WordsFor(m_what).Doing.toString() + u" Esc で中止 (%1 秒)"_s.arg(seconds));
}

/// What goes to a window comes again for the widget in it, so only widgets are kept from it.
bool CWorkProgress::eventFilter(QObject* Watched, QEvent* Event)
{
    if (!Watched->isWidgetType() || qobject_cast<QScrollBar*>(Watched))
        return false;
    if (m_isShown ? !IsInput(Event->type()) : !IsEscape(*Event))
        return false;
    if (IsEscape(*Event))
        Cancel();
    Event->accept(); // an override that is not taken would become a shortcut
    return true;
}
