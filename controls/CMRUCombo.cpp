// controls/CMRUCombo.cpp
// Turns an editable combo box into a box that remembers and completes.

#include "controls/CMRUCombo.h"

#include <QComboBox>
#include <QCompleter>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>

CMRUCombo::CMRUCombo(QObject* Parent)
    : QObject(Parent)
{}

void CMRUCombo::SetComboBox(QComboBox* NewComboBox)
{
    if (m_combo)
        m_combo->removeEventFilter(this);
    if (m_edit) {
        m_edit->removeEventFilter(this);
        m_edit->disconnect(this);
    }
    m_combo = NewComboBox;
    m_edit = nullptr;
    m_list.clear();
    m_max = 0;
    m_lastSeen.clear();
    m_caretBefore = 0;
    m_composing = {};
    if (!m_combo)
        return;
    m_combo->setEditable(true);
    m_combo->setInsertPolicy(QComboBox::NoInsert);
    m_combo->setCompleter(nullptr); // the toolkit's own ignores case and opens a list
    m_edit = m_combo->lineEdit();
    m_combo->installEventFilter(this); // has the focus and passes the keys on
    m_edit->installEventFilter(this);
    connect(m_edit, &QLineEdit::textEdited, this, &CMRUCombo::OnTextEdited);
}

QComboBox* CMRUCombo::ComboBox() const { return m_combo; }
qint16 CMRUCombo::Max() const { return m_max; }
QStringList CMRUCombo::MRUList() const { return m_list; }

void CMRUCombo::SetMax(qint16 NewMax)
{
    m_max = NewMax;
    CutToMax();
}

void CMRUCombo::CutToMax()
{
    while (m_max >= 0 && m_list.size() > m_max)
        m_list.removeLast();
}

void CMRUCombo::AddMRU(bool AtTop) { AddMRU(m_combo ? m_combo->currentText() : QString(), AtTop); }

void CMRUCombo::AddMRU(const QString& Text, bool AtTop)
{
    m_list.removeIf([&](const QString& entry) { return entry.compare(Text, Qt::CaseInsensitive) == 0; });
    m_list.insert(AtTop ? 0 : m_list.size(), Text);
    CutToMax();
    AddMRUTemp(Text, AtTop);
}

void CMRUCombo::AddMRUTemp(bool AtTop) { AddMRUTemp(m_combo ? m_combo->currentText() : QString(), AtTop); }

void CMRUCombo::AddMRUTemp(const QString& Text, bool AtTop)
{
    if (!m_combo || !m_edit)
        return;
    const QString shown = m_combo->currentText();
    const int caret = m_edit->cursorPosition();
    {
        const QSignalBlocker quiet(m_combo.data());
        const int old = m_combo->findText(Text, Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (old >= 0)
            m_combo->removeItem(old);
        m_combo->insertItem(AtTop ? 0 : m_combo->count(), Text);
        m_combo->setCurrentIndex(-1);
    }
    m_edit->setText(shown);
    m_edit->setCursorPosition(caret);
}

int CMRUCombo::Caret() const
{
    if (!m_edit)
        return 0;
    return m_edit->hasSelectedText() ? m_edit->selectionStart() : m_edit->cursorPosition();
}

bool CMRUCombo::eventFilter(QObject* Watched, QEvent* Event)
{
    m_composing.Watch(*Event);
    switch (Event->type()) {
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(Event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
            AcceptCompletion();
        m_caretBefore = Caret();
        break;
    }
    case QEvent::InputMethod:
        // Text that an input method hands over comes without a key.
        if (!static_cast<QInputMethodEvent*>(Event)->commitString().isEmpty())
            m_caretBefore = Caret();
        break;
    default:
        break;
    }
    return QObject::eventFilter(Watched, Event);
}

void CMRUCombo::AcceptCompletion()
{
    if (m_edit && m_edit->hasSelectedText())
        m_edit->setCursorPosition(m_edit->selectionEnd());
}

void CMRUCombo::OnTextEdited(const QString& Text)
{
    // What is composed takes the place of the selection before it is text; setting the text then would end it.
    if (m_composing.IsOn() || Text == m_lastSeen)
        return;
    const int caret = Caret();
    if (caret <= m_caretBefore) { // deleted, or written over
        m_caretBefore = caret;
        return;
    }
    const QStringList matches = MatchingItems(Text);
    if (matches.isEmpty())
        m_lastSeen = Text;
    else
        Complete(Text, matches);
}

/// The items that begin with Text exactly, shortest first; of one length in the drop-down's order.
QStringList CMRUCombo::MatchingItems(const QString& Text) const
{
    QStringList matches;
    for (int i = 0; i < m_combo->count(); ++i) {
        if (m_combo->itemText(i).startsWith(Text))
            matches << m_combo->itemText(i);
    }
    std::stable_sort(matches.begin(), matches.end(),
                     [](const QString& a, const QString& b) { return a.size() < b.size(); });
    return matches;
}

/// Puts the longest common beginning of Matches into the box, with what was added selected.
void CMRUCombo::Complete(const QString& Typed, const QStringList& Matches)
{
    const QString& shortest = Matches.first();
    qsizetype length = Typed.size();
    const auto allHave = [&](qsizetype at) {
        return std::all_of(Matches.begin(), Matches.end(),
                           [&](const QString& match) { return match[at] == shortest[at]; });
    };
    while (length < shortest.size() && allHave(length))
        ++length;
    const QString common = shortest.left(length);
    m_edit->setText(common);
    m_edit->setSelection(static_cast<int>(Typed.size()), static_cast<int>(length - Typed.size()));
    m_lastSeen = common;
}
