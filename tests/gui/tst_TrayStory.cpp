// tests/gui/tst_TrayStory.cpp
// The window and a real tray: an X server, a window manager and a panel of this test's own, driven by mouse and keys.
// Skipped where one of them is not installed.

#include "mainwin/CTray.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QCursor>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTimer>

#include <csignal>
#include <sys/prctl.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int StartMs = 5000;
constexpr QPoint IconPlace(1014, 758); // the panel lies in the right lower corner and holds nothing else

/// Ends when it goes out of scope, and with this program, whichever way that ends.
class CChildProgram : public QProcess
{
public:
    CChildProgram()
    {
        setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
        setProcessChannelMode(ForwardedErrorChannel);
    }
    ~CChildProgram() override { End(); }

    bool Run(const QString& Program, const QStringList& Arguments = {})
    {
        start(Program, Arguments);
        return waitForStarted(StartMs);
    }

    void End()
    {
        kill();
        waitForFinished(StartMs);
    }
};

/// The screen must be there before the toolkit looks for one.
struct CStage
{
    CChildProgram Screen;
    CChildProgram Manager;
    CChildProgram Panel;

    QString Begin()
    {
        for (const QString& tool : {u"Xvfb"_s, u"openbox"_s, u"trayer"_s, u"xdotool"_s}) {
            if (QStandardPaths::findExecutable(tool).isEmpty())
                return tool + u" is not installed"_s;
        }
        Screen.setProcessChannelMode(QProcess::SeparateChannels);
        // The server finds a free number and tells it when it is ready.
        if (!Screen.Run(u"Xvfb"_s,
                        {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1024x768x24"_s, u"-nolisten"_s, u"tcp"_s}) ||
            !Screen.waitForReadyRead(StartMs))
            return u"no screen: "_s + QString::fromLocal8Bit(Screen.readAllStandardError());
        qputenv("DISPLAY", ":" + Screen.readAllStandardOutput().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb");
        return Manager.Run(u"openbox"_s) ? QString() : u"no window manager"_s;
    }

    bool BeginPanel()
    {
        return Panel.Run(u"trayer"_s, {u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--widthtype"_s,
                                       u"request"_s, u"--height"_s, u"24"_s, u"--SetPartialStrut"_s, u"true"_s});
    }
};

CStage* Stage = nullptr;
QString Missing;

void Mouse(const QStringList& What)
{
    QProcess::execute(u"xdotool"_s, QStringList{u"mousemove"_s, QString::number(IconPlace.x()),
                                                QString::number(IconPlace.y()), u"sleep"_s, u"0.1"_s} +
                                        What);
}

void Keys(const QStringList& Names) { QProcess::execute(u"xdotool"_s, QStringList{u"key"_s} + Names); }

/// What the screen shows at the place of the icon, to tell the program's blue tile from anything else.
bool IsIconThere()
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    int blue = 0;
    for (int x = -8; x < 8; ++x) {
        for (int y = -8; y < 8; ++y)
            blue += screen.pixelColor(IconPlace + QPoint(x, y)) == QColor(0x1f, 0x6f, 0xb5) ? 1 : 0;
    }
    return blue > 30;
}

/// Nobody is so quick that the window manager has not heard yet.
bool HidesByKey(const CWindowFixture& F)
{
    Keys({u"Escape"_s});
    QTest::qWait(500);
    return F.Window->isHidden();
}

bool IsOpen(const CWindowFixture& F) { return F.Window->isVisible() && !F.Window->isMinimized(); }

} // namespace

class tst_TrayStory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void OneDay();
};

void tst_TrayStory::OneDay()
{
    if (!Missing.isEmpty())
        QSKIP(qPrintable(Missing));
    CWindowFixture f;
    f.WriteIni("[Option]\r\nHideAtMinimazed=True\r\n");
    QTimer looking; // the scripted desktop knows the tray from the real one
    connect(&looking, &QTimer::timeout, this, [&f] { f.Desk.IsTrayThere = QSystemTrayIcon::isSystemTrayAvailable(); });
    looking.start(50);
    QVERIFY(f.Start());
    QTest::qWait(200);
    Keys({u"Escape"_s});
    QTRY_VERIFY(f.Window->isMinimized());
    QTest::qWait(400);
    QVERIFY(f.Window->isVisible()); // there is no panel yet

    QVERIFY(Stage->BeginPanel());
    QTRY_VERIFY(IsIconThere()); // it came by itself
    Mouse({u"click"_s, u"1"_s});
    QTRY_VERIFY(IsOpen(f) && f.Window->isActiveWindow());
    const QRect place = f.Window->geometry();
    QVERIFY(HidesByKey(f));
    Mouse({u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
    QTRY_VERIFY(IsOpen(f) && f.Window->isActiveWindow());
    QTRY_COMPARE(f.Window->geometry(), place);

    f.Window->showMaximized();
    QTRY_VERIFY(f.Window->width() > 1000);
    QVERIFY(HidesByKey(f));
    Mouse({u"click"_s, u"3"_s});
    QTRY_VERIFY(f.Find<QMenu>(u"mnuTray"_s)->isVisible());
    QProcess::execute(u"xdotool"_s, {u"mousemove"_s, u"300"_s, u"600"_s, u"click"_s, u"1"_s});
    QTRY_VERIFY(!f.Find<QMenu>(u"mnuTray"_s)->isVisible());
    Mouse({u"click"_s, u"3"_s}); // the menu with keys alone: the second board
    QTRY_VERIFY(f.Find<QMenu>(u"mnuTray"_s)->isVisible());
    Keys({u"Down"_s, u"Down"_s, u"Right"_s, u"Down"_s, u"Return"_s});
    QTRY_COMPARE(f.Viewer().CurrentBoard(), 16);
    QTRY_VERIFY(IsOpen(f) && f.Window->isMaximized() && f.Window->width() > 1000);

    Stage->Panel.End(); // the panel is started anew
    QTRY_VERIFY(!IsIconThere());
    QVERIFY(Stage->BeginPanel());
    QTRY_VERIFY(IsIconThere());
    QVERIFY(HidesByKey(f));
    Stage->Panel.End(); // now for good
    QTRY_VERIFY_WITH_TIMEOUT(IsOpen(f), 8000);

    QVERIFY(Stage->BeginPanel());
    QTRY_VERIFY(IsIconThere());
    QVERIFY(HidesByKey(f));
    Mouse({u"click"_s, u"3"_s});
    QTRY_VERIFY(f.Find<QMenu>(u"mnuTray"_s)->isVisible());
    Keys({u"x"_s});
    QTRY_COMPARE(f.ClosedCount, 1);
    QTRY_VERIFY(!IsIconThere());
    f.End();
    QVERIFY(f.Start());
    QTRY_COMPARE(f.Window->geometry(), place);
}

int main(int Count, char* Arguments[])
{
    CStage stage;
    Stage = &stage;
    Missing = stage.Begin();
    QApplication toolkit(Count, Arguments);
    tst_TrayStory test;
    return QTest::qExec(&test, Count, Arguments);
}

#include "tst_TrayStory.moc"
