// tests/gui/tst_Accessibility.cpp
// Every window: what can have the focus has a name for screen readers, and Tab reaches each of it once.

#include "board/CBBSProperty.h"
#include "controls/JobWindow.h"
#include "load/frmLoadDlg.h"
#include "mainwin/CStatusPanels.h"
#include "mainwin/frmAbout.h"
#include "mainwin/frmFind.h"
#include "mainwin/frmSplash.h"
#include "platform/desktop/CDesktopQt.h"
#include "query/frmSQL.h"
#include "settings_ui/frmProperty.h"
#include "tests/gui/CWindowFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSet>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

/// Calls Look with the modal window that comes next, and closes it.
void WhenModal(const std::function<void(QWidget&)>& Look)
{
    QTimer::singleShot(0, qApp, [Look] {
        QWidget* window = QApplication::activeModalWidget();
        if (!window) {
            WhenModal(Look);
            return;
        }
        Look(*window);
        window->close();
    });
}

/// A dialog counts as active already while its owner is.
bool Activated(QWidget& Window)
{
    Window.activateWindow();
    return QTest::qWaitFor([&Window] { return QApplication::activeWindow() == &Window; });
}

QString Describe(const QWidget& Widget)
{
    return QString::fromLatin1(Widget.metaObject()->className()) + u' ' + Widget.objectName();
}

QList<QWidget*> Focusable(const QWidget& Window, Qt::FocusPolicy Policy)
{
    QList<QWidget*> found;
    for (QWidget* widget : Window.findChildren<QWidget*>()) {
        const bool isOwn = widget->window() == &Window && !widget->focusProxy();
        if (isOwn && widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Policy) == Policy)
            found.append(widget);
    }
    return found;
}

/// Access keys that two of the things to be seen have: neither would get it.
QStringList KeyFaults(const QWidget& Window)
{
    QStringList keys;
    QStringList faults;
    for (const QWidget* widget : Window.findChildren<QWidget*>()) {
        const QString name = widget->property("text").isValid() ? u"text"_s : u"title"_s;
        const QKeySequence key = QKeySequence::mnemonic(widget->property(name.toLatin1()).toString());
        if (key.isEmpty() || !widget->isVisible() || !widget->isEnabled() || qobject_cast<const QLineEdit*>(widget))
            continue;
        if (keys.contains(key.toString()))
            faults << u"twice: "_s + key.toString();
        keys << key.toString();
    }
    return faults;
}

/// What a reader who does not see the window could not tell apart.
QStringList Faults(const QWidget& Window)
{
    QStringList faults;
    if (Window.windowTitle().isEmpty())
        faults << u"no title"_s;
    for (QWidget* widget : Focusable(Window, Qt::ClickFocus) + Focusable(Window, Qt::TabFocus)) {
        const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        if (!face || face->text(QAccessible::Name).trimmed().isEmpty())
            faults << u"no name: "_s + Describe(*widget);
    }
    for (const QLabel* label : Window.findChildren<QLabel*>()) {
        const bool isMnemonic = label->text().contains(u'&') && label->textFormat() != Qt::PlainText;
        if (isMnemonic && (!label->buddy() || label->buddy()->focusPolicy() == Qt::NoFocus))
            faults << u"no buddy: "_s + label->text();
    }
    faults.removeDuplicates();
    return faults + KeyFaults(Window);
}

/// The stops of one round with Tab (or Shift+Tab), beginning at the one that has the focus.
QList<QWidget*> Round(Qt::Key Key, Qt::KeyboardModifiers With = Qt::NoModifier)
{
    QList<QWidget*> round;
    while (QApplication::focusWidget() && !round.contains(QApplication::focusWidget()) && round.size() < 50) {
        round << QApplication::focusWidget();
        QTest::keyClick(QApplication::focusWidget(), Key, With);
    }
    return round;
}

QStringList Names(const QList<QWidget*>& Widgets)
{
    QStringList names;
    for (const QWidget* widget : Widgets)
        names << (widget->objectName().isEmpty() ? Describe(*widget) : widget->objectName());
    return names;
}

/// Stops that Tab leaves out, or where it goes though nothing is to be seen there.
QStringList TabFaults(const QWidget& Window)
{
    const QList<QWidget*> stops = Focusable(Window, Qt::TabFocus);
    if (stops.isEmpty())
        return {};
    if (!QApplication::focusWidget())
        stops.first()->setFocus();
    const QList<QWidget*> round = Round(Qt::Key_Tab);
    QList<QWidget*> back = Round(Qt::Key_Backtab, Qt::ShiftModifier);
    QStringList faults;
    for (QWidget* stop : stops) {
        if (!round.contains(stop))
            faults << u"never reached: "_s + Describe(*stop);
    }
    for (QWidget* stop : round) {
        const QRect place(stop->mapTo(stop->window(), QPoint()), stop->size());
        if (!stop->isVisible() || stop->window() != &Window || !Window.rect().intersects(place))
            faults << u"nothing to see: "_s + Describe(*stop);
    }
    if (QSet<QWidget*>(back.begin(), back.end()) != QSet<QWidget*>(round.begin(), round.end()))
        faults << u"another round backwards: "_s + Names(back).join(u' ');
    return faults;
}

QStringList AllFaults(const QWidget& Window) { return Faults(Window) + TabFaults(Window); }

} // namespace

class tst_Accessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void MainWindow();
    void ReceiveDialog();
    void FindDialog();
    void Modal_data();
    void Modal();
    void Splash();
};

void tst_Accessibility::MainWindow()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    f.Find<QWidget>(u"lsvMsgList0"_s)->setFocus();
    QCOMPARE(AllFaults(*f.Window).join(u'\n'), QString());
    QCOMPARE(Names(Round(Qt::Key_Tab)), QStringList({u"lsvMsgList0"_s, u"rtbView"_s, u"cmbFindText"_s, u"uclMailto"_s,
                                                     u"uclHomepage"_s, u"picBar"_s}));
    f.Find<QWidget>(u"uclMailto"_s)->setFocus();
    f.Find<CStatusPanels>(u"StatusBar"_s)->SetStyle(1); // takes the links away
    QCOMPARE(QApplication::focusWidget(), f.Find<QWidget>(u"lsvMsgList0"_s));
    f.Find<CStatusPanels>(u"StatusBar"_s)->SetStyle(0);
    f.Viewer().LoadList(u"SELECT BBS_Name FROM BBS"_s, CViewer::ResultList); // a raw table; the links stay
    QCOMPARE(AllFaults(*f.Window).join(u'\n'), QString());
    f.Action(u"mnuBBSSetNoRead"_s)->trigger();
    QCOMPARE(Faults(*f.Window).join(u'\n'), QString());
    for (const QAction* top : f.Window->menuBar()->actions())
        QVERIFY2(top->text().contains(u'&'), qPrintable(top->text()));
    for (const QAbstractButton* button : f.Find<QWidget>(u"Toolbar"_s)->findChildren<QAbstractButton*>()) {
        const QAccessibleInterface* face = QAccessible::queryAccessibleInterface(const_cast<QAbstractButton*>(button));
        QVERIFY2(!face->text(QAccessible::Name).isEmpty(), qPrintable(button->objectName()));
    }
}

void tst_Accessibility::ReceiveDialog()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    auto* dialog = f.Window->findChild<frmLoadDlg*>();
    dialog->ShowDialog(u"受信"_s, f.Window.get());
    QVERIFY(Activated(*dialog));
    QCOMPARE(AllFaults(*dialog).join(u'\n'), QString());
    CBBSProperty board(*f.App);
    QVERIFY(board.GetProperty(3));
    board.URL.clear();
    dialog->InitNewBBS(board, false);
    QCOMPARE(AllFaults(*dialog).join(u'\n'), QString());
}

void tst_Accessibility::FindDialog()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    frmFind dialog(*f.App, f.Window.get());
    dialog.ShowDialog(u"題名"_s, {});
    QVERIFY(Activated(dialog));
    QCOMPARE(AllFaults(dialog).join(u'\n'), QString());
}

void tst_Accessibility::Modal_data()
{
    QTest::addColumn<std::function<void(CWindowFixture&)>>("open");
    QTest::addColumn<QString>("stops"); // in the order of Tab, where it is not the only one there could be
    const auto row = [](const char* Name, std::function<void(CWindowFixture&)> Open, const QString& Stops = {}) {
        QTest::newRow(Name) << Open << Stops;
    };
    row(
        "about", [](CWindowFixture& F) { frmAbout::ShowVersionInfo(F.Desk, F.Window.get()); },
        u"cmdOK uclSupport uclCommunity"_s);
    row(
        "query", [](CWindowFixture& F) { frmSQL(*F.App, F.Window.get()).ShowSQL(u"SELECT 1"_s, F.Window.get()); },
        u"txtSQL picBar cmbTable lstField cmdExec cmdCancel cmbQuery cmdSave"_s);
    for (const bool isOfBoard : {false, true}) {
        for (qint32 tab = 1; tab <= (isOfBoard ? 4 : 6); ++tab) {
            const auto show = [isOfBoard, tab](CWindowFixture& F) {
                qint32 number = tab;
                frmProperty dialog(*F.App, F.Window.get());
                CBBSProperty& board = F.Viewer().BoardProperty();
                isOfBoard ? dialog.ShowProperty(board, number) : dialog.ShowOption(board, number);
            };
            const bool isFirst = tab == 1 && !isOfBoard;
            row(qPrintable(u"%1, page %2"_s.arg(isOfBoard ? u"board"_s : u"options"_s).arg(tab)), show,
                isFirst
                    ? u"uspnAddMax uspnReadTiming txtReplyHeader txtDateFormat txtIconFilePath cmdBrowseIconFilePath "
                      "chkNoReadBold chkSaveSQLDialogPosition chkAddTaskTray chkHideAtMinimazed cmdOK cmdCancel "
                      "qt_tabwidget_tabbar"_s
                    : QString());
        }
    }
    row("question", [](CWindowFixture&) {
        CDesktopQt().MessageBox(u"よろしいですか？"_s, u"題"_s, Desktop::Icon::Question, Desktop::Buttons::YesNoCancel,
                                Desktop::Answer::Yes);
    });
    row("input", [](CWindowFixture&) { CDesktopQt().InputBox(u"名前"_s, u"題"_s, {}); });
    row("job", [](CWindowFixture& F) {
        const auto report = mdlJobWindow::Open(F.Window.get(), u"最適化しています"_s);
        while (report(50))
            QTest::qWait(20);
    });
}

void tst_Accessibility::Modal()
{
    QFETCH(std::function<void(CWindowFixture&)>, open);
    QFETCH(QString, stops);
    CWindowFixture f;
    QVERIFY(f.Start());
    std::optional<QStringList> faults;
    QString round;
    WhenModal([&](QWidget& Window) {
        if (!Activated(Window))
            return;
        round = Names(Round(Qt::Key_Tab)).join(u' ');
        faults = AllFaults(Window);
    });
    open(f);
    QVERIFY(faults);
    if (!stops.isEmpty())
        QCOMPARE(round, stops);
    QCOMPARE(faults->join(u'\n'), QString());
}

void tst_Accessibility::Splash()
{
    frmSplash splash;
    splash.show();
    QCOMPARE(AllFaults(splash).join(u'\n'), QString());
}

QTEST_MAIN(tst_Accessibility)
#include "tst_Accessibility.moc"
