// load/frmLoadDlg.h
// The window beside a receive or an import: what is going on, the log of the run, and one tab with the page of each
// board.

#ifndef LOAD_FRMLOADDLG_H
#define LOAD_FRMLOADDLG_H

#include <QDialog>
#include <QString>

#include <map>

class Application;
class CBBS;
class CBBSProperty;
class CBoardPageView;
class CInfoLabel;
class CPaintPause;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;

/// Modeless dialog of one run. Made once and shown anew for each run; closing it during a run cancels the run.
class frmLoadDlg : public QDialog
{
    Q_OBJECT

public:
    /// Numbers of the information lines in use. An import has its percentage in the line of the cache.
    enum InfoLine : qint16 { LastLine = 0, BoardLine = 1, StateLine = 2, SummaryLine = 3, CacheLine = 4 };
    /// What the button is: OK at the end of a run, Cancel while it goes on.
    enum Mode : qint16 { OkMode = 0, CancelMode = 1 };

    frmLoadDlg(Application& App, CBBS& Board, QWidget* Parent = nullptr);
    ~frmLoadDlg() override;

    /// Opens the dialog for a run with an empty log. HeadCaption is "受信" or "インポート"; the place comes from the
    /// settings, else the dialog is centred over Owner.
    void ShowDialog(const QString& HeadCaption, QWidget* Owner);

    /// Sets information line Line (from 1; 0: the last one there is); missing lines before it become empty ones. A
    /// Message that is not empty also goes to the log when AddLog is set.
    void UpdateInfo(const QString& Message, qint16 Line, bool AddLog);

    /// Prepares for the next board: its tab with its page, fresh information lines. IsMore tells whether another
    /// follows.
    void InitNewBBS(const CBBSProperty& Property, bool IsMore);

    /// Whether the run may go on to another board.
    bool IsNextBBS() const { return m_isNextBBS; }
    void SetIsNextBBS(bool NewIsNextBBS) { m_isNextBBS = NewIsNextBBS; }

    /// The information lines, separated by CR LF.
    const QString& Infomation() const { return m_infomation; }
    void SetInfomation(const QString& NewInfomation);

    bool ButtonEnabled() const;
    void SetButtonEnabled(bool NewButtonEnabled);

    qint16 ButtonMode() const { return m_buttonMode; }
    void SetButtonMode(qint16 NewButtonMode);

    /// The dialog is open (shown and not closed since).
    bool IsLoad() const { return m_isLoad; }

    void reject() override;

protected:
    void closeEvent(QCloseEvent* Event) override;

private:
    /// What a board's tab shows and where its page is kept.
    struct BoardTab
    {
        CBoardPageView* View = nullptr; // owned by the tabs
        QString Name;
        QString URL;
        QString CacheFile;
    };

    void BuildControls();
    void RemoveBoardTabs();
    void PlaceWindow(const QWidget* Owner);
    void SavePlace();
    CBoardPageView* AddBoardTab(const CBBSProperty& Property);
    void OnPageCompleted(qint32 BBS_ID);
    bool MayClose();
    void AppendLog(const QString& Text);

    Application& m_app;
    CBBS& m_board;
    CInfoLabel* m_lblInfo = nullptr;
    QTabWidget* m_tabStrip = nullptr;
    QPlainTextEdit* m_txtLog = nullptr;
    CPaintPause* m_logPaint = nullptr;
    QPushButton* m_cmdOK = nullptr;
    std::map<qint32, BoardTab> m_tabs; // by board
    QString m_infomation;
    bool m_isNextBBS = false;
    bool m_isLoad = false;
    qint16 m_buttonMode = OkMode;
};

#endif // LOAD_FRMLOADDLG_H
