// mainwin/CKeyFilter.h
// Lets the window see its keys before its controls do.

#ifndef MAINWIN_CKEYFILTER_H
#define MAINWIN_CKEYFILTER_H

#include "mainwin/mdlCommands.h"
#include "platform/desktop/CComposing.h"

#include <QObject>
#include <QPointer>

#include <functional>

class QKeyEvent;
class QWidget;

/// Watches the application for keys of the key table that are meant for Window.
///
/// A key is left to its control while a menu or a box is open, while an input method composes, and, but for those that
/// act everywhere, while one of the entry fields has the focus.
class CKeyFilter : public QObject
{
    Q_OBJECT

public:
    /// Act does what the key says and tells whether the key is used up by it.
    CKeyFilter(QWidget& Window, std::function<bool(const mdlCommands::Key&)> Act);

    /// Field, and what is in it, keeps its keys.
    void AddEntryField(QWidget& Field) { m_fields.append(&Field); }

    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    bool IsForWindow(const QObject* Watched) const;
    bool IsInEntryField() const;
    bool OnKey(const QKeyEvent& Event);

    QWidget& m_window;
    std::function<bool(const mdlCommands::Key&)> m_act;
    QList<QPointer<QWidget>> m_fields;
    CComposing m_composing;
};

#endif
