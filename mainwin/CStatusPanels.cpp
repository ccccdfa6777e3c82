// mainwin/CStatusPanels.cpp
// The status bar: its panels, the two links over them and the editor of the unread position.

#include "mainwin/CStatusPanels.h"

#include "controls/uClickableLabel.h"
#include "controls/uSpinButton.h"
#include "mainwin/mdlCommands.h"

#include <QApplication>
#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace
{

constexpr int Margin = 5; // pixels between the edge of a panel and its text

/// The field's own menu takes the keyboard away only until something is chosen there.
bool OpensOwnMenu(const QWidget& Field)
{
    const QWidget* popup = QApplication::activePopupWidget();
    return popup && Field.isAncestorOf(popup->parentWidget());
}

} // namespace

CPanel::CPanel(int Columns, QWidget* Parent)
    : QLabel(Parent)
    , m_columns(Columns)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(Columns > 0 ? QSizePolicy::Preferred : QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize CPanel::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(u'0') * m_columns + 2 * Margin, fontMetrics().height() + 4};
}

// The bar must not keep the window from getting narrow.
QSize CPanel::minimumSizeHint() const { return {m_columns > 0 ? 2 * Margin : 0, sizeHint().height()}; }

void CPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QColor line = palette().color(QPalette::WindowText);
    line.setAlphaF(0.25F);
    painter.fillRect(0, 3, 1, height() - 6, line); // a fine line parts the panels
    const QRect place = rect().adjusted(Margin, 0, -Margin, 0);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, place.width()));
}

void CPanel::mouseReleaseEvent(QMouseEvent* Event)
{
    QLabel::mouseReleaseEvent(Event);
    if (Event->button() == Qt::LeftButton && rect().contains(Event->position().toPoint()))
        Q_EMIT Clicked();
}

CStatusPanels::CStatusPanels(Desktop& Shell, QWidget* Parent)
    : QStatusBar(Parent)
{
    setObjectName(u"StatusBar"_s);
    for (const auto& source : mdlCommands::Panels()) {
        auto* panel = new CPanel(source.Columns, this);
        panel->setObjectName(u"StatusBar"_s + source.Key.toString());
        panel->setToolTip(source.ToolTip.toString());
        panel->installEventFilter(this);
        addPermanentWidget(panel, source.Columns > 0 ? 0 : 1);
        m_panels.insert(source.Key, panel);
    }
    m_mail = MakeLink(Shell, u"Mail", u"uclMailto"_s, uClickableLabel::MailAddress);
    m_homePage = MakeLink(Shell, u"HomePage", u"uclHomepage"_s, uClickableLabel::WebAddress);
    MakeEditor();
    connect(Panel(u"NoReadPoint"), &CPanel::Clicked, this, &CStatusPanels::NoReadPointClicked);
    SetStyle(0);
}

uClickableLabel* CStatusPanels::MakeLink(Desktop& Shell, QStringView Key, const QString& Name, int Mode)
{
    auto* link = new uClickableLabel(Shell, this);
    link->setObjectName(Name);
    link->SetClickableMode(Mode);
    link->Label()->setToolTip(Panel(Key)->toolTip());
    link->hide();
    return link;
}

void CStatusPanels::MakeEditor()
{
    m_editor = new uSpinButton(this);
    m_editor->setObjectName(u"uspnNoReadPoint"_s);
    m_editor->setAccessibleName(u"未読位置"_s);
    m_editor->SetMax(MaxNoReadPoint);
    m_editor->setFrame(false);
    m_editor->hide();
    m_editor->installEventFilter(this);
    connect(m_editor, &uSpinButton::KeyPress, this, &CStatusPanels::OnEditorKey);
}

void CStatusPanels::SetText(QStringView Key, const QString& Text) { Panel(Key)->setText(Text); }

QString CStatusPanels::Text(QStringView Key) const { return Panel(Key)->text(); }

void CStatusPanels::SetStyle(int Style)
{
    m_style = Style;
    Panel(u"Status")->setVisible(Style != 0);
    Panel(u"Mail")->setVisible(Style == 0);
    Panel(u"HomePage")->setVisible(Style == 0);
    Reveal(m_mail);
    Reveal(m_homePage);
}

void CStatusPanels::ShowMail(const QString& Caption) { ShowLink(m_mail, Caption); }

void CStatusPanels::ShowHomePage(const QString& Caption) { ShowLink(m_homePage, Caption); }

void CStatusPanels::ShowLink(uClickableLabel* Link, const QString& Caption)
{
    Link->SetCaption(Caption);
    Reveal(Link);
    PlaceOverPanels();
}

/// Left alone, the focus of a hidden link goes on along the Tab order, to the bar that the arrow keys move.
void CStatusPanels::Reveal(uClickableLabel* Link)
{
    const bool isShown = m_style == 0 && !Link->Caption().isEmpty();
    const bool isLeft = !isShown && Link->hasFocus();
    Link->setVisible(isShown);
    if (isLeft)
        Q_EMIT LinkLeft();
}

void CStatusPanels::PlaceOverPanels()
{
    const auto within = [this](QStringView Key) { // in a narrow window nothing may be left of the panel
        const QRect panel = Panel(Key)->geometry();
        return QRect(panel.x() + Margin, panel.y(), qMax(panel.width() - 2 * Margin, 0), panel.height());
    };
    m_mail->setGeometry(within(u"Mail"));
    m_homePage->setGeometry(within(u"HomePage"));
    m_editor->setGeometry(Panel(u"NoReadPoint")->geometry());
    m_mail->raise();
    m_homePage->raise();
}

void CStatusPanels::OpenNoReadPoint(qint32 Value)
{
    m_editor->SetValue(qBound(0, Value, MaxNoReadPoint));
    PlaceOverPanels();
    m_editor->show();
    m_editor->raise();
    m_editor->setFocus();
    m_editor->selectAll();
}

void CStatusPanels::CloseNoReadPoint()
{
    if (m_editor->isHidden())
        return;
    const bool hadFocus = m_editor->hasFocus();
    m_editor->hide();
    if (hadFocus)
        Q_EMIT NoReadPointLeft();
}

bool CStatusPanels::IsNoReadPointOpen() const { return !m_editor->isHidden(); }

QList<QWidget*> CStatusPanels::TabStops() const { return {m_mail, m_homePage, m_editor}; }

void CStatusPanels::OnEditorKey(int Character)
{
    if (Character != '\r' && Character != 0x1b)
        return;
    const qint32 value = m_editor->Value();
    CloseNoReadPoint();
    if (Character == '\r')
        Q_EMIT NoReadPointEntered(value);
}

bool CStatusPanels::eventFilter(QObject* Watched, QEvent* Event)
{
    if (Watched == m_editor) {
        if (Event->type() == QEvent::FocusOut && !OpensOwnMenu(*m_editor))
            CloseNoReadPoint();
    } else if (Event->type() == QEvent::Resize || Event->type() == QEvent::Move || Event->type() == QEvent::Show) {
        PlaceOverPanels();
    }
    return QStatusBar::eventFilter(Watched, Event);
}
