// bench/bench_ListMemory.cpp
// Memory that showing 100,000 messages takes, with the view of the list, against their texts as UTF-16 bytes (bodies of
// 300 units on average): at most 2 times. No time is measured, so this prints its ratio itself.

#include "bench/support/CViewerOnDatabase.h"
#include "bench/support/Samples.h"
#include "mainwin/CListView.h"
#include "platform/dao/Database.h"
#include "viewer/mdlColumns.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <malloc.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint32 Board = 3;
constexpr int MessageCount = 100'000;
constexpr double Aim = 2.0;
constexpr double MiB = 1024 * 1024;

/// What the program has asked for and not given back: large blocks lie outside of the arena.
double UsedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

double TextBytes(const CMessageList& List)
{
    double units = 0;
    for (int row = 0; row < List.Count(); ++row) {
        const CMessage& message = List.Item(row).Message;
        for (const QString* text :
             {&message.Subject, &message.HomePage, &message.Mail, &message.PostName, &message.Body})
            units += double(text->size());
    }
    return units * 2;
}

double BodyUnits(const CMessageList& List)
{
    double units = 0;
    for (int row = 0; row < List.Count(); ++row)
        units += double(List.Item(row).Message.Body.size());
    return units / List.Count();
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    if (!mdlSamples::MakeDatabase(folder.path() + u"/log.mdb"_s, Board, MessageCount))
        return 1;
    CViewerOnDatabase program(folder.path() + u'/', Board);
    CMessageList& list = program.Viewer.List(0);
    CListView view(
        list, program.Viewer.Model(0), [](qint32) { return QIcon(); }, nullptr);
    view.resize(1000, 700);
    view.show();
    QApplication::processEvents();
    // The database keeps the pages that it has read, whatever is shown of them.
    program.App.LogDB()->OpenRecordset(u"SELECT * FROM Message"_s)->MoveLast();
    QApplication::processEvents();
    const double before = UsedBytes();
    program.ShowAll();
    QApplication::processEvents();
    const double used = UsedBytes() - before;
    list.Sort(mdlColumns::Subject, CMessageList::Order::Ascending);
    program.Viewer.ShowThread(0);
    list.InvertSelection();
    QApplication::processEvents();
    const double later = UsedBytes() - before;
    const double texts = TextBytes(list);
    std::printf(
        "%d messages, bodies of %.0f units: texts %.1f MiB, shown %.1f MiB, after sorting and threads %.1f MiB\n",
        list.Count(), BodyUnits(list), texts / MiB, used / MiB, later / MiB);
    std::printf("ratio shown list to texts: %.2f (aim: at most %.2f)\n", qMax(used, later) / texts, Aim);
    return list.Count() == MessageCount ? 0 : 1;
}
