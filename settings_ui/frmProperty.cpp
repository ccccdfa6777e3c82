// settings_ui/frmProperty.cpp
// The dialog with tabs that shows either the program's options or the properties of one board.

#include "settings_ui/frmProperty.h"

#include "app/Application.h"
#include "app/Settings.h"
#include "board/CBBSProperty.h"
#include "platform/dao/CTransaction.h"
#include "platform/dao/Database.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/desktop.h"
#include "settings_ui/CBoardPage.h"
#include "settings_ui/CCookiePage.h"
#include "settings_ui/CGeneralPage.h"
#include "settings_ui/COrderPage.h"
#include "settings_ui/CPageFrame.h"
#include "settings_ui/CSearchPage.h"
#include "settings_ui/CTransferPage.h"
#include "settings_ui/CVisitPage.h"
#include "settings_ui/CWebSearchPage.h"
#include "store/Recovery.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize SmallestSize(540, 440); // pixels at 100 %, at the beginning; addresses and folders are long

} // namespace

frmProperty::frmProperty(Application& App, QWidget* Owner)
    : QDialog(Owner)
    , m_app(App)
{
    setObjectName(u"frmProperty"_s);
    setModal(true);
    if (Owner)
        setWindowIcon(Owner->windowIcon());
    BuildTabs();
}

frmProperty::~frmProperty() = default;

// Building

void frmProperty::BuildTabs()
{
    m_tabStrip = new QTabWidget(this);
    m_tabStrip->setObjectName(u"TabStrip"_s);
    const auto onKey = [this](QKeyCombination Key, int Step) {
        connect(new QShortcut(QKeySequence(Key), this), &QShortcut::activated, this, [this, Step] { StepTab(Step); });
    };
    onKey(Qt::CTRL | Qt::Key_Tab, 1);
    onKey(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
    onKey(Qt::CTRL | Qt::Key_PageDown, 1);
    onKey(Qt::CTRL | Qt::Key_PageUp, -1);
}

/// After the pages, so that Tab goes from their last field to OK.
void frmProperty::BuildButtons()
{
    auto* ok = new QPushButton(u"OK"_s, this);
    ok->setObjectName(u"cmdOK"_s);
    ok->setDefault(true);
    auto* cancel = new QPushButton(u"キャンセル"_s, this);
    cancel->setObjectName(u"cmdCancel"_s);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* all = new QVBoxLayout(this);
    all->addWidget(m_tabStrip, 1);
    all->addLayout(buttons);
    connect(ok, &QPushButton::clicked, this, &frmProperty::OnOK);
    connect(cancel, &QPushButton::clicked, this, &frmProperty::reject);
}

void frmProperty::AddPage(int Number, const QString& Caption, CPropertyPage* Page)
{
    auto* frame = new CPageFrame(Page, m_tabStrip);
    frame->setObjectName(u"fraTabStrip%1"_s.arg(Number));
    m_tabStrip->addTab(frame, Caption);
    m_pages.push_back(Page);
}

void frmProperty::AddOptionPages()
{
    auto* general = new CGeneralPage(m_app, this);
    auto* transfer = new CTransferPage(m_app, this);
    auto* search = new CSearchPage(m_app, this);
    auto* webSearch = new CWebSearchPage(m_app, this);
    AddPage(3, u"全般"_s, general);
    AddPage(8, u"送受信"_s, transfer);
    AddPage(4, u"検索"_s, search);
    AddPage(5, u"WebSearch"_s, webSearch);
    m_settingsPages = {general, search, transfer};
    m_lastPages = {webSearch};
}

void frmProperty::AddBoardPages(CBBSProperty& Board)
{
    auto* board = new CBoardPage(m_app, Board, this);
    auto* cookie = new CCookiePage(m_app, Board, this);
    AddPage(1, u"全般"_s, board);
    AddPage(2, u"クッキーの情報"_s, cookie);
    m_lastPages = {board, cookie};

    CVisitPage* visit = AddSharedPages(Board);
    connect(board, &CBoardPage::VisitToggled, visit,
            [visit, id = Board.ID()](bool IsOn) { visit->SetVisit(id, IsOn); });
    connect(visit, &CVisitPage::VisitToggled, board, [board, id = Board.ID()](qint32 BBS_ID, bool IsOn) {
        if (BBS_ID == id)
            board->SetVisit(IsOn);
    });
}

CVisitPage* frmProperty::AddSharedPages(const CBBSProperty& InView)
{
    auto* visit = new CVisitPage(m_app, this);
    auto* order = new COrderPage(m_app, InView, this);
    AddPage(6, u"巡回受信"_s, visit);
    AddPage(7, u"表示順"_s, order);
    m_databasePages = {visit, order};
    connect(order, &COrderPage::BoardAdded, visit, &CVisitPage::AddBoard);
    connect(order, &COrderPage::BoardRemoved, visit, &CVisitPage::RemoveBoard);
    return visit;
}

// Showing

bool frmProperty::ShowOption(CBBSProperty& Board, qint32& InitialTab)
{
    setWindowTitle(u"設定 - "_s + m_app.AppTitle());
    AddOptionPages();
    AddSharedPages(Board);
    return Show(InitialTab);
}

bool frmProperty::ShowProperty(CBBSProperty& Board, qint32& InitialTab)
{
    setWindowTitle(Board.Name + u"のプロパティ - "_s + m_app.AppTitle());
    AddBoardPages(Board);
    return Show(InitialTab);
}

bool frmProperty::Show(qint32& InitialTab)
{
    BuildButtons();
    if (!LoadPages())
        return false;
    m_tabStrip->setCurrentIndex(qBound(0, InitialTab - 1, m_tabStrip->count() - 1));
    m_current = m_tabStrip->currentIndex();
    connect(m_tabStrip, &QTabWidget::currentChanged, this, &frmProperty::OnTabChanged);
    WatchFields();
    FitToScreen();
    FocusPage();
    const bool isOk = exec() == QDialog::Accepted;
    InitialTab = m_current + 1;
    return isOk;
}

bool frmProperty::LoadPages()
{
    try {
        for (CPropertyPage* page : m_pages)
            page->Load();
        return true;
    } catch (const dao::Error& error) {
        return Tell(error);
    }
}

/// Large enough for every page; on a small screen the pages scroll.
void frmProperty::FitToScreen()
{
    ensurePolished();
    const QRect wanted = mdlGeometry::Centred(sizeHint().expandedTo(SmallestSize));
    resize(mdlGeometry::OnScreen(wanted).size());
}

void frmProperty::WatchFields()
{
    for (QLineEdit* field : findChildren<QLineEdit*>())
        field->installEventFilter(this);
}

/// Enter and Esc that belong to an input method close no dialog.
bool frmProperty::eventFilter(QObject* Watched, QEvent* Event)
{
    m_composing.Watch(*Event);
    if (m_composing.IsOn() && Event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(Event)->key();
        return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
    }
    return QDialog::eventFilter(Watched, Event);
}

// Tabs

/// Goes into the page that comes up, wherever the focus was: the user's hands are on the keyboard.
void frmProperty::StepTab(int Step)
{
    const int before = m_current;
    const int count = m_tabStrip->count();
    m_tabStrip->setCurrentIndex((m_current + Step + count) % count);
    if (m_current != before)
        FocusPage();
}

/// The page that is being left is checked while it is still to be seen, and stays when the check fails.
void frmProperty::OnTabChanged(int Index)
{
    if (m_isChanging)
        return;
    const QScopedValueRollback changing(m_isChanging, true);
    m_tabStrip->setCurrentIndex(m_current);
    if (!m_pages[std::size_t(m_current)]->Validate())
        return;
    m_current = Index;
    m_tabStrip->setCurrentIndex(Index);
}

void frmProperty::FocusPage()
{
    const QWidget* page = m_pages[std::size_t(m_current)];
    for (QWidget* next = page->nextInFocusChain(); next != page; next = next->nextInFocusChain()) {
        const bool takesFocus = next->isEnabledTo(this) && (next->focusPolicy() & Qt::TabFocus) && !next->focusProxy();
        if (takesFocus && page->isAncestorOf(next)) {
            next->clearFocus();                 // where the tabs have put it themselves, it would not come in again
            next->setFocus(Qt::TabFocusReason); // as Tab does it: its text is selected
            setAttribute(Qt::WA_KeyboardFocusChange); // and a rim drawn
            return;
        }
    }
}

// Closing

void frmProperty::OnOK()
{
    if (m_pages[std::size_t(m_current)]->Validate() && ApplyAll())
        accept();
}

/// False leaves everything as it was before.
bool frmProperty::ApplyAll()
{
    const Settings before = m_app.Option();
    try {
        for (CPropertyPage* page : m_settingsPages)
            page->Apply();
        if (mdlSettings::CheckFolders(m_app)) {
            ApplyToDatabase();
            for (CPropertyPage* page : m_lastPages)
                page->Apply();
            return true;
        }
    } catch (const dao::Error& error) {
        Tell(error);
    }
    m_app.Option() = before;
    return false;
}

void frmProperty::ApplyToDatabase()
{
    if (!m_app.LogDB())
        return;
    // The options of a file that cannot be written can be changed all the same.
    const auto isChanged = [](const CPropertyPage* Page) { return Page->HasChanges(); };
    const bool isToWrite =
        !m_app.LogDB()->IsReadOnly() || std::any_of(m_databasePages.begin(), m_databasePages.end(), isChanged);
    if (!isToWrite)
        return;
    dao::CTransaction transaction(*m_app.LogDB());
    for (CPropertyPage* page : m_databasePages)
        page->Apply();
    transaction.Keep();
}

bool frmProperty::Tell(const dao::Error& Refusal)
{
    m_app.Shell.MessageBox(mdlStore::RefusalText(Refusal), m_app.AppTitle(), Desktop::Icon::Information);
    return false;
}
