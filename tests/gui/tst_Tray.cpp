// tests/gui/tst_Tray.cpp
// The main window and the tray, and the settings dialogs as the window calls them.

#include "load/frmLoadDlg.h"
#include "mainwin/CIconSet.h"
#include "mainwin/CTray.h"
#include "mainwin/CTrayHiding.h"
#include "tests/gui/CWindowFixture.h"
#include "tests/support/CLoopServer.h"

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

constexpr int SettledMs = 400; // by then a minimised window is hidden

CTray& TrayOf(const CWindowFixture& F) { return *F.Find<CTray>({}); }

bool IsGone(CWindowFixture& F)
{
    F.Window->showMinimized();
    QTest::qWait(SettledMs);
    return F.Window->isHidden();
}

/// Does Act to the next modal box while it is open.
template<typename Function> void InBox(CWindowFixture& F, Function Act)
{
    QTimer::singleShot(50, F.Window.get(), [Act] {
        QWidget* box = QApplication::activeModalWidget();
        QVERIFY(box);
        Act(*box);
    });
}

void PressOk(const QWidget& Box) { Box.findChild<QPushButton*>(u"cmdOK"_s)->click(); }

} // namespace

class tst_Tray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void Hiding_data();
    void Hiding();
    void ComesBackAsItWas();
    void ComesBackWithoutATray();
    void MenuRows();
    void ABoxComesFirst();
    void Blinking();
    void Options();
    void BoardProperties();
};

void tst_Tray::Hiding_data()
{
    QTest::addColumn<QString>("options"); // of the settings file
    QTest::addColumn<bool>("isTrayThere");
    QTest::addColumn<bool>("wanted");
    const QString both = u"AddTaskTray=True\r\nHideAtMinimazed=True\r\n"_s;
    QTest::newRow("both settings") << both << true << true;
    QTest::newRow("no tray") << both << false << false;
    QTest::newRow("only the icon") << u"AddTaskTray=True\r\nHideAtMinimazed=False\r\n"_s << true << false;
    QTest::newRow("no icon") << u"AddTaskTray=False\r\nHideAtMinimazed=True\r\n"_s << true << false;
    QTest::newRow("at the start") << both + u"[Position]\r\nWindowState=1\r\n"_s << true << false;
}

void tst_Tray::Hiding()
{
    QFETCH(QString, options);
    QFETCH(bool, isTrayThere);
    CWindowFixture f;
    f.WriteIni("[Option]\r\n" + options.toLatin1());
    f.Desk.IsTrayThere = isTrayThere;
    f.Start(); // a minimised window is not active
    QTEST(IsGone(f), "wanted");
    QCOMPARE(TrayOf(f).Visible(), options.contains(u"AddTaskTray=True"_s));
    QCOMPARE(TrayOf(f).TooltipText(), f.App->AppTitle());
}

void tst_Tray::ComesBackAsItWas()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    f.App->Option().HideAtMinimazed = true;
    const QRect place(60, 50, 700, 500);
    f.Window->setGeometry(place);
    QVERIFY(IsGone(f));
    Q_EMIT TrayOf(f).Click();
    QVERIFY(f.Window->isVisible() && !f.Window->isMinimized());
    QCOMPARE(f.Window->geometry(), place);
    f.Window->showMinimized(); // by the window manager, which went by an old hint
    QTRY_VERIFY(!f.Window->isMinimized());
    QVERIFY(f.Window->isVisible());
    QVERIFY(IsGone(f));
    f.End();
    QVERIFY(f.Start());
    QCOMPARE(f.Window->geometry(), place);
    f.App->Option().HideAtMinimazed = true;
    f.Window->showMaximized();
    QVERIFY(IsGone(f));
    Q_EMIT TrayOf(f).DblClick();
    QVERIFY(f.Window->isMaximized() && !f.Window->isMinimized());
}

void tst_Tray::ComesBackWithoutATray()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    f.App->Option().HideAtMinimazed = true;
    auto* look = f.Find<QTimer>(u"tmrLookForTray"_s);
    look->setInterval(100);
    QVERIFY(IsGone(f));
    QVERIFY(look->isActive());
    f.Desk.IsTrayThere = false;
    QTRY_VERIFY_WITH_TIMEOUT(f.Window->isVisible() && !f.Window->isMinimized(), 2000);
    QVERIFY(!look->isActive());
    QVERIFY(!IsGone(f));
}

void tst_Tray::MenuRows()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    f.App->Option().HideAtMinimazed = true;
    QCOMPARE(f.Find<QMenu>(u"mnuTray"_s)->defaultAction(), f.Action(u"mnuTrayShow"_s));
    QVERIFY(IsGone(f));
    f.Action(u"mnuTrayNewSub2"_s)->trigger();
    QCOMPARE(f.Desk.Opened.size(), 1);
    QVERIFY(f.Window->isHidden());
    f.Action(u"mnuTrayBBSSub2"_s)->trigger();
    QCOMPARE(f.Viewer().CurrentBoard(), 16);
    QVERIFY(f.Window->isVisible() && !f.Window->isMinimized());
    QTest::qWait(CTrayHiding::ComingMs);
    QVERIFY(IsGone(f));
    f.Action(u"mnuTrayShow"_s)->trigger();
    QVERIFY(f.Window->isVisible());
    QTest::qWait(CTrayHiding::ComingMs);
    QVERIFY(IsGone(f));
    f.Action(u"mnuTrayExit"_s)->trigger();
    QTRY_COMPARE(f.ClosedCount, 1);
    QVERIFY(!TrayOf(f).Visible());
}

void tst_Tray::ABoxComesFirst()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    f.App->Option().HideAtMinimazed = true;
    InBox(f, [&f](QWidget& Box) {
        QVERIFY(!IsGone(f)); // somebody waits for the box
        for (const QString& row : {u"mnuTrayBBSSub2"_s, u"mnuTrayLoad"_s, u"mnuTrayNewSub1"_s, u"mnuTrayShow"_s})
            f.Action(row)->trigger();
        QCOMPARE(QApplication::activeModalWidget(), &Box);
        QVERIFY(Box.isActiveWindow() && !f.Window->isMinimized());
        Box.close();
    });
    f.Action(u"mnuHelpVerinfo"_s)->trigger();
    QCOMPARE(f.Viewer().CurrentBoard(), 3);
    QVERIFY(f.Desk.Opened.isEmpty() && !f.Find<frmLoadDlg>({})->IsLoad());
}

void tst_Tray::Blinking()
{
    QHash<QByteArray, int> numbers;
    QString shown;
    CLoopServer server;
    server.SetDefault(CLoopServer::Silence());
    CWindowFixture f(server.Url(u"/cgi-bin/keyaki.cgi"_s).toString());
    QVERIFY(f.Start());
    f.Find<QTimer>(u"tmrBlinkIcon"_s)->setInterval(30);
    const auto bytes = [](const QIcon& Icon) {
        const QImage image = Icon.pixmap(QSize(22, 22), 1.0).toImage();
        return QByteArray(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes());
    };
    for (int frame = 1; frame <= 4; ++frame)
        numbers.insert(bytes(CIconSet::Picture(u"SMALLICON%1"_s.arg(frame))), frame);
    QCOMPARE(numbers.size(), 4);
    connect(f.Window.get(), &QWidget::windowIconChanged, this, [&](const QIcon& Icon) {
        shown += QString::number(numbers.value(bytes(Icon)));
        if (shown.size() == 6)
            QTest::keyClick(f.Window.get(), Qt::Key_Escape); // the run's cancel key
    });
    const auto inTray = [&] { return numbers.value(bytes(TrayOf(f).Icon())); };
    QCOMPARE(inTray(), 4);
    QTest::keyClick(f.Window.get(), Qt::Key_F5);
    QCOMPARE(shown, u"1234124"_s);
    QCOMPARE(inTray(), 4);
    f.App->Option().BlinkIcon = false;
    QTimer::singleShot(200, f.Window.get(), [&] { QTest::keyClick(f.Window.get(), Qt::Key_Escape); });
    f.Action(u"mnuTrayLoad"_s)->trigger();
    QCOMPARE(shown, u"12341244"_s);
}

void tst_Tray::Options()
{
    CWindowFixture f;
    f.Add(1, 60);
    QVERIFY(f.Start());
    InBox(f, [](QWidget& Box) {
        Box.findChild<QCheckBox*>(u"chkAddTaskTray"_s)->setChecked(false);
        QTest::keyClick(&Box, Qt::Key_Tab, Qt::ControlModifier);
        Box.close();
    });
    f.Action(u"mnuToolOption"_s)->trigger();
    QVERIFY(TrayOf(f).Visible()); // nothing was confirmed
    f.Action(u"mnuMsgFind"_s)->trigger();
    InBox(f, [](QWidget& Box) {
        QVERIFY(Box.findChild<QWidget*>(u"uspnTimeout"_s)->isVisible()); // the tab that was left
        Box.findChild<QCheckBox*>(u"chkUseRegExp"_s)->click();
        Box.findChild<QCheckBox*>(u"chkAddTaskTray"_s)->setChecked(false);
        Box.findChild<QWidget*>(u"uspnAddMax"_s)->setProperty("value", 20);
        PressOk(Box);
    });
    f.Action(u"ToolbarOption"_s)->trigger();
    QVERIFY(!TrayOf(f).Visible());
    QCOMPARE(f.Find<QCheckBox>(u"chkUseRegExp"_s)->isChecked(), f.App->Option().UseRegExp); // of the find dialog
    QCOMPARE(f.Action(u"mnuBBSViewSub0"_s)->text(), u"最新の20件(&T)"_s);
    InBox(f, [](QWidget& Box) {
        Box.findChild<QCheckBox*>(u"chkAddTaskTray"_s)->setChecked(true);
        PressOk(Box);
    });
    f.Action(u"mnuToolOption"_s)->trigger();
    QVERIFY(TrayOf(f).Visible());
}

void tst_Tray::BoardProperties()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    InBox(f, [&f](QWidget& Box) {
        Box.findChild<QLineEdit*>(u"txtName"_s)->setText(u"新しい名前"_s);
        f.Run(u"UPDATE BBS SET VisitLoad = True, ListOrder = 30 WHERE BBS_ID = 3"_s); // as its other pages do
        PressOk(Box);
    });
    QTest::keyClick(f.Window.get(), Qt::Key_F8, Qt::AltModifier);
    QCOMPARE(f.Rows(u"SELECT BBS_Name FROM BBS WHERE BBS_ID = 3"_s), u"新しい名前"_s);
    QCOMPARE(f.Window->windowTitle(), u"新しい名前 - "_s + f.App->AppTitle());
    QTest::qWait(10); // for what was in the menus before to go
    QVERIFY(f.Action(u"#003"_s)->text().endsWith(u"新しい名前"_s));
    QCOMPARE(f.Viewer().BoardProperty().ListOrder, f.Rows(u"SELECT ListOrder FROM BBS WHERE BBS_ID = 3"_s).toInt());
}

QTEST_MAIN(tst_Tray)
#include "tst_Tray.moc"
