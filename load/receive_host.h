// load/receive_host.h
// What the drivers of a receive need of the main window.

#ifndef LOAD_RECEIVE_HOST_H
#define LOAD_RECEIVE_HOST_H

#include "board/CMessage.h"

#include <QString>

#include <optional>

class QWidget;

/// The kinds of run that a driver starts.
enum class RunKind { Receive, Import };

/// The main window as the drivers see it.
class ReceiveHost
{
public:
    virtual ~ReceiveHost() = default;

    /// A run begins: commands that start work are off, the status bar has style 1 and an empty status; a receive also puts
    /// "受信中 - " before the caption and starts the blinking.
    virtual void RunStarted(RunKind Kind) = 0;
    /// Text for the status panel.
    virtual void SetStatus(const QString& Text) = 0;
    /// The run is over: the board in view, menus, counts and the list are brought up to date, caption and blinking are
    /// put back. Not called when the window is closing.
    virtual void RunEnded() = 0;

    /// The user has closed the window while a run was under way.
    virtual bool IsClosing() const = 0;
    /// Number of the board in view.
    virtual qint32 CurrentBoard() const = 0;
    /// The message selected in the list in front; empty when there is none.
    virtual std::optional<CMessage> SelectedMessage() const = 0;
    /// Closes the main window.
    virtual void CloseWindow() = 0;
    /// The window that owns the receive dialog.
    virtual QWidget* DialogOwner() = 0;
};

#endif // LOAD_RECEIVE_HOST_H
