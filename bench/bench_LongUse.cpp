// bench/bench_LongUse.cpp
// Memory over a long evening in the real window: 1,000 board changes, 1,000 receives, 1,000 queries and 1,000 finds.
// What is in use, and what the system has given, after 400, 700 and 1,000 rounds against that after 100: the heap at
// most 1.02 times, so that nothing grows with the rounds. No time is measured, so this prints its ratios itself.

#include "bench/support/CServerProcess.h"
#include "bench/support/Samples.h"
#include "load/frmLoadDlg.h"
#include "mainwin/CMessagePane.h"
#include "query/CStatementBox.h"
#include "query/frmSQL.h"
#include "tests/gui/CWindowFixture.h"

#include <QApplication>
#include <QFile>
#include <QPixmapCache>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <malloc.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int ServedCount = 300;
constexpr int KeptCount = 400; ///< messages of each of the other boards
constexpr int OtherBoards = 6;
constexpr int NewEachTime = 5;
constexpr double Aim = 1.02;
constexpr double MiB = 1024 * 1024;

/// What the program has asked for and not given back: large blocks lie outside of the arena.
double UsedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

double ResidentBytes()
{
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE));
}

class CEvening
{
public:
    explicit CEvening(const QString& Address);

    bool Start();
    void ChangeBoard(int Round);
    void Receive(int Round);
    void Query(int Round);
    void Find(int Round);
    bool IsQuiet() { return m_f.Desk.Verify(); }

private:
    void FillCaches();
    QList<QAction*> Boards() const;

    CWindowFixture m_f;
};

CEvening::CEvening(const QString& Address)
    : m_f(Address)
{
    m_f.Add(1, KeptCount);
    mdlSamples::CopyBoard(m_f.Folder.filePath(u"log.mdb"_s), Board, OtherBoards);
    const auto db = dao::Database::Open(m_f.Folder.filePath(u"log.mdb"_s));
    db->Execute(u"DELETE FROM Message WHERE BBS_ID = %1"_s.arg(Board));
    db->Execute(u"UPDATE BBS SET MaxCount = %1 WHERE BBS_ID = %2"_s.arg(ServedCount).arg(Board));
}

/// Before anything is measured the database keeps as many statements as it ever will.
void CEvening::FillCaches()
{
    for (int form = 0; form < 400; ++form)
        m_f.Rows(u"SELECT PostName, Count(*) AS w%1 FROM Message WHERE ID > 5 GROUP BY PostName"_s.arg(form));
}

bool CEvening::Start()
{
    if (!m_f.Start())
        return false;
    FillCaches();
    Receive(0);
    return m_f.Rows(u"SELECT Count(*) FROM Message WHERE BBS_ID = 3"_s).toInt() == ServedCount;
}

QList<QAction*> CEvening::Boards() const
{
    return m_f.Window->findChildren<QAction*>(QRegularExpression(u"^mnuBBSMoveSub[0-9]+$"_s));
}

void CEvening::ChangeBoard(int Round)
{
    const QList<QAction*> boards = Boards();
    boards.at(Round % boards.size())->trigger();
    m_f.Action(u"mnuBBSViewSub%1"_s.arg(Round % 4))->trigger();
    if (m_f.List().Count() > 0)
        m_f.Viewer().ItemClicked(0, Round % m_f.List().Count());
    m_f.Window->findChild<QMenu*>(u"mnuMsg"_s)->aboutToShow();
}

/// The newest messages are gone from the database and the unread position is before them: they come once more.
void CEvening::Receive(int Round)
{
    m_f.Viewer().SelectBoard(Board);
    if (Round > 0) {
        const qint32 last = m_f.Rows(u"SELECT Max(ID) FROM Message WHERE BBS_ID = 3"_s).toInt() - NewEachTime;
        m_f.Run(u"DELETE FROM Message WHERE BBS_ID = 3 AND ID > %1"_s.arg(last));
        m_f.Viewer().BoardProperty().SetNoReadPoint(last);
    }
    m_f.Action(u"mnuBBSLoad"_s)->trigger();
    m_f.Window->findChild<frmLoadDlg*>()->close();
}

/// Messages and tables in turn; each statement has its own text, every tenth its own form. Every fifth is refused.
void CEvening::Query(int Round)
{
    const QString form = u"a%1"_s.arg(Round / 10);
    const QString messages =
        u"SELECT * FROM Message AS %1 WHERE BBS_ID = 101 AND ID > %2"_s.arg(form).arg(340 + Round % 50);
    const QString table = u"SELECT PostName, Count(*) AS %1 FROM Message WHERE ID > %2 GROUP BY PostName"_s;
    const QString sql = Round % 2 ? messages : table.arg(form).arg(Round % 50);
    bool isRefused = Round % 5 == 0;
    if (isRefused)
        m_f.Desk.Expect(u"実行時エラー"_s);
    m_f.Desk.Boxes.clear(); // the bench keeps them, not the program
    std::function<void()> write = [&] {
        auto* dialog = m_f.Window->findChild<frmSQL*>();
        const bool comesBack = std::exchange(isRefused, false);
        if (comesBack)
            QTimer::singleShot(0, m_f.Window.get(), write);
        dialog->findChild<CStatementBox*>()->ReplaceStatement(comesBack ? sql + u" WHERE ("_s : sql);
        dialog->findChild<QPushButton*>(u"cmdExec"_s)->click();
    };
    QTimer::singleShot(0, m_f.Window.get(), write);
    m_f.Action(u"mnuMsgQuery"_s)->trigger();
    QTest::keyClick(m_f.Window.get(), Qt::Key_Escape);
}

/// A new text would stay in the drop-down list of the box.
void CEvening::Find(int Round)
{
    m_f.Viewer().SelectBoard(Board);
    m_f.Viewer().ItemClicked(0, 20 + Round % 50);
    m_f.Window->FindMessage(u"(%1|.+)"_s.arg(Round % 20), Round % 3 != 0);
}

struct Measured
{
    double Heap = 0;
    double Resident = 0;
};

/// False when the heap has grown with the rounds. Where the program was given a title, only that is done.
bool Measure(const char* Title, const std::function<void(int)>& Work)
{
    const QStringList wanted = QCoreApplication::arguments().mid(1);
    if (!wanted.isEmpty() && !wanted.contains(QString::fromLatin1(Title)))
        return true;
    Measured first;
    bool isKept = true;
    for (int round = 1; round <= 1000; ++round) {
        Work(round);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        if (round != 100 && round != 400 && round != 700 && round != 1000)
            continue;
        const Measured now{UsedBytes(), ResidentBytes()};
        if (round == 100)
            first = now;
        isKept &= now.Heap <= Aim * first.Heap;
        std::printf("%-14s %5d rounds: heap %7.2f MiB, ratio %.3f; resident %7.2f MiB, ratio %.3f\n", Title, round,
                    now.Heap / MiB, now.Heap / first.Heap, now.Resident / MiB, now.Resident / first.Resident);
        std::fflush(stdout);
    }
    return isKept;
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QPixmapCache::setCacheLimit(0); // what the style has drawn is kept up to 10 MiB, which takes thousands of rounds
    const CServerProcess server(QStringLiteral(TAVORA_BINARY_DIR "/boardd/tavora-boardd"), ServedCount);
    CEvening evening(server.BoardUrl());
    if (!evening.Start()) {
        std::fprintf(stderr, "the window did not open, or the sample boards did not answer\n");
        return 1;
    }
    bool isKept = Measure("board changes", [&](int Round) { evening.ChangeBoard(Round); });
    isKept &= Measure("receives", [&](int Round) { evening.Receive(Round); });
    isKept &= Measure("queries", [&](int Round) { evening.Query(Round); });
    isKept &= Measure("finds", [&](int Round) { evening.Find(Round); });
    std::printf("aim: heap at most %.2f times that after 100 rounds: %s\n", Aim, isKept ? "kept" : "NOT kept");
    return isKept && evening.IsQuiet() ? 0 : 1;
}
