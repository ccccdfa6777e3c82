// mainwin/mdlEnabling.cpp
// What the window's state allows: the enabled state of every command and the caption, as plain functions.

#include "mainwin/mdlEnabling.h"

using namespace Qt::StringLiterals;
using mdlCommands::Rule;

namespace mdlEnabling
{

namespace
{

bool ModeHolds(const WindowFacts& Facts, int Mode)
{
    return Mode >= 0 && Mode < int(Facts.ModeHasMessages.size()) && Facts.ModeHasMessages[std::size_t(Mode)];
}

bool MessageRuleHolds(Rule When, const WindowFacts& Facts)
{
    const bool single = Facts.SelectedCount == 1;
    const bool several = Facts.SelectedCount > 1;
    switch (When) {
    case Rule::Messages:
        return true;
    case Rule::Selection:
        return single || several;
    case Rule::SomeUnread:
        return several || (single && !Facts.IsRead);
    case Rule::SomeRead:
        return several || (single && Facts.IsRead);
    case Rule::SingleReply:
        return single && Facts.IsReply;
    case Rule::Single:
        return single;
    case Rule::Deletable:
        return (single || several) && Facts.Busy == BusyState::None;
    case Rule::WithMail:
        return (single || several) && Facts.HasMail;
    case Rule::WithHomePage:
        return (single || several) && Facts.HasHomePage;
    default:
        return false;
    }
}

QString JobText(BusyState Busy)
{
    switch (Busy) {
    case BusyState::Receive:
        return u"受信中 - "_s;
    case BusyState::Query:
        return u"検索中 - "_s;
    default:
        return {};
    }
}

} // namespace

bool Holds(Rule When, const WindowFacts& Facts, int Argument)
{
    const bool idle = Facts.Busy == BusyState::None;
    // A receive leaves the lists to the user; these have them, or the database, for themselves.
    const bool isClosed =
        Facts.Busy == BusyState::Query || Facts.Busy == BusyState::Work || Facts.Busy == BusyState::Compact;
    switch (When) {
    case Rule::Always:
        return true;
    case Rule::Never:
        return false;
    case Rule::Idle:
        return idle;
    case Rule::Open:
        return !isClosed;
    case Rule::ViewMode:
        return idle && ModeHolds(Facts, Argument);
    default:
        return !isClosed && !Facts.IsRaw && MessageRuleHolds(When, Facts);
    }
}

QString Caption(const WindowFacts& Facts, const QString& BoardName, const QString& AppTitle)
{
    const QString job = JobText(Facts.Busy);
    if (Facts.List != 0)
        return job + u"検索結果 - "_s + AppTitle;
    return job + (BoardName.isEmpty() ? AppTitle : BoardName + u" - "_s + AppTitle);
}

} // namespace mdlEnabling
