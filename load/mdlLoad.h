// load/mdlLoad.h
// The numbered commands of the File and Board menus and the drivers of a receive and an import behind them.

#ifndef LOAD_MDLLOAD_H
#define LOAD_MDLLOAD_H

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class Application;
class CBBS;
class ReceiveHost;
class frmLoadDlg;
enum class RunKind;

/// Numbers of the commands, as menus, toolbar, keys and the tray send them.
enum class LoadCommand {
    ImportFiles = 1,
    ImportInternet = 2,
    ImportKakolog = 3,
    Export = 4,
    Exit = 5,
    Receive = 7,
    ReceiveAll = 8,
    VisitReceive = 9,
    ReceiveAllBoards = 10,
    NewMessage = 11,
    Reply = 12,
};

/// Runs the commands. Keeps no state between two runs; everything it was made from must outlive it.
class CLoadDrivers
{
public:
    CLoadDrivers(Application& App, CBBS& Board, frmLoadDlg& Dialog, ReceiveHost& Host);

    /// Runs command Number; an unknown one does nothing. A receive or import returns when it is over. What the database
    /// refuses is told in a message box.
    void ExecuteCommand(int Number);

    /// Receives Boards in this order, each its unread messages only or all that it holds.
    void ReceiveBoards(const std::vector<qint32>& Boards, bool NoReadLoad);

    /// Asks whether Paths are to be imported into the board in view, and imports them. Refusals as with ExecuteCommand.
    void ImportChosen(const QStringList& Paths);

    /// Imports the log files Paths into the board in this order. The user's cancel and a failing database leave out
    /// those that follow; what was committed stays.
    void ImportFiles(qint32 BBS_ID, const QStringList& Paths);

private:
    /// How an import has gone so far.
    struct ImportCount
    {
        qint64 Saved = 0;    ///< messages newly stored
        bool IsWhole = true; ///< nothing of the files had to be left out
        bool IsOver = false; ///< the files that follow are left out
    };

    void Run(const std::function<void()>& Action);
    void RunAsOne(RunKind Kind, const QString& HeadCaption, const std::function<void()>& Action);
    void OpenDialog(const QString& HeadCaption);
    void ChooseFiles();
    void ConfirmImport(const QStringList& Paths);
    void ImportInTurn(qint32 BBS_ID, const QStringList& Paths, ImportCount& Count);
    void ImportFile(qint32 BBS_ID, const QString& Path, ImportCount& Count);
    void ShowImportSummary(const ImportCount& Count);
    void Execute(LoadCommand Command);
    void VisitReceive(const QString& Condition);
    std::vector<qint32> BoardsWhere(const QString& Condition) const;
    void ReceiveInTurn(const std::vector<qint32>& Boards, bool NoReadLoad);
    void ReceiveBoard(qint32 BBS_ID, bool NoReadLoad, bool IsMore);
    void ShowSummary(const QString& BoardName, bool IsDone, bool IsErrorLogged);
    void FinishDialog();
    QString ImportFolder() const;
    void KeepImportFolder(const QString& Path);

    Application& m_app;
    CBBS& m_board;
    frmLoadDlg& m_dialog;
    ReceiveHost& m_host;
};

#endif // LOAD_MDLLOAD_H
