// tests/mainwin/tst_CListSelection.cpp
// Commands on the list's own selection come out as Qt's selection model has them.

#include "app/Settings.h"
#include "mainwin/CListSelection.h"
#include "tests/viewer/Messages.h"
#include "viewer/CMessageModel.h"
#include "viewer/mdlColumns.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CListSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SameAsQt();
    void RowsMoveUnderAShiftSelection();
};

namespace
{

using Model = QItemSelectionModel;

struct CFixture
{
    Settings Option;
    CMessageList List{Option, mdlColumns::BoardHeaders()};
    CMessageModel Items{List, Option};
    CListSelection Selection{Items, List, [] { return RowRange{0, 0}; }, nullptr};

    explicit CFixture(int Count)
    {
        std::vector<CMessageItem> items;
        for (int id = Count; id >= 1; --id)
            items.push_back(MakeItem(MakeMessage(3, id)));
        List.Fill(std::move(items), {});
    }

    QItemSelection Rows(int First, int Last) const { return {Items.index(First, 0), Items.index(Last, 0)}; }
};

std::vector<int> SelectedRows(const Model& Selection)
{
    std::vector<int> rows;
    for (int row = 0; row < Selection.model()->rowCount(); ++row) {
        if (Selection.isRowSelected(row))
            rows.push_back(row);
    }
    return rows;
}

} // namespace

/// What clicks, Ctrl, Shift and drags make of commands, in any order.
void tst_CListSelection::SameAsQt()
{
    constexpr int count = 30;
    CFixture f(count);
    Model plain(&f.Items);
    const std::vector<Model::SelectionFlags> commands{Model::ClearAndSelect, Model::Select,        Model::Deselect,
                                                      Model::Toggle,         Model::SelectCurrent, Model::ToggleCurrent,
                                                      Model::NoUpdate,       Model::Clear};
    QRandomGenerator random(20020115);
    for (int step = 0; step < 3000; ++step) {
        const int first = random.bounded(count);
        const int last = qMin(first + random.bounded(8), count - 1);
        const auto which = random.bounded(quint32(commands.size()));
        f.Selection.select(f.Rows(first, last), commands[which] | Model::Rows);
        plain.select(f.Rows(first, last), commands[which] | Model::Rows);
        QVERIFY2(f.List.SelectedRows() == SelectedRows(plain),
                 qPrintable(u"step %1, command %2, rows %3 to %4"_s.arg(step).arg(which).arg(first).arg(last)));
    }
}

/// While Shift is held a message arrives above, and one goes: the rows selected before stay the same messages.
void tst_CListSelection::RowsMoveUnderAShiftSelection()
{
    CFixture f(10); // 10 in row 0, 1 in row 9
    f.Selection.select(f.Rows(1, 1), Model::Select | Model::Rows);
    f.Selection.select(f.Rows(5, 5), Model::Select | Model::Rows);
    f.List.Add(MakeItem(MakeMessage(3, 11)));
    f.List.Remove({{3, 7}});
    f.Selection.select(f.Rows(5, 7), Model::SelectCurrent | Model::Rows);
    QCOMPARE(f.List.SelectedRows(), (std::vector<int>{2, 5, 6, 7}));
    f.List.Sort(mdlColumns::ID, CMessageList::Order::Ascending);
    f.Selection.select(f.Rows(0, 1), Model::SelectCurrent | Model::Rows);
    QCOMPARE(f.List.SelectedRows(), (std::vector<int>{0, 1}));
}

QTEST_MAIN(tst_CListSelection)
#include "tst_CListSelection.moc"
