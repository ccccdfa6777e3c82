// One evening with the reader: receive, read on, mark, find, follow a thread, delete, come back the next day.

#include "boardd/CBoardServer.h"
#include "load/frmLoadDlg.h"
#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

constexpr int PageSize = 100; // of a view mode, as a new program has it

/// The user: keys go to whatever has the focus, as from a keyboard.
class CUser
{
public:
    explicit CUser(CWindowFixture& Program)
        : m_f(Program)
    {}

    void Press(Qt::Key Key, Qt::KeyboardModifiers Modifiers = Qt::NoModifier)
    {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* target = popup ? popup : QApplication::focusWidget();
        QVERIFY(target);
        QTest::keyClick(target, Key, Modifiers);
    }
    void Type(const QString& Text) { QTest::keyClicks(QApplication::focusWidget(), Text); }

    const CMessage& Focused() const
    {
        const CMessageList& list = m_f.List(m_f.Viewer().CurrentList());
        return list.Item(list.Focus()).Message;
    }
    QString Panel(const QString& Key) const { return m_f.Find<QLabel>(u"StatusBar"_s + Key)->text(); }
    CMessagePane& Pane() const { return *m_f.Find<CMessagePane>(u"rtbView"_s); }
    int Count(const QString& Where) const
    {
        return m_f.Rows(u"SELECT Count(*) FROM Message WHERE BBS_ID = 3 AND "_s + Where).toInt();
    }

    /// Reads with the space bar until it leads nowhere any more.
    void ReadToTheEnd()
    {
        constexpr int manyKeys = 2000;
        for (int key = 0, idle = 0; key < manyKeys && idle < 3; ++key) {
            const CMessage before = Focused();
            const int place = Pane().verticalScrollBar()->value();
            Press(Qt::Key_Space);
            idle = Focused() == before && Pane().verticalScrollBar()->value() == place ? idle + 1 : 0;
        }
    }

private:
    CWindowFixture& m_f;
};

} // namespace

class tst_Story : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void Evening();

private:
    void Receive(CWindowFixture& F);
    void ReadEverything(CWindowFixture& F);
    void MarkTheNewest(CWindowFixture& F);
    void FindInBodies(CWindowFixture& F);
    void FollowTheThread(CWindowFixture& F);
    void DeleteTwo(CWindowFixture& F);

    int m_received = 0;
    qint32 m_marked = 0;
};

void tst_Story::Receive(CWindowFixture& F)
{
    CUser user(F);
    user.Press(Qt::Key_F5);
    auto* dialog = F.Window->findChild<frmLoadDlg*>();
    QVERIFY(dialog && dialog->isVisible());
    QTRY_VERIFY(dialog->isActiveWindow());
    user.Press(Qt::Key_Escape);
    QVERIFY(!dialog->isVisible());
    F.Window->activateWindow(); // as a window manager does it
    QTRY_VERIFY(F.Window->isActiveWindow());
    QVERIFY(F.Find<CListView>(u"lsvMsgList0"_s)->hasFocus());
}

void tst_Story::ReadEverything(CWindowFixture& F)
{
    CUser user(F);
    m_received = user.Count(u"True"_s);
    QVERIFY(m_received > PageSize);
    QVERIFY(F.Action(u"#003"_s)->text().endsWith(u" (%1)"_s.arg(m_received)));
    user.Press(Qt::Key_F6);
    QCOMPARE(user.Panel(u"Count"_s), u"%1/%1"_s.arg(PageSize));
    user.ReadToTheEnd();
    QCOMPARE(user.Panel(u"Count"_s), u"0/%1"_s.arg(PageSize));
    QCOMPARE(user.Count(u"Read = False"_s), m_received - PageSize);
    QVERIFY(F.Action(u"#003"_s)->text().endsWith(u" (%1)"_s.arg(m_received - PageSize)));
    user.Press(Qt::Key_F8);
    user.ReadToTheEnd();
    QCOMPARE(user.Count(u"Read = False"_s), 0);
    for (const QString& entry : {u"#003"_s, u"mnuBBSMoveSub1"_s, u"mnuTrayBBSSub1"_s})
        QVERIFY2(!F.Action(entry)->text().contains(u'('), qPrintable(F.Action(entry)->text()));
    user.Press(Qt::Key_F6);
}

void tst_Story::MarkTheNewest(CWindowFixture& F)
{
    CUser user(F);
    user.Press(Qt::Key_M);
    QTRY_VERIFY(QApplication::activePopupWidget());
    user.Press(Qt::Key_Down);
    user.Press(Qt::Key_Down);
    user.Press(Qt::Key_Return);
    m_marked = user.Focused().ID;
    QCOMPARE(F.Rows(u"SELECT ID FROM Message WHERE Mark = 2"_s), QString::number(m_marked));
}

void tst_Story::FindInBodies(CWindowFixture& F)
{
    CUser user(F);
    user.Press(Qt::Key_F3); // nothing to look for yet: on to the box
    auto* box = F.Find<QComboBox>(u"cmbFindText"_s);
    QVERIFY(box->lineEdit()->hasFocus() || box->hasFocus());
    user.Type(u"[0-9]+"_s);
    user.Press(Qt::Key_Return);
    QVERIFY(user.Pane().hasFocus());
    const QRegularExpression digits(u"^[0-9]+$"_s);
    QVERIFY2(digits.match(user.Pane().SelectedText()).hasMatch(), qPrintable(user.Pane().SelectedText()));
    const qint32 first = user.Focused().ID;
    int steps = 0;
    for (; user.Focused().ID == first && steps < 100; ++steps)
        user.Press(Qt::Key_F3);
    QVERIFY(user.Focused().ID < first);
    QVERIFY(digits.match(user.Pane().SelectedText()).hasMatch());
    for (; steps > 0; --steps)
        user.Press(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(user.Focused().ID, first);

    user.Press(Qt::Key_F, Qt::ControlModifier);
    QTRY_VERIFY(F.Window->findChild<QDialog*>(u"frmFind"_s));
    auto* dialog = F.Window->findChild<QDialog*>(u"frmFind"_s);
    QTRY_VERIFY(dialog->isActiveWindow());
    dialog->findChild<QComboBox*>(u"cmbFindText"_s)->setEditText(u"この文字はどこにもない"_s);
    F.Desk.Expect(u"検索文字は見つかりませんでした。"_s);
    QTest::mouseClick(dialog->findChild<QPushButton*>(u"cmdFindNext"_s), Qt::LeftButton);
    QVERIFY(F.Desk.Verify());
    QTest::mouseClick(dialog->findChild<QPushButton*>(u"cmdCancel"_s), Qt::LeftButton);
    F.Window->activateWindow();
    QTRY_VERIFY(F.Window->isActiveWindow());
}

void tst_Story::FollowTheThread(CWindowFixture& F)
{
    CUser user(F);
    F.Find<CListView>(u"lsvMsgList0"_s)->setFocus();
    user.Press(Qt::Key_End);
    CMessageList& list = F.List();
    while (list.Focus() > 0 && user.Focused().InReplyTo == 0)
        user.Press(Qt::Key_K);
    const CMessage answer = user.Focused();
    QVERIFY(answer.InReplyTo != 0);
    user.Press(Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(F.Viewer().CurrentList(), 1);
    QVERIFY(F.Window->windowTitle().startsWith(u"検索結果 - "_s));
    QCOMPARE(user.Focused().ID, answer.ID);
    QCOMPARE(F.List(1).Count(), user.Count(u"RootThread = %1"_s.arg(answer.RootThread)));
    QVERIFY(F.List(1).Item(F.List(1).Focus()).Indent > 0);
    QCOMPARE(F.List(1).Item(0).Message.ID, answer.RootThread);
}

void tst_Story::DeleteTwo(CWindowFixture& F)
{
    CUser user(F);
    const int shown = F.List(1).Count();
    const QString wasFocused = QString::number(user.Focused().ID);
    F.Desk.Expect(u"このメッセージを削除してもよろしいですか？"_s, Desktop::Answer::No);
    user.Press(Qt::Key_Delete);
    QCOMPARE(F.List(1).Count(), shown);
    F.Desk.Expect(u"このメッセージを削除してもよろしいですか？"_s, Desktop::Answer::Yes);
    user.Press(Qt::Key_Delete);
    QCOMPARE(F.List(1).Count(), shown - 1);
    QCOMPARE(user.Count(u"ID = "_s + wasFocused), 0);
    user.Press(Qt::Key_Escape);
    QCOMPARE(F.Viewer().CurrentList(), 0);
    QVERIFY(!F.List().Contains({3, wasFocused.toInt()}));
    user.Press(Qt::Key_Home);
    F.Desk.Expect(u"このメッセージを削除してもよろしいですか？"_s, Desktop::Answer::Yes);
    user.Press(Qt::Key_End);
    user.Press(Qt::Key_Delete);
    QCOMPARE(user.Count(u"True"_s), m_received - 2);
    QVERIFY(F.Desk.Verify());
}

void tst_Story::Evening()
{
    CBoardServer server({});
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CWindowFixture f(server.Url(u"/cgi-bin/keyaki.cgi"_s).toString());
    QVERIFY(f.Start());
    const std::function<void()> chapters[] = {
        [&] { Receive(f); },      [&] { ReadEverything(f); },  [&] { MarkTheNewest(f); },
        [&] { FindInBodies(f); }, [&] { FollowTheThread(f); }, [&] { DeleteTwo(f); },
    };
    for (const auto& chapter : chapters) {
        chapter();
        if (QTest::currentTestFailed())
            return;
    }
    f.End();
    QVERIFY(f.Start());
    CUser user(f);
    QCOMPARE(f.List().Item(0).Message.ID, m_marked);
    QCOMPARE(f.List().Item(0).Message.Mark, 2);
    QCOMPARE(user.Panel(u"Count"_s), u"0/%1"_s.arg(PageSize));
    QCOMPARE(f.Find<QComboBox>(u"cmbFindText"_s)->itemText(1), u"[0-9]+"_s);
    Receive(f); // nothing new: what was deleted does not come back
    QCOMPARE(user.Count(u"True"_s), m_received - 2);
}

QTEST_MAIN(tst_Story)

#include "tst_Story.moc"
