// mainwin/frmFind.cpp
// The find dialog.

#include "mainwin/frmFind.h"

#include "app/Application.h"
#include "controls/CMRUCombo.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/WindowServices.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint16 HistorySize = 10;
constexpr int BoxCharacters = 40; // width of the box in digits
constexpr int Distance = 24;      // pixels at 100 %, from the owner's edge and from what is to be seen

/// Keys that mean something to the dialog and something else to an input method.
bool EndsComposing(int Key) { return Key == Qt::Key_Return || Key == Qt::Key_Enter || Key == Qt::Key_Escape; }

} // namespace

frmFind::frmFind(Application& App, QWidget* Owner)
    : QDialog(Owner)
    , m_app(App)
{
    setObjectName(u"frmFind"_s);
    setWindowTitle(u"検索 - "_s + App.AppTitle());
    BuildControls();
    BuildLayout();
    m_history = new CMRUCombo(this);
    UpdateEnabled();
}

frmFind::~frmFind() = default;

void frmFind::BuildControls()
{
    m_lblFindText = new QLabel(u"検索文字列(&F):"_s, this);
    m_lblFindText->setObjectName(u"lblFindText"_s);
    m_cmbFindText = new QComboBox(this);
    m_cmbFindText->setObjectName(u"cmbFindText"_s);
    m_cmbFindText->setAccessibleName(u"検索文字列"_s);
    m_cmbFindText->setEditable(true);
    m_cmbFindText->setMinimumWidth(m_cmbFindText->fontMetrics().horizontalAdvance(u'0') * BoxCharacters);
    m_cmbFindText->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon); // an old search may be long
    m_cmbFindText->installEventFilter(this);
    m_cmbFindText->lineEdit()->installEventFilter(this);
    m_lblFindText->setBuddy(m_cmbFindText);
    m_chkUseRegExp = new QCheckBox(u"正規表現検索(&R)"_s, this);
    m_chkUseRegExp->setObjectName(u"chkUseRegExp"_s);
    m_chkIgnoreCase = new QCheckBox(u"大文字と小文字を区別(&I)"_s, this);
    m_chkIgnoreCase->setObjectName(u"chkIgnoreCase"_s);
    m_cmdFindPrev = MakeButton(u"cmdFindPrev"_s, u"前を検索(Shift+F3)"_s, Qt::SHIFT | Qt::Key_F3);
    m_cmdFindNext = MakeButton(u"cmdFindNext"_s, u"次を検索(F3)"_s, Qt::Key_F3);
    m_cmdFindNext->setDefault(true);
    m_cmdCancel = MakeButton(u"cmdCancel"_s, u"キャンセル"_s, {});
    connect(m_cmbFindText, &QComboBox::editTextChanged, this, &frmFind::UpdateEnabled);
    connect(m_chkUseRegExp, &QCheckBox::toggled, this, &frmFind::UpdateEnabled);
    connect(m_cmdFindNext, &QPushButton::clicked, this, [this] { Find(true); });
    connect(m_cmdFindPrev, &QPushButton::clicked, this, [this] { Find(false); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &frmFind::reject);
}

QPushButton* frmFind::MakeButton(const QString& Name, const QString& Caption, const QKeySequence& Key)
{
    auto* button = new QPushButton(Caption, this);
    button->setObjectName(Name);
    // A shortcut of the button itself would press it only after a moment in which no further key comes.
    if (!Key.isEmpty())
        connect(new QShortcut(Key, this), &QShortcut::activated, button, &QPushButton::click);
    return button;
}

void frmFind::BuildLayout()
{
    auto* buttons = new QVBoxLayout;
    for (QPushButton* button : {m_cmdFindPrev, m_cmdFindNext, m_cmdCancel})
        buttons->addWidget(button);
    buttons->addStretch(1);
    auto* grid = new QGridLayout(this);
    grid->addWidget(m_lblFindText, 0, 0);
    grid->addWidget(m_cmbFindText, 0, 1);
    grid->addWidget(m_chkUseRegExp, 1, 1);
    grid->addWidget(m_chkIgnoreCase, 2, 1);
    grid->addLayout(buttons, 0, 2, 4, 1);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);
    QWidget* const order[] = {m_cmbFindText, m_chkUseRegExp, m_chkIgnoreCase,
                              m_cmdFindPrev, m_cmdFindNext,  m_cmdCancel};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void frmFind::ShowDialog(const QString& Text, const QStringList& History)
{
    const bool wasOpen = isVisible();
    if (!wasOpen)
        Prepare(History);
    if (!wasOpen || !Text.isEmpty())
        m_cmbFindText->setEditText(Text);
    m_cmbFindText->lineEdit()->selectAll();
    m_cmbFindText->setFocus();
    if (!m_isPlaced)
        PlaceOver(*parentWidget());
    mdlWindow::ActivateWindow(this);
}

void frmFind::Prepare(const QStringList& History)
{
    m_cmbFindText->clear();
    m_history->SetComboBox(m_cmbFindText);
    m_history->SetMax(HistorySize);
    for (const QString& text : History)
        m_history->AddMRU(text, false);
    m_cmbFindText->clearEditText();
    mdlWindow::AdjustComboDropDown(m_cmbFindText, 0);
    TakeSettings();
}

void frmFind::TakeSettings()
{
    m_chkUseRegExp->setChecked(m_app.Option().UseRegExp);
    m_chkIgnoreCase->setChecked(!m_app.Option().IgnoreCase);
    UpdateEnabled();
}

/// Over the lists: the message below them is where a match is seen.
void frmFind::PlaceOver(const QWidget& Owner)
{
    m_isPlaced = true;
    ensurePolished();
    QRect place(QPoint(), sizeHint());
    place.moveTopRight(Owner.geometry().topRight() + QPoint(-Distance, 3 * Distance));
    move(mdlGeometry::OnScreen(place).topLeft());
}

void frmFind::KeepClearOf(const QRect& Place)
{
    if (!isVisible() || !frameGeometry().intersects(Place))
        return;
    QRect place = frameGeometry();
    place.moveBottom(Place.top() - Distance);
    if (mdlGeometry::OnScreen(place) != place)
        place.moveTop(Place.bottom() + Distance);
    move(mdlGeometry::OnScreen(place).topLeft());
}

void frmFind::SetFindAllowed(bool IsAllowed)
{
    m_isAllowed = IsAllowed;
    UpdateEnabled();
}

void frmFind::UpdateEnabled()
{
    const bool canFind = m_isAllowed && !m_cmbFindText->currentText().isEmpty();
    m_cmdFindNext->setEnabled(canFind);
    m_cmdFindPrev->setEnabled(canFind);
    m_cmdCancel->setEnabled(m_isAllowed); // last: the focus of those above came here, and goes on to the box
    m_chkIgnoreCase->setEnabled(m_chkUseRegExp->isChecked());
}

void frmFind::Find(bool Forward)
{
    m_app.Option().UseRegExp = m_chkUseRegExp->isChecked();
    m_app.Option().IgnoreCase = !m_chkIgnoreCase->isChecked();
    const QString text = m_cmbFindText->currentText();
    m_history->AddMRU(text, true);
    Q_EMIT FindRequested(text, Forward);
}

bool frmFind::eventFilter(QObject* Watched, QEvent* Event)
{
    m_composing.Watch(*Event);
    if (m_composing.IsOn() && Event->type() == QEvent::ShortcutOverride) {
        Event->accept(); // one that is taken becomes no shortcut
        return true;
    }
    if (m_composing.IsOn() && Event->type() == QEvent::KeyPress)
        return EndsComposing(static_cast<QKeyEvent*>(Event)->key());
    return QDialog::eventFilter(Watched, Event);
}
