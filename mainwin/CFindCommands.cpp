// mainwin/CFindCommands.cpp
// Find: from menu, key, button, box and dialog to the one step, and back to the user.

#include "mainwin/CFindCommands.h"

#include "app/Application.h"
#include "controls/CMRUCombo.h"
#include "mainwin/CMessagePane.h"
#include "mainwin/frmFind.h"
#include "platform/desktop/WindowServices.h"
#include "platform/desktop/desktop.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint16 HistorySize = 10;

QString HistorySection() { return u"FindText"_s; }

/// What of a selection can stand in a box of one line: the first line that shows anything.
QString FirstLine(const QString& Text)
{
    const QStringList lines = Text.split(u"\r\n"_s);
    for (const QString& line : lines) {
        if (!line.trimmed().isEmpty())
            return line;
    }
    return {};
}

} // namespace

CFindCommands::CFindCommands(Application& App, const CFinder& Finder, QComboBox& Box, CMessagePane& Pane,
                             QWidget& Window)
    : QObject(&Window)
    , m_app(App)
    , m_finder(Finder)
    , m_box(Box)
    , m_pane(Pane)
    , m_window(Window)
    , m_history(new CMRUCombo(this))
{
    m_history->SetComboBox(&m_box);
    m_history->SetMax(HistorySize);
    m_box.installEventFilter(this); // has the focus and passes the keys on
    m_box.lineEdit()->installEventFilter(this);
}

// The history

void CFindCommands::LoadHistory()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(HistorySection());
    const QStringList keys = ini.Keys().mid(0, HistorySize); // whoever wrote the file
    for (const QString& key : keys)
        m_history->AddMRU(ini.Data(key), false);
    m_box.setEditText({});
    mdlWindow::AdjustComboDropDown(&m_box, 0);
}

void CFindCommands::SaveHistory()
{
    CIniFile& ini = m_app.SettingsIni();
    ini.SetNowSection(HistorySection());
    ini.Clear();
    int number = 0;
    for (const QString& text : m_history->MRUList())
        ini.SetData(QString::number(++number), text);
    ini.Save(HistorySection());
}

// The dialog

void CFindCommands::OpenDialog()
{
    if (!m_dialog) {
        m_dialog = new frmFind(m_app, &m_window);
        m_dialog->SetFindAllowed(m_isAllowed);
        connect(m_dialog, &frmFind::FindRequested, this, &CFindCommands::FindAsked);
    }
    const QString selected = FirstLine(m_pane.SelectedText());
    m_dialog->ShowDialog(selected.isEmpty() ? m_box.currentText() : selected, m_history->MRUList());
}

void CFindCommands::CloseDialog()
{
    if (m_dialog)
        m_dialog->close();
}

void CFindCommands::AdoptSettings()
{
    if (m_dialog)
        m_dialog->TakeSettings();
}

void CFindCommands::SetFindAllowed(bool IsAllowed)
{
    m_isAllowed = IsAllowed;
    if (m_dialog)
        m_dialog->SetFindAllowed(IsAllowed);
}

// Finding

void CFindCommands::FindNext() { FindBoxText(true); }

void CFindCommands::FindPrev() { FindBoxText(false); }

void CFindCommands::FindBoxText(bool Forward)
{
    m_isForward = Forward;
    if (const QString text = m_box.currentText(); !text.isEmpty())
        FindMessage(text, Forward);
    else
        m_box.setFocus();
}

void CFindCommands::FindMessage(const QString& Text, bool Forward)
{
    m_history->AddMRU(Text, true);
    m_box.setEditText(Text);
    mdlWindow::AdjustComboDropDown(&m_box, 0);
    const CFinder::Outcome outcome = m_finder.Find(Text, Forward);
    if (const QString trouble = m_finder.Trouble(); !trouble.isEmpty() && outcome != CFinder::Outcome::BrokenOff)
        Q_EMIT Told(trouble);
    switch (outcome) {
    case CFinder::Outcome::InText:
        if (m_dialog)
            m_dialog->KeepClearOf(m_pane.SelectionOnScreen());
        break;
    case CFinder::Outcome::InRow:
        Q_EMIT RowFound();
        break;
    case CFinder::Outcome::NotFound:
        m_app.Shell.MessageBox(u"検索文字は見つかりませんでした。"_s, m_app.AppTitle(), Desktop::Icon::None);
        break;
    case CFinder::Outcome::BrokenOff:
        break;
    }
}

// The box

bool CFindCommands::eventFilter(QObject* Watched, QEvent* Event)
{
    m_composing.Watch(*Event);
    if (m_composing.IsOn() && Event->type() == QEvent::ShortcutOverride) {
        Event->accept(); // one that is taken becomes no shortcut
        return true;
    }
    if (!m_composing.IsOn() && Event->type() == QEvent::KeyPress)
        return OnBoxKey(static_cast<QKeyEvent*>(Event)->key());
    return QObject::eventFilter(Watched, Event);
}

/// Any key of the user's means that the next Enter looks forward.
bool CFindCommands::OnBoxKey(int Key)
{
    const bool isForward = std::exchange(m_isForward, true);
    if (Key != Qt::Key_Return && Key != Qt::Key_Enter)
        return false;
    const QString text = m_box.currentText();
    if (!text.isEmpty() && m_isAllowed)
        Q_EMIT FindAsked(text, isForward);
    return true;
}
