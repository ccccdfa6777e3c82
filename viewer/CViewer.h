// viewer/CViewer.h
// The message viewer without its window: two lists, the view modes, the shown message, read state, marks, history.

#ifndef VIEWER_CVIEWER_H
#define VIEWER_CVIEWER_H

#include "board/CBBSProperty.h"
#include "viewer/CBoardCounts.h"
#include "viewer/CHistory.h"
#include "viewer/CListLoader.h"
#include "viewer/CMarks.h"
#include "viewer/CMessageList.h"
#include "viewer/CMessageModel.h"
#include "viewer/CMessageUpdates.h"
#include "viewer/CViewModes.h"
#include "viewer/viewer_host.h"

#include <QObject>

#include <memory>
#include <optional>

class Application;
class CBBS;

/// List 0 is the board list, list 1 the result list; rows count from 0. Database refusals are answered here (a Japanese
/// box where the user has to know); none is thrown. Whatever the user changes is committed apart from a running
/// receive.
class CViewer : public QObject
{
    Q_OBJECT

public:
    enum ListIndex { BoardList = 0, ResultList = 1 };
    /// What MoveNext and MovePrev go by.
    enum class MoveMode { Message = 0, Unread = 1, History = 2 };
    using ViewEntry = CViewModes::ViewEntry;

    /// All three must outlive the viewer. Does nothing yet: the window calls BuildMarkMenu and SelectBoard.
    CViewer(Application& App, CBBS& Board, ViewerHost& Host, QObject* Parent = nullptr);
    ~CViewer() override;

    CMessageList& List(int Index) { return *m_lists[Index]; }
    const CMessageList& List(int Index) const { return *m_lists[Index]; }
    CMessageModel& Model(int Index) { return *m_models[Index]; }
    int CurrentList() const { return m_currentList; }
    /// Whether the list in front shows rows that are no messages.
    bool IsRawTable() const { return m_lists[m_currentList]->IsRaw(); }
    qint32 CurrentBoard() const { return m_currentBoard; }
    CBBSProperty& BoardProperty() { return m_property; }

    /// Makes BBS_ID the board on view (and the setting) and shows its newest messages. When these cannot be read, or
    /// reading them is broken off, the board on view stays; where there is none yet, BBS_ID becomes it with an empty
    /// list.
    void SelectBoard(qint32 BBS_ID);
    /// Runs view mode 0 to 4: newest, newer page, older page, unread, all. The list stays when that fails.
    void ShowViewMode(int Index);
    const ViewEntry& Entry(int Index) const { return m_modes.Entry(Index); }
    void ChangeBBSViewMenu();

    /// Runs Sql and fills List with its rows or reports what it did. False when the engine refused it: nothing has
    /// changed.
    bool LoadList(const QString& Sql, int List);
    /// Where in the last statement that LoadList ran its error is, in UTF-16 units; -1: nowhere known, or no error.
    int ErrorOffset() const { return m_errorOffset; }
    /// Adds one message; false when the list has it already.
    bool AddMessageItem(int List, const CMessage& Msg);
    /// Whether message ID of the board on view has its place between messages that the board list holds.
    bool IsWithinBoardList(qint32 ID) const { return ID > m_modes.LowestID() && ID < m_modes.HighestID(); }
    /// Takes back messages whose batch could not be committed.
    void WithdrawMessages(const std::vector<CMessage>& Messages);
    /// After a receive or an import: the lists stay as they are, newer messages of the board on view are added, counts,
    /// menu and unread position are brought up to date.
    void RefreshAfterRun();
    void ClearList(int List);
    void ShowList(int List);
    void ShowThread(int List);
    /// Takes the sort mark off the header and, unless Raw, the indentation off the subjects.
    void ResetListView(int List, bool Raw);

    void ColumnClicked(int List, int Column);
    /// Row became the focus by the user's own click or key; CMessageList::SetSelection has been told before.
    void ItemClicked(int List, int Row);
    void ShowMessage(int List, int Row, bool KeepSelection);
    /// Whose text the pane shows.
    std::optional<CMessageId> ShownMessage() const { return m_shown; }

    /// Sets one message's read state in both lists and the database; an empty Key means the focused message of the list
    /// in front. A refused statement is reported and changes nothing.
    void SetRead(const QString& Key, bool Read, bool UpdateBoardCount);
    /// All or nothing: the user may break it off.
    void SetReadSelected(int List, bool Read);
    bool IsRead(int List, int Row) const;
    void StartReadTimer();
    void StopReadTimer();
    void ReadTimerFired();
    void ShowCounts(int List);
    /// Change 0 counts the board's unread messages anew.
    void UpdateBoardUnreadCaption(qint32 BBS_ID, int Change);
    /// Counts the unread messages of every board asked for so far anew.
    void RecountBoards();
    int BoardUnreadCount(qint32 BBS_ID) const;
    void ShowNoReadPoint();

    /// PageFirst: the text pane is paged to its end (top) before the next (previous) message is shown.
    void MoveNext(int List, MoveMode Mode, bool PageFirst);
    void MovePrev(int List, MoveMode Mode, bool PageFirst);
    void MoveInReplyTo(int List);
    /// Position counts from 1.
    void PushHistory(int Position);

    /// Reads the marks anew; the host is told when they are others now.
    void BuildMarkMenu();
    const std::map<qint32, Mark>& Marks() const { return m_marks.All(); }
    void SetMark(const QString& Key, qint32 Number);
    /// All or nothing: the user may break it off.
    void MarkSelected(qint32 Number);
    /// The mark that the selected messages share, 0 when they do not.
    qint32 GetSelectedMark() const;

    /// Asks, then deletes the selected messages of the list in front from the database and, when that has happened,
    /// from the lists: from the board list also what was selected in the result list. All or nothing: when the database
    /// refuses or the user breaks it off, everything stays. Afterwards the pane is empty, and the next row that stays
    /// has the focus.
    void DeleteSelected();

    /// Shows the thread of the message that Text names ("#123", "質問 45") in the result list, and the message itself.
    /// BBS_ID is the board that is meant where Text names none. A text that names no message is told; a refused load
    /// changes nothing.
    void RelatedSearch(qint32 BBS_ID, const QString& Text);

private:
    using Report = CMessageUpdates::Report;

    void ReadBoardProperty();
    CListLoader::Result Load(const QString& Sql, int List);
    void Take(CListLoader::Result Result, int List);
    void FillList(int List, std::vector<CMessageItem> Items);
    void NoteLoaded(const std::vector<CMessageItem>& Items);
    void ShowLoaded(CListLoader::Result Result, int List);
    void AfterAction();
    void ShowFirst(int List);
    bool SortBy(int List, int Column);
    void ClearPane();
    void FocusRow(int List, int Row);
    void ShowText(const CMessage& Msg);
    void AddNewer();
    void AddOlder();
    void ReloadNewest();
    void RereadRoots();

    std::optional<CMessageId> IdOfKey(const QString& Key) const;
    std::optional<CMessageId> FocusedId(int List) const;
    std::vector<CMessageId> SelectedIds(int List) const;
    bool ChangeRead(const std::vector<CMessageId>& Ids, bool Read, bool UpdateBoardCount, Report Reporting);
    void ChangeMark(const std::vector<CMessageId>& Ids, qint32 Number);
    void CountBoards(const CMessageUpdates::Counts& Changed, int Sign);
    bool ConfirmsDeletion() const;
    void DropRows(int List, const std::vector<CMessageId>& Ids);
    std::optional<qint32> BoardNamed(const QString& Name) const;
    void ShowFound(int List, int Row);
    void Leave(int List, MoveMode Mode);
    int RowBehind(int List) const;
    void MoveTo(int List, int Row);

    Application& m_app;
    CBBS& m_bbs;
    ViewerHost& m_host;
    CBBSProperty m_property;
    std::unique_ptr<CMessageList> m_lists[2];
    std::unique_ptr<CMessageModel> m_models[2];
    CViewModes m_modes;
    CMarks m_marks;
    CHistory m_history;
    mutable CBoardCounts m_counts;
    CListLoader m_loader;
    CMessageUpdates m_updates;
    std::optional<CMessageId> m_shown;        // whose text the pane shows
    std::optional<CMessageId> m_timerMessage; // whom the read timer will mark
    int m_currentList = BoardList;
    qint32 m_currentBoard = 0;
    int m_errorOffset = -1;
    bool m_isLoading = false; // a load never starts the read timer
};

#endif // VIEWER_CVIEWER_H
