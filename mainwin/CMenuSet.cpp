// mainwin/CMenuSet.cpp
// The menus of the main window, built from their tables: menu bar, pop-ups, arrays made at run time.

#include "mainwin/CMenuSet.h"

#include "mainwin/CMenuBar.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>

using namespace Qt::StringLiterals;
using mdlCommands::Kind;
using mdlCommands::MenuItem;
using mdlCommands::Rule;

namespace
{

// What follows the tab is drawn at the right edge of the menu, where the shortcuts are. A separator with a text would
// be drawn as the heading of a section.
QString FullCaption(const MenuItem& Item)
{
    if (Item.Type == Kind::Separator)
        return {};
    return Item.KeyText.isEmpty() ? Item.Caption.toString() : Item.Caption.toString() + u'\t' + Item.KeyText.toString();
}

QString FullName(const MenuItem& Item)
{
    switch (Item.Type) {
    case Kind::Array:
        return Item.Name.toString() + u'0';
    case Kind::Member:
        return Item.Name.toString() + QString::number(Item.Index);
    default:
        return Item.Name.toString();
    }
}

} // namespace

CMenuSet::CMenuSet(QMainWindow& Window)
    : QObject(&Window)
    , m_window(Window)
    , m_bar(new CMenuBar(&Window))
{
    Window.setMenuBar(m_bar);
    Build(mdlCommands::MenuBar(), true);
    Build(mdlCommands::PopupMenus(), false);
}

QAction* CMenuSet::Action(const QString& Name) const { return m_actions.value(Name); }

QMenu* CMenuSet::Menu(const QString& Name) const { return m_menus.value(Name); }

void CMenuSet::Build(std::span<const MenuItem> Table, bool IsMenuBar)
{
    std::vector<QMenu*> open; // the menu that takes the entries of each level
    for (const MenuItem& item : Table) {
        open.resize(std::size_t(item.Level));
        QMenu* parent = open.empty() ? nullptr : open.back();
        if (item.Type == Kind::Menu)
            open.push_back(AddMenu(item, parent, IsMenuBar));
        else
            AddItem(item, *parent);
    }
}

QMenu* CMenuSet::AddMenu(const MenuItem& Item, QMenu* Parent, bool IsMenuBar)
{
    auto* menu = new QMenu(FullCaption(Item), Parent ? static_cast<QWidget*>(Parent) : &m_window);
    menu->setObjectName(Item.Name);
    menu->setSeparatorsCollapsible(false); // a free place in the order of the boards shows as a line each
    m_menus.insert(menu->objectName(), menu);
    Remember(*menu->menuAction(), menu->objectName(), {Item.When, Item.Argument});
    if (Parent)
        Parent->addMenu(menu);
    else if (IsMenuBar)
        m_bar->addMenu(menu);
    return menu;
}

void CMenuSet::AddItem(const MenuItem& Item, QMenu& Parent)
{
    auto* action = new QAction(FullCaption(Item), &Parent);
    Parent.addAction(action);
    Remember(*action, FullName(Item), {Item.When, Item.Argument});
    action->setSeparator(Item.Type == Kind::Separator);
    if (Item.Type == Kind::Array) {
        action->setVisible(false);
        m_arrayMenus.insert(Item.Name.toString(), &Parent);
    }
    AddShortcut(*action, Item.Shortcut);
    Connect(*action, Item.Handler, Item.Argument);
}

void CMenuSet::AddShortcut(QAction& Action, QStringView Shortcut)
{
    if (Shortcut.isEmpty())
        return;
    Action.setShortcut(QKeySequence(Shortcut.toString(), QKeySequence::PortableText));
    Action.setAutoRepeat(false);
    m_window.addAction(&Action);
}

void CMenuSet::Connect(QAction& Action, mdlCommands::Command Handler, int Argument)
{
    connect(&Action, &QAction::triggered, this, [this, Handler, Argument] {
        m_bar->Leave(); // it may have the keyboard when a shortcut comes
        Q_EMIT Triggered(Handler, Argument);
    });
}

void CMenuSet::Remember(QAction& Action, const QString& Name, Known Rule)
{
    Action.setObjectName(Name);
    m_actions.insert(Name, &Action);
    m_rules.insert(&Action, Rule);
}

QAction* CMenuSet::MakeEntry(const QString& Array, const Entry& Source, QMenu& Parent)
{
    auto* action = new QAction(Source.IsSeparator ? QString() : Source.Caption, &Parent);
    action->setSeparator(Source.IsSeparator);
    action->setCheckable(Source.IsCheckable);
    Remember(*action, Array + QString::number(Source.Index), {Source.When, Source.Argument});
    Connect(*action, Source.Handler, Source.Argument);
    return action;
}

void CMenuSet::SetArray(const QString& Name, const std::vector<Entry>& Entries)
{
    QMenu* menu = m_arrayMenus.value(Name);
    if (!menu)
        return;
    QList<QAction*>& made = m_arrays[Name];
    for (QAction* old : std::as_const(made)) {
        m_actions.remove(old->objectName());
        m_rules.remove(old);
        menu->removeAction(old);
        old->deleteLater(); // the entry that was chosen may be the one that asked for new entries
    }
    made.clear();
    const QList<QAction*> all = menu->actions();
    QAction* behind = all.value(all.indexOf(m_actions.value(Name + u'0')) + 1);
    for (const Entry& entry : Entries) {
        made.append(MakeEntry(Name, entry, *menu));
        menu->insertAction(behind, made.back());
    }
}

void CMenuSet::TakeText(const QString& Name, const QString& Twin) { Action(Name)->setText(Action(Twin)->text()); }

void CMenuSet::UpdateEnabled(const mdlEnabling::WindowFacts& Facts)
{
    for (auto rule = m_rules.cbegin(); rule != m_rules.cend(); ++rule)
        rule.key()->setEnabled(mdlEnabling::Holds(rule->When, Facts, rule->Argument));
    Menu(u"mnuMsg"_s)->menuAction()->setVisible(!Facts.IsRaw);
}
