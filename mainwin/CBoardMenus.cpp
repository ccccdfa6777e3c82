// mainwin/CBoardMenus.cpp
// The four menus of boards, with the counts of unread messages behind the names, and the boards' pictures.

#include "mainwin/CBoardMenus.h"

#include "app/Application.h"
#include "board/CBBSProperty.h"
#include "mainwin/CIconSet.h"
#include "mainwin/CMenuSet.h"
#include "platform/dao/Database.h"

#include <QAction>
#include <QMenu>

using namespace Qt::StringLiterals;
using mdlBoardMenu::Entry;
using mdlCommands::Command;
using mdlCommands::Rule;

namespace
{

QString DropDownName(qint32 BBS_ID) { return u'#' + QString::number(BBS_ID).rightJustified(3, u'0'); }

} // namespace

CBoardMenus::CBoardMenus(Application& App, CMenuSet& Menus, QMenu& DropDown, QObject* Parent)
    : QObject(Parent)
    , m_app(App)
    , m_menus(Menus)
    , m_dropDown(DropDown)
    , m_defaultIcon(CIconSet::Picture(u"Board"_s))
{}

bool CBoardMenus::Rebuild(const std::function<int(qint32)>& UnreadCount)
{
    const std::vector<mdlBoardMenu::Board> boards = ReadBoards();
    const std::vector<Entry> entries = mdlBoardMenu::Plan(boards);
    FillDropDown(entries);
    FillArray(u"mnuBBSMoveSub"_s, entries, Command::SelectBoard);
    FillArray(u"mnuTrayBBSSub"_s, entries, Command::TraySelectBoard);
    FillArray(u"mnuTrayNewSub"_s, entries, Command::NewPost);
    CollectEntries(entries);
    for (const auto& board : boards)
        SetCount(board.BBS_ID, UnreadCount(board.BBS_ID));
    return !boards.empty();
}

std::vector<mdlBoardMenu::Board> CBoardMenus::ReadBoards()
{
    std::vector<mdlBoardMenu::Board> boards;
    QHash<qint32, QIcon> icons;
    const auto rows =
        m_app.LogDB()->OpenRecordset(u"SELECT BBS_ID  FROM BBS WHERE ListOrder >= 0 ORDER BY ListOrder"_s);
    for (; !rows->Eof(); rows->MoveNext()) {
        CBBSProperty board(m_app);
        if (!board.GetProperty(rows->Long(0)))
            continue;
        boards.push_back({board.ID(), board.ListOrder, board.Name});
        icons.insert(board.ID(), CIconSet::FromFile(board.GetIconFileName()));
    }
    m_icons = icons;
    return boards;
}

void CBoardMenus::FillArray(const QString& Name, const std::vector<Entry>& Entries, Command Handler)
{
    std::vector<CMenuSet::Entry> array;
    for (const Entry& entry : Entries) {
        const int index = int(array.size()) + 1;
        array.push_back({index, entry.Caption, Handler, entry.BBS_ID, entry.IsSeparator(), false, Rule::Open});
    }
    m_menus.SetArray(Name, array);
}

void CBoardMenus::FillDropDown(const std::vector<Entry>& Entries)
{
    for (QAction* old : m_dropDown.actions()) {
        m_dropDown.removeAction(old);
        old->deleteLater(); // it may be the one that was chosen just now
    }
    for (const Entry& entry : Entries) {
        QAction* action = m_dropDown.addAction(entry.IsSeparator() ? QString() : entry.Caption);
        action->setSeparator(entry.IsSeparator());
        action->setData(entry.IsSeparator() ? QVariant(u"[区切り線]"_s) : QVariant(entry.Caption));
        if (entry.IsSeparator())
            continue;
        action->setObjectName(DropDownName(entry.BBS_ID));
        action->setIcon(Icon(entry.BBS_ID));
        connect(action, &QAction::triggered, this,
                [this, id = entry.BBS_ID] { Q_EMIT Triggered(Command::SelectBoard, id); });
    }
}

void CBoardMenus::CollectEntries(const std::vector<Entry>& Entries)
{
    m_entries.clear();
    const QList<QAction*> dropDown = m_dropDown.actions();
    for (int place = 0; place < int(Entries.size()); ++place) {
        const Entry& entry = Entries[std::size_t(place)];
        if (entry.IsSeparator())
            continue;
        const QString index = QString::number(place + 1);
        const QList<QAction*> moving = {m_menus.Action(u"mnuBBSMoveSub"_s + index),
                                        m_menus.Action(u"mnuTrayBBSSub"_s + index)};
        for (QAction* action : moving) {
            action->setData(entry.BBS_ID);
            action->setIcon(Icon(entry.BBS_ID));
        }
        m_entries.insert(entry.BBS_ID, {entry.Caption, moving + QList<QAction*>{dropDown[place]}});
    }
}

void CBoardMenus::SetCount(qint32 BBS_ID, int UnreadCount)
{
    const auto entry = m_entries.constFind(BBS_ID);
    if (entry == m_entries.constEnd())
        return;
    for (QAction* action : entry->Countable)
        action->setText(mdlBoardMenu::WithCount(entry->Caption, UnreadCount));
}

QIcon CBoardMenus::Icon(qint32 BBS_ID) const
{
    const QIcon own = m_icons.value(BBS_ID);
    return own.isNull() ? m_defaultIcon : own;
}
