// tests/platform/tst_DesktopQt.cpp
// The real boxes, answered by keys, and window places on screens that come and go.

#include "platform/desktop/CDesktopQt.h"
#include "platform/desktop/Geometry.h"
#include "platform/desktop/WindowServices.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using Answer = Desktop::Answer;
using Buttons = Desktop::Buttons;

namespace
{
/// What a box looked like before its key was pressed.
struct CSeen
{
    QString Title;
    QStringList Buttons;
    QString DefaultButton;
    QWidget* Parent = nullptr;
    bool TextsArePlain = true;
    bool IsOnScreen = true;
};

/// Presses Key in the next modal box and writes down what it looked like.
void Press(Qt::Key Key, CSeen* Seen, const QString& Typed = {})
{
    QTimer::singleShot(0, qApp, [=] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!box) {
            Press(Key, Seen, Typed);
            return;
        }
        Seen->Title = box->windowTitle();
        Seen->Parent = box->parentWidget();
        Seen->IsOnScreen = box->height() < box->screen()->availableSize().height();
        const auto buttons = box->findChildren<QPushButton*>();
        for (const QPushButton* button : buttons) {
            Seen->Buttons << button->text();
            if (button->isDefault())
                Seen->DefaultButton = button->text();
        }
        Seen->Buttons.sort();
        const auto labels = box->findChildren<QLabel*>();
        for (const QLabel* label : labels)
            Seen->TextsArePlain &= label->text().isEmpty() || label->textFormat() == Qt::PlainText;
        if (!Typed.isNull())
            QTest::keyClicks(box->findChild<QLineEdit*>(), Typed);
        QTest::keyClick(box, Key);
    });
}
} // namespace

class tst_DesktopQt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Keys_data();
    void Keys();
    void BoxBelongsToTheActiveWindow();
    void Input();
    void DialogsLeaveFilesAlone();
    void RefusedTargetIsTold();
    void MissingOwnFileIsNotOpened();
    void Twips();
    void OnScreen_data();
    void OnScreen();
    void DropDown();
};

void tst_DesktopQt::Keys_data()
{
    QTest::addColumn<Buttons>("buttons");
    QTest::addColumn<Answer>("given");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("defaultText");
    QTest::addColumn<Answer>("enter");
    QTest::addColumn<Answer>("escape");

    const QString yesNo = u"いいえ(&N)|はい(&Y)"_s;
    QTest::newRow("ok") << Buttons::Ok << Answer::Ok << u"OK"_s << u"OK"_s << Answer::Ok << Answer::Ok;
    QTest::newRow("ok or cancel") << Buttons::OkCancel << Answer::Ok << u"OK|キャンセル"_s << u"OK"_s << Answer::Ok
                                  << Answer::Cancel;
    QTest::newRow("cancel given") << Buttons::OkCancel << Answer::Cancel << u"OK|キャンセル"_s << u"キャンセル"_s
                                  << Answer::Cancel << Answer::Cancel;
    QTest::newRow("yes unless given") << Buttons::YesNo << Answer::Ok << yesNo << u"はい(&Y)"_s << Answer::Yes
                                      << Answer::No;
    QTest::newRow("no given") << Buttons::YesNo << Answer::No << yesNo << u"いいえ(&N)"_s << Answer::No << Answer::No;
    QTest::newRow("three") << Buttons::YesNoCancel << Answer::No << yesNo + u"|キャンセル"_s << u"いいえ(&N)"_s
                           << Answer::No << Answer::Cancel;
}

void tst_DesktopQt::Keys()
{
    QFETCH(Buttons, buttons);
    QFETCH(Answer, given);
    QFETCH(QString, shown);
    QFETCH(QString, defaultText);
    QFETCH(Answer, enter);
    QFETCH(Answer, escape);
    CDesktopQt desktop;
    QStringList wanted = shown.split(u'|');
    wanted.sort();

    CSeen seen;
    Press(Qt::Key_Return, &seen);
    QCOMPARE(desktop.MessageBox(u"<b>本文</b>"_s, u"題"_s, Desktop::Icon::Question, buttons, given), enter);
    QCOMPARE(seen.Title, u"題"_s);
    QCOMPARE(seen.Buttons, wanted);
    QCOMPARE(seen.DefaultButton, defaultText);
    QVERIFY(seen.TextsArePlain);

    CSeen again;
    Press(Qt::Key_Escape, &again);
    QCOMPARE(desktop.MessageBox(u"本文"_s, u"題"_s, Desktop::Icon::Question, buttons, given), escape);

    CSeen tall; // its text can be scrolled, and the keys mean the same
    Press(Qt::Key_Return, &tall);
    QCOMPARE(desktop.MessageBox(u"本文\n"_s.repeated(500), u"題"_s, Desktop::Icon::Question, buttons, given), enter);
    QVERIFY(tall.IsOnScreen && tall.TextsArePlain);
}

void tst_DesktopQt::BoxBelongsToTheActiveWindow()
{
    CDesktopQt desktop;
    QWidget mainWindow;
    QWidget otherWindow;
    desktop.SetParent(&mainWindow);
    CSeen seen;
    Press(Qt::Key_Escape, &seen);
    desktop.MessageBox(u"x"_s, u"x"_s, Desktop::Icon::None, Buttons::Ok, Answer::Ok);
    QCOMPARE(seen.Parent, &mainWindow);

    otherWindow.show();
    otherWindow.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&otherWindow));
    Press(Qt::Key_Escape, &seen);
    desktop.MessageBox(u"x"_s, u"x"_s, Desktop::Icon::None, Buttons::Ok, Answer::Ok);
    QCOMPARE(seen.Parent, &otherWindow);
}

void tst_DesktopQt::Input()
{
    CDesktopQt desktop;
    CSeen seen;
    Press(Qt::Key_Return, &seen, u"abc"_s); // what was there is selected and goes
    QCOMPARE(desktop.InputBox(u"<b>名前</b>"_s, u"題"_s, u"前"_s), std::optional(u"abc"_s));
    QCOMPARE(seen.Buttons, QStringList({u"OK"_s, u"キャンセル"_s}));
    QVERIFY(seen.TextsArePlain);
    Press(Qt::Key_Return, &seen);
    QCOMPARE(desktop.InputBox(u"名前"_s, u"題"_s, u"前"_s), std::optional(u"前"_s));
    Press(Qt::Key_Escape, &seen);
    QCOMPARE(desktop.InputBox(u"名前"_s, u"題"_s, u"前"_s), std::nullopt);
}

/// Locks of the database are lost when anything in this process opens and closes one of its files.
void tst_DesktopQt::DialogsLeaveFilesAlone()
{
    QTemporaryDir folder;
    QFile held(folder.filePath(u"log.mdb-shm"_s));
    QVERIFY(held.open(QIODevice::ReadWrite) && held.write("%PDF-1.4") > 0 && held.flush());
    struct flock wanted = {};
    wanted.l_type = F_RDLCK;
    QCOMPARE(::fcntl(held.handle(), F_SETLK, &wanted), 0);
    for (const QString& name : {u"OpenFileDialog"_s, u"FolderDialog"_s}) {
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&, rounds = 0]() mutable {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            const auto* view = dialog ? dialog->findChild<QAbstractItemView*>(u"treeView"_s) : nullptr;
            const bool isRead = view && view->model()->index(0, 2, view->rootIndex()).data().isValid();
            if (dialog && (isRead || ++rounds > 50))
                dialog->reject();
        });
        poll.start(20);
        if (name == "OpenFileDialog"_L1)
            CDesktopQt().OpenFileDialog({}, folder.path(), {}, u"All|*"_s);
        else
            CDesktopQt().FolderDialog({}, folder.path());
        QFile locks(u"/proc/locks"_s);
        QVERIFY(locks.open(QIODevice::ReadOnly));
        struct stat status = {};
        QCOMPARE(::fstat(held.handle(), &status), 0);
        QVERIFY2(locks.readAll().contains(':' + QByteArray::number(quint64(status.st_ino)) + ' '), qPrintable(name));
    }
}

void tst_DesktopQt::RefusedTargetIsTold()
{
    CDesktopQt desktop;
    desktop.SetCaption(u"Tavora"_s);
    CSeen seen;
    Press(Qt::Key_Return, &seen);
    QVERIFY(!desktop.ShellOpen(u"file:///etc/passwd"_s));
    QCOMPARE(seen.Title, u"Tavora"_s);
}

void tst_DesktopQt::MissingOwnFileIsNotOpened()
{
    CDesktopQt desktop;
    QVERIFY(!desktop.ShellOpenOwn(u"/no/such/ReadMe.txt"_s));
    QVERIFY(!desktop.ShellOpenOwn(QString()));
}

void tst_DesktopQt::Twips()
{
    QList<int> pixels;
    for (const qint64 twips : {1500, 1507, 1508, -1500, -22})
        pixels.append(mdlGeometry::ToPixels(twips));
    pixels.append(mdlGeometry::ToPixels(std::numeric_limits<qint64>::max())); // junk in the settings
    QCOMPARE(pixels, QList<int>({100, 100, 101, -100, -1, 1'000'000}));
    for (const int saved : pixels)
        QCOMPARE(mdlGeometry::ToPixels(qint64{mdlGeometry::ToTwips(saved)}), saved);
}

void tst_DesktopQt::OnScreen_data()
{
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QRect>("wanted");

    // Two screens side by side; the second is smaller and lies lower.
    const auto stays = [](const char* name, const QRect& window) { QTest::newRow(name) << window << window; };
    stays("inside", QRect(100, 100, 800, 600));
    stays("over the right edge on purpose", QRect(1800, 100, 800, 600));
    stays("over the lower edge", QRect(100, 1000, 800, 600));
    stays("on the second screen", QRect(2000, 300, 800, 600));
    stays("across both", QRect(1500, 300, 800, 600));
    QTest::newRow("screen is gone") << QRect(5000, 300, 800, 600) << QRect(2400, 300, 800, 600);
    QTest::newRow("left of all") << QRect(-900, 100, 800, 600) << QRect(0, 100, 800, 600);
    QTest::newRow("caption above the screen") << QRect(100, -200, 800, 600) << QRect(100, 28, 800, 600);
    QTest::newRow("caption just above the screen") << QRect(100, 0, 800, 600) << QRect(100, 28, 800, 600);
    QTest::newRow("below the screen") << QRect(100, 1080, 800, 600) << QRect(100, 480, 800, 600);
    QTest::newRow("saved at a smaller scale") << QRect(100, 300, 960, 1100) << QRect(100, 28, 960, 1052);
    QTest::newRow("too large and off") << QRect(-4000, -4000, 3000, 3000) << QRect(0, 28, 1920, 1052);
}

void tst_DesktopQt::OnScreen()
{
    QFETCH(QRect, window);
    QFETCH(QRect, wanted);
    const QList<QRect> screens = {QRect(0, 0, 1920, 1080), QRect(1920, 200, 1280, 800)};
    QCOMPARE(mdlGeometry::OnScreen(window, screens), wanted);
    QCOMPARE(mdlGeometry::OnScreen(window, {}), window);
}

void tst_DesktopQt::DropDown()
{
    QComboBox combo;
    combo.setEditable(true);
    combo.addItems({u"短い"_s, QString(60, u'長')});
    mdlWindow::AdjustComboDropDown(&combo, 8);
    QCOMPARE(combo.maxVisibleItems(), 8);
    QVERIFY(combo.view()->minimumWidth() >= combo.fontMetrics().horizontalAdvance(QString(60, u'長')));
    combo.setEditText(u"全体"_s);
    combo.lineEdit()->deselect();
    mdlWindow::SelectAllText(&combo);
    QCOMPARE(combo.lineEdit()->selectedText(), u"全体"_s);
}

QTEST_MAIN(tst_DesktopQt)
#include "tst_DesktopQt.moc"
