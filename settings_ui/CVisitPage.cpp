// settings_ui/CVisitPage.cpp
// The page "巡回受信": which of the shown boards are received in one go.

#include "settings_ui/CVisitPage.h"

#include "app/Application.h"
#include "platform/dao/Database.h"
#include "platform/desktop/CFocusRim.h"
#include "settings_ui/CCheckDelegate.h"
#include "settings_ui/PageParts.h"
#include "settings_ui/mdlBoardItems.h"

#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

Qt::CheckState StateOf(bool IsOn) { return IsOn ? Qt::Checked : Qt::Unchecked; }

bool IsChecked(const QListWidgetItem& Item) { return Item.checkState() == Qt::Checked; }

} // namespace

CVisitPage::CVisitPage(Application& App, QWidget* Parent)
    : CPropertyPage(Parent)
    , m_app(App)
    , m_lstVisitLoad(mdlPage::Named(new QListWidget(this), u"lstVisitLoad"_s))
{
    m_lstVisitLoad->setAccessibleName(u"巡回受信をする掲示板"_s); // no screen reader hears of its label
    m_lstVisitLoad->setItemDelegate(new CCheckDelegate(m_lstVisitLoad));
    new CFocusRim(*m_lstVisitLoad);
    auto* label = new QLabel(u"巡回受信をする掲示板(&V):"_s, this);
    label->setBuddy(m_lstVisitLoad);
    auto* all = new QVBoxLayout(this);
    all->addWidget(label);
    all->addWidget(m_lstVisitLoad, 1);
    all->addWidget(mdlPage::LongNote(u"表示対象外の掲示板は巡回受信の対象として指定できません。"_s, this));
    connect(m_lstVisitLoad, &QListWidget::itemChanged, this, [this](QListWidgetItem* Item) {
        m_isTurned = true;
        Q_EMIT VisitToggled(mdlBoardItems::NumberOf(*Item), IsChecked(*Item));
    });
    connect(m_lstVisitLoad, &QListWidget::itemPressed, this, [this] { m_isTurned = false; });
    connect(m_lstVisitLoad, &QListWidget::itemClicked, this, &CVisitPage::ToggleByName);
}

void CVisitPage::Load()
{
    const QSignalBlocker quiet(m_lstVisitLoad);
    m_lstVisitLoad->clear();
    if (!m_app.LogDB())
        return;
    const auto rows = m_app.LogDB()->OpenRecordset(
        u"SELECT BBS_ID, BBS_Name, VisitLoad  FROM BBS WHERE ListOrder >= 0 ORDER BY BBS_ID"_s);
    for (; !rows->Eof(); rows->MoveNext())
        mdlBoardItems::Insert(*m_lstVisitLoad, m_lstVisitLoad->count(), rows->Long(0), rows->Text(1))
            ->setCheckState(StateOf(rows->Boolean(2)));
    m_loaded = Chosen();
}

/// The numbers of the boards that take part, joined by ",".
QString CVisitPage::Chosen() const
{
    QStringList numbers;
    for (int row = 0; row < m_lstVisitLoad->count(); ++row) {
        if (const QListWidgetItem& item = *m_lstVisitLoad->item(row); IsChecked(item))
            numbers << QString::number(mdlBoardItems::NumberOf(item));
    }
    return numbers.join(u',');
}

void CVisitPage::Apply()
{
    if (!m_app.LogDB())
        return;
    m_app.LogDB()->Execute(u"UPDATE BBS   SET VisitLoad = False"_s);
    if (const QString chosen = Chosen(); !chosen.isEmpty())
        m_app.LogDB()->Execute(u"UPDATE BBS   SET VisitLoad = True WHERE BBS_ID IN ("_s + chosen + u')');
}

/// The flag in the database. A database that does not answer now is told of by OK.
bool CVisitPage::StoredVisit(qint32 BBS_ID) const
{
    try {
        const auto row =
            m_app.LogDB()->OpenRecordset(u"SELECT VisitLoad  FROM BBS WHERE BBS_ID = "_s + QString::number(BBS_ID));
        return !row->Eof() && row->Boolean(0);
    } catch (const dao::Error&) {
        return false;
    }
}

void CVisitPage::AddBoard(qint32 BBS_ID, const QString& Name)
{
    if (mdlBoardItems::RowOf(*m_lstVisitLoad, BBS_ID) >= 0)
        return;
    const bool isOn = StoredVisit(BBS_ID);
    {
        const QSignalBlocker quiet(m_lstVisitLoad);
        mdlBoardItems::InsertByNumber(*m_lstVisitLoad, BBS_ID, Name)->setCheckState(StateOf(isOn));
    }
    Q_EMIT VisitToggled(BBS_ID, isOn);
}

void CVisitPage::RemoveBoard(qint32 BBS_ID)
{
    if (const int row = mdlBoardItems::RowOf(*m_lstVisitLoad, BBS_ID); row >= 0)
        delete m_lstVisitLoad->takeItem(row);
}

void CVisitPage::SetVisit(qint32 BBS_ID, bool IsOn)
{
    const QSignalBlocker quiet(m_lstVisitLoad);
    if (const int row = mdlBoardItems::RowOf(*m_lstVisitLoad, BBS_ID); row >= 0)
        m_lstVisitLoad->item(row)->setCheckState(StateOf(IsOn));
}

/// A click into the box, whose pressing is not told, has turned it over already; one on the name does so here.
void CVisitPage::ToggleByName(QListWidgetItem* Item)
{
    if (!m_isTurned)
        Item->setCheckState(StateOf(!IsChecked(*Item)));
    m_isTurned = false;
}
