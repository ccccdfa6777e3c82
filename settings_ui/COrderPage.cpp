// settings_ui/COrderPage.cpp
// The page "表示順": which boards are shown, in which order, and where lines divide them.

#include "settings_ui/COrderPage.h"

#include "app/Application.h"
#include "board/CBBSProperty.h"
#include "platform/dao/Database.h"
#include "platform/desktop/CFocusRim.h"
#include "settings_ui/PageParts.h"
#include "settings_ui/mdlBoardItems.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <memory>

using namespace Qt::StringLiterals;
using mdlPage::Named;

namespace
{

/// The row of the selected item; -1 when there is none. A list that the focus comes to has a current item at once, but
/// selects it only when the user does something.
int SelectedRow(const QListWidget& List)
{
    const auto selected = List.selectedItems();
    return selected.isEmpty() ? -1 : List.row(selected.first());
}

void AddSeparator(QListWidget& List)
{
    mdlBoardItems::Insert(List, List.count(), mdlBoardItems::Separator, u"[区切り線]"_s);
}

/// A button that goes while it has the focus leaves it to its list, not to whatever comes next.
void Enable(QPushButton& Button, bool IsOn, QWidget& List)
{
    if (!IsOn && Button.hasFocus())
        List.setFocus();
    Button.setEnabled(IsOn);
}

} // namespace

COrderPage::COrderPage(Application& App, const CBBSProperty& InView, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
    , m_inView(InView)
{
    BuildLists();
    BuildButtons();
    BuildLayout();
    UpdateOrderButtons();
}

void COrderPage::BuildLists()
{
    m_lstOrder = Named(new QListWidget(this), u"lstOrder"_s);
    m_lstOrder->setAccessibleName(u"表示される掲示板"_s); // no screen reader hears of its label
    m_lstAll = Named(new QListWidget(this), u"lstAll"_s);
    m_lstAll->setAccessibleName(u"登録されている掲示板"_s);
    for (QListWidget* list : {m_lstOrder, m_lstAll}) {
        new CFocusRim(*list);
        list->installEventFilter(this);
        connect(list, &QListWidget::itemSelectionChanged, this, &COrderPage::UpdateOrderButtons);
    }
    connect(m_lstAll, &QListWidget::itemDoubleClicked, this, &COrderPage::Add);
    connect(m_lstOrder, &QListWidget::itemDoubleClicked, this, &COrderPage::Delete);
}

void COrderPage::BuildButtons()
{
    m_cmdAdd = Named(new QPushButton(u"← 追加(&A)"_s, this), u"cmdAdd"_s);
    m_cmdDelete = Named(new QPushButton(u"削除(&R) →"_s, this), u"cmdDelete"_s);
    m_cmdUp = Named(new QPushButton(u"↑ 上へ(&U)"_s, this), u"cmdUp"_s);
    m_cmdDown = Named(new QPushButton(u"↓ 下へ(&D)"_s, this), u"cmdDown"_s);
    connect(m_cmdAdd, &QPushButton::clicked, this, &COrderPage::Add);
    connect(m_cmdDelete, &QPushButton::clicked, this, &COrderPage::Delete);
    connect(m_cmdUp, &QPushButton::clicked, this, [this] { MoveSelected(-1); });
    connect(m_cmdDown, &QPushButton::clicked, this, [this] { MoveSelected(1); });
}

void COrderPage::BuildLayout()
{
    auto* order = new QLabel(u"表示される掲示板(&V):"_s, this);
    order->setBuddy(m_lstOrder);
    auto* all = new QLabel(u"登録されている掲示板(&T):"_s, this);
    all->setBuddy(m_lstAll);
    auto* buttons = new QVBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_cmdAdd);
    buttons->addWidget(m_cmdDelete);
    buttons->addSpacing(m_cmdAdd->sizeHint().height());
    buttons->addWidget(m_cmdUp);
    buttons->addWidget(m_cmdDown);
    buttons->addStretch(1);
    auto* grid = new QGridLayout(this);
    grid->addWidget(order, 0, 0);
    grid->addWidget(m_lstOrder, 1, 0);
    grid->addLayout(buttons, 1, 1);
    grid->addWidget(all, 0, 2);
    grid->addWidget(m_lstAll, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);
    QWidget* const tabs[] = {m_lstOrder, m_lstAll, m_cmdAdd, m_cmdDelete, m_cmdUp, m_cmdDown};
    for (std::size_t place = 1; place < std::size(tabs); ++place)
        setTabOrder(tabs[place - 1], tabs[place]);
}

void COrderPage::Load()
{
    m_lstOrder->clear();
    m_lstAll->clear();
    if (m_app.LogDB()) {
        FillOrder();
        FillAll();
    }
    m_loaded = Places();
    UpdateOrderButtons();
}

/// What stands at each place: the number of a board, or Separator.
QList<qint32> COrderPage::Places() const
{
    QList<qint32> places;
    for (int place = 0; place < m_lstOrder->count(); ++place)
        places << mdlBoardItems::NumberOf(*m_lstOrder->item(place));
    return places;
}

void COrderPage::FillOrder()
{
    const auto rows = m_app.LogDB()->OpenRecordset(
        u"SELECT BBS_ID, BBS_Name, ListOrder  FROM BBS WHERE ListOrder >= 0 ORDER BY ListOrder"_s);
    qint64 place = 0; // the item count, if no run of separators were cut short
    for (; !rows->Eof(); rows->MoveNext()) {
        const qint64 gap = std::max<qint64>(0, rows->Long(2) - place);
        for (qint64 line = 0; line < std::min<qint64>(gap, MaxSeparators); ++line)
            AddSeparator(*m_lstOrder);
        mdlBoardItems::Insert(*m_lstOrder, m_lstOrder->count(), rows->Long(0), rows->Text(1));
        place += gap + 1;
    }
}

void COrderPage::FillAll()
{
    const auto rows =
        m_app.LogDB()->OpenRecordset(u"SELECT BBS_ID, BBS_Name  FROM BBS WHERE ListOrder < 0 ORDER BY BBS_ID"_s);
    for (; !rows->Eof(); rows->MoveNext())
        mdlBoardItems::Insert(*m_lstAll, m_lstAll->count(), rows->Long(0), rows->Text(1));
    AddSeparator(*m_lstAll);
}

bool COrderPage::Validate()
{
    if (!m_app.LogDB())
        return true;
    if (mdlBoardItems::Numbers(*m_lstOrder).isEmpty())
        return mdlPage::Refuse(m_app, m_lstAll, u"掲示板が選択されていません。"_s);
    const int hidden = mdlBoardItems::RowOf(*m_lstAll, m_inView.ID()); // in neither list: nothing that he could choose
    if (hidden < 0)
        return true;
    m_lstAll->setCurrentRow(hidden);
    return mdlPage::Refuse(m_app, m_lstAll, u"現在選択されている["_s + m_inView.Name + u"]は必ず選択してください。"_s);
}

void COrderPage::Apply()
{
    if (!m_app.LogDB())
        return;
    m_app.LogDB()->Execute(u"UPDATE BBS   SET ListOrder = -1"_s);
    const QList<qint32> places = Places(); // a separator's statement finds no row, so that its place stays free
    for (qsizetype place = 0; place < places.size(); ++place)
        m_app.LogDB()->Execute(u"UPDATE BBS   SET ListOrder = "_s + QString::number(place) + u" WHERE BBS_ID = "_s +
                               QString::number(places[place]));
    if (const QString hidden = mdlBoardItems::Numbers(*m_lstAll); !hidden.isEmpty())
        m_app.LogDB()->Execute(u"UPDATE BBS   SET VisitLoad = False WHERE BBS_ID IN ("_s + hidden + u')');
}

void COrderPage::Add()
{
    const int from = SelectedRow(*m_lstAll);
    if (from < 0)
        return;
    const QListWidgetItem& chosen = *m_lstAll->item(from);
    const qint32 number = mdlBoardItems::NumberOf(chosen);
    const QString name = chosen.text();
    const int after = SelectedRow(*m_lstOrder);
    const int row = after < 0 ? m_lstOrder->count() : after + 1;
    mdlBoardItems::Insert(*m_lstOrder, row, number, name);
    m_lstOrder->setCurrentRow(row);
    if (number != mdlBoardItems::Separator) {
        delete m_lstAll->takeItem(from);
        Q_EMIT BoardAdded(number, name);
    }
    UpdateOrderButtons();
}

void COrderPage::Delete()
{
    const int row = SelectedRow(*m_lstOrder);
    if (row < 0)
        return;
    const std::unique_ptr<QListWidgetItem> item(m_lstOrder->takeItem(row));
    const qint32 number = mdlBoardItems::NumberOf(*item);
    if (number != mdlBoardItems::Separator) {
        mdlBoardItems::InsertByNumber(*m_lstAll, number, item->text());
        Q_EMIT BoardRemoved(number);
    }
    m_lstOrder->setCurrentRow(std::min(row, m_lstOrder->count() - 1));
    UpdateOrderButtons();
}

void COrderPage::MoveSelected(int Rows)
{
    const int row = SelectedRow(*m_lstOrder);
    if (row < 0 || row + Rows < 0 || row + Rows >= m_lstOrder->count())
        return;
    m_lstOrder->insertItem(row + Rows, m_lstOrder->takeItem(row));
    m_lstOrder->setCurrentRow(row + Rows);
    UpdateOrderButtons();
}

void COrderPage::UpdateOrderButtons()
{
    const int row = SelectedRow(*m_lstOrder);
    Enable(*m_cmdAdd, SelectedRow(*m_lstAll) >= 0, *m_lstAll);
    Enable(*m_cmdDelete, row >= 0, *m_lstOrder);
    Enable(*m_cmdUp, row > 0, *m_lstOrder);
    Enable(*m_cmdDown, row >= 0 && row < m_lstOrder->count() - 1, *m_lstOrder);
}

bool COrderPage::eventFilter(QObject* Watched, QEvent* Event)
{
    // Often the separator is the only item: there is no other to go to and back, so that it would be selected.
    if (Watched == m_lstAll && Event->type() == QEvent::FocusIn && SelectedRow(*m_lstAll) < 0)
        m_lstAll->setCurrentRow(std::max(0, m_lstAll->currentRow()));
    if (Watched == m_lstOrder && Event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(Event)->matches(QKeySequence::Delete)) {
        m_cmdDelete->click();
        return true;
    }
    return CPropertyPage::eventFilter(Watched, Event);
}
