// mainwin/CToolbar.cpp
// The toolbar of the main window: its buttons from their table, the drop-down of boards and the find box.

#include "mainwin/CToolbar.h"

#include "mainwin/CIconSet.h"

#include <QAction>
#include <QComboBox>
#include <QCompleter>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

using namespace Qt::StringLiterals;
using mdlCommands::ToolButton;

namespace
{

constexpr int PictureSide = 20;       // pixels at 100 %
constexpr int FindBoxCharacters = 18; // width of the find box in digits

QString NameOf(const ToolButton& Source) { return u"Toolbar"_s + Source.Key.toString(); }

} // namespace

CToolbar::CToolbar(QWidget* Parent)
    : QToolBar(Parent)
{
    setObjectName(u"Toolbar"_s);
    setWindowTitle(u"ツールバー"_s);
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu); // its only entry would hide the bar with no way back
    setIconSize({PictureSide, PictureSide});
    for (const ToolButton& button : mdlCommands::Toolbar()) {
        if (button.Key.isEmpty())
            addSeparator();
        else if (button.Key == u"FindText")
            AddFindBox(button);
        else
            AddButton(button);
    }
    AddBoardMenu();
    // The style's own arrow is black on any palette.
    if (auto* more = findChild<QToolButton*>(u"qt_toolbar_ext_button"_s)) {
        more->setIcon(CIconSet::Picture(u"More"_s));
        more->setAccessibleName(u"隠れているボタン"_s);
        more->setToolTip(more->accessibleName());
    }
}

QAction* CToolbar::Button(QStringView Key) const { return m_buttons.value(Key); }

void CToolbar::AddButton(const ToolButton& Source)
{
    auto* action = new QAction(CIconSet::Picture(Source.Key.toString()), Source.Caption.toString(), this);
    action->setObjectName(NameOf(Source));
    action->setToolTip(Source.ToolTip.toString());
    addAction(action);
    widgetForAction(action)->setObjectName(NameOf(Source));
    m_buttons.insert(Source.Key, action);
    connect(action, &QAction::triggered, this, [this, &Source] { Q_EMIT Triggered(Source.Handler, Source.Argument); });
}

void CToolbar::AddFindBox(const ToolButton& Source)
{
    auto* place = new QWidget(this);
    place->setObjectName(NameOf(Source));
    m_findBox = new QComboBox(place);
    m_findBox->setObjectName(u"cmbFindText"_s);
    m_findBox->setToolTip(Source.ToolTip.toString());
    m_findBox->setAccessibleName(Source.Caption.toString());
    m_findBox->setEditable(true);
    m_findBox->setInsertPolicy(QComboBox::NoInsert);
    m_findBox->setCompleter(nullptr); // the history completes on its own
    m_findBox->lineEdit()->setPlaceholderText(Source.Caption.toString());
    m_findBox->setFixedWidth(m_findBox->fontMetrics().horizontalAdvance(u'0') * FindBoxCharacters +
                             m_findBox->sizeHint().height());
    ColorPlaceholder();
    auto* layout = new QHBoxLayout(place);
    layout->setContentsMargins(2, 0, 2, 0);
    layout->addWidget(m_findBox);
    QAction* action = addWidget(place);
    action->setText(Source.Caption.toString());
    action->setObjectName(NameOf(Source));
    m_buttons.insert(Source.Key, action);
}

// Dark themes that know nothing of placeholders leave them black.
void CToolbar::ColorPlaceholder()
{
    QColor faint = palette().color(QPalette::Text);
    faint.setAlphaF(0.55F);
    QPalette colors;
    colors.setColor(QPalette::PlaceholderText, faint);
    m_findBox->lineEdit()->setPalette(colors);
}

void CToolbar::changeEvent(QEvent* Event)
{
    QToolBar::changeEvent(Event);
    if (Event->type() == QEvent::PaletteChange && m_findBox)
        ColorPlaceholder();
}

void CToolbar::AddBoardMenu()
{
    QAction* button = Button(u"BBSList");
    m_boardMenu = new QMenu(this);
    m_boardMenu->setObjectName(u"ToolbarBBSListMenu"_s);
    m_boardMenu->setSeparatorsCollapsible(false);
    button->setMenu(m_boardMenu);
    if (auto* widget = qobject_cast<QToolButton*>(widgetForAction(button)))
        widget->setPopupMode(QToolButton::MenuButtonPopup);
}

void CToolbar::UpdateEnabled(const mdlEnabling::WindowFacts& Facts)
{
    for (const ToolButton& button : mdlCommands::Toolbar()) {
        if (QAction* action = m_buttons.value(button.Key))
            action->setEnabled(mdlEnabling::Holds(button.When, Facts, button.Argument));
    }
}
