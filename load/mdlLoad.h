// load/mdlLoad.h
// The numbered commands of the File and Board menus and the drivers of a receive behind them.

#ifndef LOAD_MDLLOAD_H
#define LOAD_MDLLOAD_H

#include <QString>

#include <vector>

class Application;
class CBBS;
class ReceiveHost;
class frmLoadDlg;

/// Numbers of the commands, as menus, toolbar, keys and the tray send them.
enum class LoadCommand {
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

    /// Runs command Number; an unknown one does nothing. A receive returns when it is over. What the database refuses is
    /// told in a message box.
    void ExecuteCommand(int Number);

    /// Receives Boards in this order, each its unread messages only or all that it holds.
    void ReceiveBoards(const std::vector<qint32>& Boards, bool NoReadLoad);

private:
    void Execute(LoadCommand Command);
    void VisitReceive(const QString& Condition);
    std::vector<qint32> BoardsWhere(const QString& Condition) const;
    void ReceiveInTurn(const std::vector<qint32>& Boards, bool NoReadLoad);
    void ReceiveBoard(qint32 BBS_ID, bool NoReadLoad, bool IsMore);
    void ShowSummary(const QString& BoardName, bool IsDone, bool IsErrorLogged);
    void FinishDialog();

    Application& m_app;
    CBBS& m_board;
    frmLoadDlg& m_dialog;
    ReceiveHost& m_host;
};

#endif // LOAD_MDLLOAD_H
