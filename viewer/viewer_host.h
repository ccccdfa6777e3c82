// viewer/viewer_host.h
// What the message viewer needs of the window around it.

#ifndef VIEWER_VIEWER_HOST_H
#define VIEWER_VIEWER_HOST_H

#include <QString>

#include <vector>

/// The window as the viewer sees it. List is 0 for the board list, 1 for the result list; rows count from 0.
/// Every call is on the user-interface thread; none may call back into the viewer except where it says so.
class ViewerHost
{
public:
    /// What a line of a message is, for its colour.
    enum class LineKind { Plain, Quote, Comment };

    struct BodyLine
    {
        QString Text; ///< without its line end
        LineKind Kind = LineKind::Plain;
    };

    /// A part of the shown message's Body, in UTF-16 units of it. Without a Length it is the place of the caret.
    struct BodyRange
    {
        qsizetype Start = 0;
        qsizetype Length = 0;

        bool operator==(const BodyRange&) const = default;
    };

    virtual ~ViewerHost() = default;

    /// Shows Lines in the text pane, each followed by a line break, with the caret at the top. No lines: an empty pane.
    virtual void ShowBody(const std::vector<BodyLine>& Lines) = 0;
    /// The whole caption of the mail label ("mailto:" and the address); empty hides it.
    virtual void ShowMail(const QString& Caption) = 0;
    /// The whole caption of the home-page label; empty hides it.
    virtual void ShowHomePage(const QString& Caption) = 0;
    /// 0: the panels of a message, 1: the status panel.
    virtual void ChangeStatusBarStyle(int Style) = 0;

    /// "12/100": unread and shown.
    virtual void SetCountText(const QString& Text) = 0;
    /// "未読位置:" and the number.
    virtual void SetNoReadPointText(const QString& Text) = 0;
    virtual void ClearStatus() = 0;

    /// Holds the painting of a list back while it changes; the calls nest.
    virtual void BeginListUpdate(int List) = 0;
    virtual void EndListUpdate(int List) = 0;
    /// List has become the current one: bring it to the front, set the caption, the menus and the toolbar.
    virtual void ListShown(int List) = 0;
    virtual void EnsureVisible(int List, int Row) = 0;
    /// The viewer (not the view) changed the selected rows or the focus of List; CMessageList tells them.
    virtual void SelectionChanged(int List) = 0;
    /// The columns of List are others now or carry another sort mark. After a message load of the result list the
    /// widths and places of the board list's columns are to be taken over; a raw table starts with columns of 1500
    /// twips.
    virtual void HeadersChanged(int List) = 0;

    /// Starts the one-shot read timer anew; when it fires, CViewer::ReadTimerFired is due. Ms is above 0.
    virtual void StartReadTimer(int Ms) = 0;
    virtual void StopReadTimer() = 0;

    /// CViewer::Entry has new captions and states.
    virtual void ViewMenuChanged() = 0;
    /// The number behind a board's name in the menus; 0 shows none.
    virtual void BoardCountChanged(qint32 BBS_ID, int UnreadCount) = 0;
    /// CViewer::Marks has been read anew: the mark menus are to be rebuilt.
    virtual void MarksChanged() = 0;
    /// A statement that changes data has run: rebuild the board menus, the board icons and the toolbar pictures.
    /// May ask CViewer::BoardUnreadCount.
    virtual void DataDefinitionChanged() = 0;
    /// A long load has come to row Done of Of (Done = Of at its end). May repaint, must not run an event loop.
    virtual void Progress(int Done, int Of) = 0;

    /// Turns the text pane one page on (or back); false when it already shows the end (the top) and did not move.
    virtual bool PagePane(bool Forward) = 0;
    /// What the text pane has selected of the body that ShowBody gave it.
    virtual BodyRange PaneSelection() const = 0;
    /// Selects Range in the text pane, brings it into view and gives the pane the focus. Line breaks and characters
    /// are taken whole, so more may be selected than was asked for, never less.
    virtual void SelectInPane(BodyRange Range) = 0;
};

#endif // VIEWER_VIEWER_HOST_H
