// mainwin/CKeyFilter.cpp
// Lets the window see its keys before its controls do.

#include "mainwin/CKeyFilter.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>

#include <algorithm>

CKeyFilter::CKeyFilter(QWidget& Window, std::function<bool(const mdlCommands::Key&)> Act)
    : QObject(&Window)
    , m_window(Window)
    , m_act(std::move(Act))
{
    qApp->installEventFilter(this);
}

bool CKeyFilter::eventFilter(QObject* Watched, QEvent* Event)
{
    m_composing.Watch(*Event);
    return Event->type() == QEvent::KeyPress && IsForWindow(Watched) && OnKey(*static_cast<QKeyEvent*>(Event));
}

bool CKeyFilter::IsForWindow(const QObject* Watched) const
{
    const auto* widget = qobject_cast<const QWidget*>(Watched);
    if (!widget || widget->window() != &m_window)
        return false;
    // What the menu bar does not take comes to the window next.
    if (qobject_cast<const QMenuBar*>(QApplication::focusWidget()))
        return false;
    return !m_composing.IsOn() && !QApplication::activePopupWidget() && !QApplication::activeModalWidget();
}

bool CKeyFilter::IsInEntryField() const
{
    const QWidget* focus = QApplication::focusWidget();
    return std::any_of(m_fields.cbegin(), m_fields.cend(), [focus](const QPointer<QWidget>& Field) {
        return focus && Field && (Field == focus || Field->isAncestorOf(focus));
    });
}

bool CKeyFilter::OnKey(const QKeyEvent& Event)
{
    const mdlCommands::Key* key = mdlCommands::FindKey(Event.key(), Event.modifiers());
    if (!key || (!key->Everywhere && IsInEntryField()))
        return false;
    if (Event.isAutoRepeat() && !key->Repeats)
        return true;
    return m_act(*key);
}
