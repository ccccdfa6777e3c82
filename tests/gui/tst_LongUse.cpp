// tests/gui/tst_LongUse.cpp
// What is done over and over in one run leaves nothing behind: no object, no widget, no entry.

#include "boardd/CBoardServer.h"
#include "load/frmLoadDlg.h"
#include "query/CStatementBox.h"
#include "query/frmSQL.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTextDocument>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace
{

struct Kept
{
    qsizetype Objects = 0; ///< below the window
    qsizetype Windows = 0; ///< of the program
    qsizetype Actions = 0; ///< of all menus
    int UndoSteps = 0;     ///< of the statement box

    bool operator==(const Kept&) const = default;
};

} // namespace

class tst_LongUse : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void NothingIsLeftBehind_data();
    void NothingIsLeftBehind();

private:
    static void ChangeBoard(CWindowFixture& F, int Round);
    static void Receive(CWindowFixture& F, int Round);
    static void Query(CWindowFixture& F, int Round);
    static Kept Count(const CWindowFixture& F);
};

void tst_LongUse::ChangeBoard(CWindowFixture& F, int Round)
{
    F.Action(u"mnuBBSMoveSub%1"_s.arg(1 + Round % 3))->trigger();
    F.Action(u"mnuBBSViewSub%1"_s.arg(Round % 4))->trigger();
    for (const QString& menu : {u"mnuBBS"_s, u"mnuMsg"_s})
        Q_EMIT F.Find<QMenu>(menu)->aboutToShow();
}

void tst_LongUse::Receive(CWindowFixture& F, int)
{
    F.Viewer().SelectBoard(3);
    F.Run(u"DELETE FROM Message WHERE BBS_ID = 3"_s);
    F.Viewer().BoardProperty().SetNoReadPoint(F.Viewer().BoardProperty().NoReadPoint() - 5);
    F.Action(u"mnuBBSLoad"_s)->trigger();
    QVERIFY(F.Window->findChild<frmLoadDlg*>()->isVisible());
    F.Window->findChild<frmLoadDlg*>()->close();
}

void tst_LongUse::Query(CWindowFixture& F, int Round)
{
    QTimer::singleShot(0, F.Window.get(), [&F, Round] {
        auto* dialog = F.Window->findChild<frmSQL*>();
        dialog->findChild<CStatementBox*>()->ReplaceStatement(
            Round % 2 ? u"SELECT * FROM Message"_s : u"SELECT BBS_ID AS a%1 FROM BBS"_s.arg(Round));
        dialog->findChild<QPushButton*>(u"cmdExec"_s)->click();
    });
    F.Action(u"mnuMsgQuery"_s)->trigger();
}

Kept tst_LongUse::Count(const CWindowFixture& F)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    Kept kept{F.Window->findChildren<QObject*>().size(), QApplication::topLevelWidgets().size(), 0, 0};
    for (const QMenu* menu : F.Window->findChildren<QMenu*>())
        kept.Actions += menu->actions().size();
    if (const auto* box = F.Window->findChild<CStatementBox*>())
        kept.UndoSteps = box->document()->availableUndoSteps();
    return kept;
}

void tst_LongUse::NothingIsLeftBehind_data()
{
    QTest::addColumn<void (*)(CWindowFixture&, int)>("work");
    QTest::newRow("board changes") << &tst_LongUse::ChangeBoard;
    QTest::newRow("receives") << &tst_LongUse::Receive;
    QTest::newRow("queries") << &tst_LongUse::Query;
}

void tst_LongUse::NothingIsLeftBehind()
{
    using Work = void (*)(CWindowFixture&, int);
    QFETCH(Work, work);
    CBoardServer server({});
    QVERIFY2(server.Start(), qPrintable(server.ErrorText()));
    CWindowFixture f(server.Url(u"/cgi-bin/keyaki.cgi"_s).toString());
    f.Add(1, 30);
    QVERIFY(f.Start());
    constexpr int few = 4; // each kind of round was done once: what is made when first asked for is there
    for (int round = 0; round < few; ++round)
        work(f, round);
    const Kept before = Count(f);
    QVERIFY(before.Objects > 100);
    for (int round = 0; round < 10 * few; ++round)
        work(f, round);
    const Kept after = Count(f);
    const QString told = u"%1 objects became %2, %3 actions %4"_s.arg(before.Objects)
                             .arg(after.Objects)
                             .arg(before.Actions)
                             .arg(after.Actions);
    QVERIFY2(after == before, qPrintable(told));
}

QTEST_MAIN(tst_LongUse)

#include "tst_LongUse.moc"
