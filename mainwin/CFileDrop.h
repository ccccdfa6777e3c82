// mainwin/CFileDrop.h
// Files that are dropped on the main window.

#ifndef MAINWIN_CFILEDROP_H
#define MAINWIN_CFILEDROP_H

#include <QObject>
#include <QStringList>

#include <functional>

class QDropEvent;
class QWidget;

/// Takes files of this machine that are dropped anywhere on a window, one or many, and nothing else: with a folder or
/// an address among them all is refused, which the pointer shows, and so it is while IsReady says no.
class CFileDrop : public QObject
{
    Q_OBJECT

public:
    /// A child of Window, which it watches.
    CFileDrop(QWidget& Window, std::function<bool()> IsReady);

    /// Field, inside of the window, takes dropped texts for itself; files it leaves to the window.
    void AddTextField(QWidget& Field);

    bool eventFilter(QObject* Watched, QEvent* Event) override;

Q_SIGNALS:
    /// These paths were dropped. Told when the drop is over, so that a box may be opened: the program that the files
    /// come from waits no longer.
    void FilesDropped(const QStringList& Paths);

private:
    void Answer(QDropEvent& Event);

    std::function<bool()> m_isReady;
    QStringList m_paths; // of the drag over the window; empty when it is refused
};

#endif
