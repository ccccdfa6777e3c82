// mainwin/frmViewSettings.cpp
// The settings dialogs as the main window calls them, and what follows from them.

#include "mainwin/frmView.h"

#include "app/Application.h"
#include "board/CBBS.h"
#include "mainwin/CFindCommands.h"
#include "mainwin/CListView.h"
#include "mainwin/CTrayPresence.h"
#include "settings_ui/frmProperty.h"
#include "viewer/CViewer.h"

/// The key comes here also while the item is disabled. What the database refuses is shown again, as it was entered.
void frmView::DoBoardProperties()
{
    if (m_busy != BusyState::None)
        return;
    CBBSProperty& board = m_viewer->BoardProperty();
    bool isEntered = false;
    bool isStored = false;
    while (!isStored && !m_isClosing && frmProperty(m_app, this).ShowProperty(board, m_boardTab)) {
        isEntered = true;
        isStored = StoreBoard(board);
    }
    if (!isEntered)
        return;
    if (!isStored)
        board.GetProperty(board.ID());
    AdoptSettings(); // what the other pages have stored stays
}

/// Visits and places have been written by pages of their own, and Edited has them as they were before.
bool frmView::StoreBoard(CBBSProperty& Edited)
{
    try {
        CBBSProperty stored(m_app);
        if (stored.GetProperty(Edited.ID())) {
            Edited.VisitLoad = stored.VisitLoad;
            Edited.ListOrder = stored.ListOrder;
        }
        Edited.SetProperty();
        return true;
    } catch (const dao::Error& error) {
        ReportError(error);
        return false;
    }
}

void frmView::DoOptions()
{
    if (m_busy != BusyState::None)
        return;
    CBBSProperty& board = m_viewer->BoardProperty();
    if (!frmProperty(m_app, this).ShowOption(board, m_optionTab))
        return;
    board.GetProperty(board.ID());
    AdoptSettings();
}

/// Whatever reads a setting only when it is needed follows by itself.
void frmView::AdoptSettings()
{
    if (m_isClosing) // while a box of the dialog was open; the icon has left the tray
        return;
    m_tray->Adopt();
    m_find->AdoptSettings();
    m_bbs->SetTimeout(m_app.Option().Timeout);
    MakeBBSMenu();
    m_viewer->ChangeBBSViewMenu(); // its captions tell the size of a page
    m_viewer->ShowNoReadPoint();
    ChangeToolbarImage();
    UpdateCaption();
    View(1 - m_viewer->CurrentList()).viewport()->update(); // dates and bold print, as in the list in front
}
