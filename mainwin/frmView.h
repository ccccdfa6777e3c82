// mainwin/frmView.h
// The main window: lists, message text, menus, toolbar, status bar, and what binds them to viewer and drivers.

#ifndef MAINWIN_FRMVIEW_H
#define MAINWIN_FRMVIEW_H

#include "load/receive_host.h"
#include "mainwin/mdlEnabling.h"
#include "mainwin/mdlPosition.h"
#include "platform/dao/Error.h"
#include "viewer/CViewer.h"

#include <QElapsedTimer>
#include <QMainWindow>

#include <array>
#include <memory>

class Application;
class CBBS;
class CBoardMenus;
class CFindCommands;
class CKeyFilter;
class CListView;
class CLoadDrivers;
class CMenuSet;
class CMessageCommands;
class CMessagePane;
class CStatusPanels;
class CTextZoom;
class CToolbar;
class CTrayPresence;
class CWorkProgress;
class frmLoadDlg;
class frmSQL;
class QTimer;
class uSeparator;

/// Made after the database has been opened and the settings have been read; Open shows it.
///
/// Commands run on the user-interface thread and may turn the event loop (a receive, a box). Closing is never refused:
/// the window is hidden at once, a run is cancelled, and when the last command has returned the settings are written,
/// the program's services are shut down and Closed is emitted. The owner must not destroy the window before that.
class frmView : public QMainWindow, private ViewerHost, private ReceiveHost
{
    Q_OBJECT

public:
    explicit frmView(Application& App);
    ~frmView() override;

    /// Fills the window from database and settings and shows it. False when no board is shown: the user has been told,
    /// the services are shut down, and the window stays hidden.
    bool Open();

    /// Brings the window, and the receive dialog over it, to the front.
    void ShowMainWindow();

    /// Closes without a question, also when a box is open. For signals and the end of the session.
    void Quit();

    /// One find step in the list in front, as the find commands make it.
    void FindMessage(const QString& Text, bool Forward);

    CViewer& Viewer() { return *m_viewer; }
    CBBS& Board() { return *m_bbs; }

Q_SIGNALS:
    /// All is written and shut down.
    void Closed();

protected:
    void closeEvent(QCloseEvent* Event) override;

private:
    using Command = mdlCommands::Command;

    // Building
    void BuildBars();
    void BuildTray();
    void BuildPanes();
    void BuildTabOrder();
    void BuildTimers();
    void ConnectList(int List);
    void ConnectBoard();
    void ConnectQueries();
    void ConnectFind();
    void ConnectMenus();
    void ConnectDrop();
    void PlaceWindow();
    void ShowPlaced(int WindowState);
    bool MakeBBSMenu();
    void ReportNoBoards();
    QTimer* MakeTimer(const QString& Name, int IntervalMs, bool SingleShot);

    // Commands
    struct CommandLine;
    static const CommandLine* FindCommand(Command Handler);
    void RunCommand(Command Handler, int Argument);
    bool OnKey(const mdlCommands::Key& Key);
    /// Runs something that the user, a timer or the system asked for; nothing while a statement works, whose wait may
    /// have let the asking through. What the database refuses is told, and closing waits until the outermost of these
    /// has returned.
    template<typename Function> void Perform(Function Action);
    void Leave();
    void ReportError(const dao::Error& Error);
    void DoExecute(int Number);
    void DoTrayExecute(int Number);
    void DoImport(const QStringList& Paths);
    void DoTraySelectBoard(int BBS_ID);
    void DoBoardListButton();
    void DoThread();
    void DoSetNoRead();
    void DoPrevUnreadByKey();
    void DoSelectAll();
    void DoReverseSelection();
    void DoCompactDatabase();
    void DoRelate();
    void DoQuery();
    void DoTextFind();
    void DoTimer();
    void DoOptions();
    void DoBoardProperties();
    bool StoreBoard(CBBSProperty& Edited);
    void AdoptSettings();
    void DoEscape();
    void LeaveResults();
    void DoPopupBoards();
    void DoPopupMarks();
    void DoMenuBar();
    static void DoContextMenu();
    void MovePrev(CViewer::MoveMode Mode, bool PageFirst);
    void MoveNext(CViewer::MoveMode Mode, bool PageFirst);
    void CompactDatabase();
    void UseDatabase();
    void OfferRecovery();
    void TellUncompacted(const dao::Error& Reason);
    bool RunQueries(QString Statement);
    void StoreNoReadPoint(qint32 Value);
    void CancelRun();

    // State
    mdlEnabling::WindowFacts Facts() const;
    void UpdateEnabled();
    void ScheduleEnabled();
    void KeepFocus();
    void UpdateCaption();
    void ChangeToolbarImage();
    void RefreshMessageMenu();
    void CheckMark(qint32 Mark);
    void PopupListMenu(const QPoint& Place);
    void PopupTextMenu(const QPoint& Place);
    void ChangeIconFrame(bool Reset);
    void StartBlinkIcon();
    void EndBlinkIcon();

    // Closing
    void StartClosing();
    void CloseBoxes();
    void FinishClosing();
    void SaveBoard();
    mdlPosition::Position CurrentPosition() const;

    // ViewerHost
    void ShowBody(const std::vector<BodyLine>& Lines) override;
    void ShowMail(const QString& Caption) override;
    void ShowHomePage(const QString& Caption) override;
    void ChangeStatusBarStyle(int Style) override;
    void SetCountText(const QString& Text) override;
    void SetNoReadPointText(const QString& Text) override;
    void ClearStatus() override;
    void BeginListUpdate(int List) override;
    void EndListUpdate(int List) override;
    void ListShown(int List) override;
    void EnsureVisible(int List, int Row) override;
    void SelectionChanged(int List) override;
    void HeadersChanged(int List) override;
    void StartReadTimer(int Ms) override;
    void StopReadTimer() override;
    void ViewMenuChanged() override;
    void BoardCountChanged(qint32 BBS_ID, int UnreadCount) override;
    void MarksChanged() override;
    void DataDefinitionChanged() override;
    void Progress(int Done, int Of) override;
    bool PagePane(bool Forward) override;
    BodyRange PaneSelection() const override;
    void SelectInPane(BodyRange Range) override;

    // ReceiveHost
    void RunStarted(RunKind Kind) override;
    void SetStatus(const QString& Text) override;
    void RunEnded() override;
    bool IsClosing() const override { return m_isClosing; }
    qint32 CurrentBoard() const override;
    std::optional<CMessage> SelectedMessage() const override;
    void CloseWindow() override;
    QWidget* DialogOwner() override { return this; }

    // Long work
    void OnWorkBegan();
    void OnWorkEnded(bool IsCancelled);
    bool IsWorking() const;

    // Board access
    void OnAddMessage(const CMessage& Msg);
    void OnChangeState(const QString& StateMessage, bool IsError, bool AddLog);
    void OnLogError(qint32 BBS_ID, const QString& LogText, const QString& ErrorMessage);

    CListView& View(int List) const { return *m_lists[std::size_t(List)]; }

    Application& m_app;
    std::unique_ptr<CBBS> m_bbs;
    std::unique_ptr<CViewer> m_viewer;
    std::unique_ptr<CMessageCommands> m_messageCommands;
    std::unique_ptr<frmLoadDlg> m_dialog;
    std::unique_ptr<CLoadDrivers> m_drivers;
    std::unique_ptr<frmSQL> m_queryDialog; // made when it is first asked for
    QString m_lastQuery;
    CMenuSet* m_menus = nullptr; // widgets and helpers from here on are children of the window
    CToolbar* m_toolbar = nullptr;
    CStatusPanels* m_panels = nullptr;
    CBoardMenus* m_boardMenus = nullptr;
    CFindCommands* m_find = nullptr;
    CTrayPresence* m_tray = nullptr;
    QWidget* m_client = nullptr; // what lies between toolbar and status bar
    uSeparator* m_separator = nullptr;
    std::array<CListView*, 2> m_lists = {};
    CMessagePane* m_pane = nullptr;
    CTextZoom* m_textZoom = nullptr;
    QTimer* m_tmrRead = nullptr;
    QTimer* m_tmrBlinkIcon = nullptr;
    QTimer* m_tmrCloseBoxes = nullptr;
    QTimer* m_tmrEnabled = nullptr; // UpdateEnabled is due
    CWorkProgress* m_work = nullptr;
    BusyState m_busy = BusyState::None;
    BusyState m_busyBefore = BusyState::None; // a receive may be under way when a query takes long
    int m_styleBefore = 0;                    // of the status bar, as the text
    QString m_statusBefore;
    QElapsedTimer m_sinceCount;       // since a board's count was shown
    mdlPosition::Position m_position; // as it was when the window was closed
    int m_iconFrame = 0;
    qint32 m_optionTab = 1; // shown last
    qint32 m_boardTab = 1;
    int m_commandDepth = 0;
    bool m_isClosing = false;
    bool m_isClosed = false;
    bool m_isQuitting = false;         // nobody is there to answer
    bool m_isErrorLogReported = false; // in this run
    bool m_isResultRefilled = false;   // the result list got other rows; its columns follow
};

template<typename Function> void frmView::Perform(Function Action)
{
    if (m_isClosing || IsWorking())
        return;
    ++m_commandDepth;
    try {
        Action();
    } catch (const dao::Error& error) {
        ReportError(error);
    }
    Leave();
}

#endif
