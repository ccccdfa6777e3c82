// mainwin/mdlEnabling.h
// What the window's state allows: the enabled state of every command and the caption, as plain functions.

#ifndef MAINWIN_MDLENABLING_H
#define MAINWIN_MDLENABLING_H

#include "mainwin/mdlCommands.h"

#include <QString>

#include <array>

/// The one job that runs. The window has at most one at a time. Work: a list is sorted, or many messages are changed.
enum class BusyState { None, Receive, Import, Query, Work, Compact };

namespace mdlEnabling
{

/// Everything that the enabled states depend on.
struct WindowFacts
{
    BusyState Busy = BusyState::None;
    int List = 0;          ///< list in front: 0 board list, 1 result list
    bool IsRaw = false;    ///< the result list shows rows that are no messages
    int SelectedCount = 0; ///< 0, 1, or 2 for "several"
    bool IsRead = false;   ///< read state of the only selected message
    bool IsReply = false;  ///< whether the only selected message answers another
    bool HasMail = false;  ///< of the selected message, the focused one of several
    bool HasHomePage = false;
    std::array<bool, 5> ModeHasMessages = {};
};

/// Whether an item with this rule is enabled. Argument is the view mode for Rule::ViewMode, otherwise unused.
bool Holds(mdlCommands::Rule When, const WindowFacts& Facts, int Argument = 0);

/// "受信中 - " while a receive runs or "検索中 - " while a query does, then BoardName (board list) or "検索結果"
/// (result list), " - " and AppTitle. Only AppTitle while no list has been shown (BoardName empty, board list).
QString Caption(const WindowFacts& Facts, const QString& BoardName, const QString& AppTitle);

} // namespace mdlEnabling

#endif
