// tests/viewer/tst_CFinder.cpp
// Find steps over the real viewer: where they stop, and what they leave alone.

#include "board/work_watch.h"
#include "tests/viewer/CViewerFixture.h"
#include "viewer/CFinder.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// The user presses Esc when Steps rows have been looked at.
class CImpatientUser : public WorkWatch
{
public:
    explicit CImpatientUser(int Steps)
        : m_left(Steps)
    {}
    void WorkBegins(Work What) override { Begun.append(What == Work::Find ? u'+' : u'?'); }
    bool WorkGoesOn() override { return m_left-- > 0; }
    void WorkEnds() override { Begun.append(u'-'); }

    QString Begun;

private:
    int m_left;
};

struct CFindFixture : CViewerFixture
{
    CFinder Finder{App, Board, Viewer, Host};

    /// Row r shows Bodies[r]; row 0 is on view.
    explicit CFindFixture(const QStringList& Bodies)
    {
        std::vector<CMessageItem> items;
        for (int row = 0; row < Bodies.size(); ++row) {
            items.push_back(MakeItem(MakeMessage(3, int(Bodies.size()) - row)));
            items.back().Message.Body = Bodies[row];
        }
        List(0).Fill(std::move(items), {});
        Viewer.ShowMessage(0, 0, false);
    }

    /// "row:start+length", or why there is none.
    QString Find(const QString& Text, bool Forward)
    {
        const CFinder::Outcome outcome = Finder.Find(Text, Forward);
        if (outcome == CFinder::Outcome::NotFound)
            return u"none"_s;
        return outcome == CFinder::Outcome::BrokenOff ? u"broken off"_s : Place();
    }
    QString Place()
    {
        return u"%1:%2+%3"_s.arg(List(Viewer.CurrentList()).Focus()).arg(Host.Selected.Start).arg(Host.Selected.Length);
    }
};

} // namespace

class tst_CFinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Steps_data();
    void Steps();
    void KeepsTheFocusedMessageOfSeveral();
    void NothingToSearch();
    void EscLeavesAllAsItWas();
    void RawTable();
    void SaysWhatIsWrong();
};

void tst_CFinder::Steps_data()
{
    // mode: "plain", "exact" or "ignoring case"; start: of what is selected in the first body to begin with; steps: >
    // forward, < back
    mdlTable::AddRows<QString, QString, QStringList, int, int, QString, QString>(
        "find-steps.json", "Steps", {"mode", "sought", "bodies", "start", "length", "steps", "places"});
}

void tst_CFinder::Steps()
{
    QFETCH(QString, mode);
    QFETCH(QString, sought);
    QFETCH(QStringList, bodies);
    QFETCH(int, start);
    QFETCH(int, length);
    QFETCH(QString, steps);
    CFindFixture f(bodies);
    f.App.Option().UseRegExp = mode != u"plain";
    f.App.Option().IgnoreCase = mode == u"ignoring case";
    f.Host.Selected = {start, length};
    QStringList places;
    for (const QChar step : steps) {
        const QString before = f.Place();
        places.append(f.Find(sought, step == u'>'));
        if (places.last() == u"none")
            QCOMPARE(f.Place(), before);
        else
            QCOMPARE(f.Host.Body, QStringList(bodies[f.List(0).Focus()].split(u"\r\n"_s)));
    }
    QTEST(places.join(u' '), "places");
    QCOMPARE(f.Finder.Trouble(), QString());
}

void tst_CFinder::KeepsTheFocusedMessageOfSeveral()
{
    CFindFixture f({u"b"_s, u"b"_s, u"b"_s, u"a"_s});
    f.App.Option().UseRegExp = false;
    f.List(0).SetSelection({{0, 2}}, 1); // the pane goes on showing row 0
    f.Viewer.ItemClicked(0, 1);
    QCOMPARE(f.Find(u"none of it"_s, true), u"none"_s);
    QCOMPARE(f.List(0).SelectedCount(), 3);
    QCOMPARE(f.Find(u"b"_s, true), u"1:0+1"_s); // it is the focused one that has not been looked at yet
    QCOMPARE(f.List(0).SelectedRows(), std::vector<int>{1});

    f.List(0).SetSelection({{0, 3}}, 1); // shown and one of several
    f.Host.Selected = {};
    QCOMPARE(f.Find(u"b"_s, true), u"1:0+1"_s);
    QCOMPARE(f.List(0).SelectedRows(), std::vector<int>{1});
}

void tst_CFinder::NothingToSearch()
{
    CFindFixture empty({});
    QCOMPARE(empty.Find(u"a"_s, true), u"none"_s);
    QCOMPARE(empty.Find(u"a"_s, false), u"none"_s);

    CFindFixture f({u"a"_s, u"a"_s});
    f.List(0).SetSelection({}, -1); // without a focus all rows are next to it
    QCOMPARE(f.Find(u"a"_s, false), u"1:0+1"_s);
    f.List(0).SetSelection({}, -1);
    QCOMPARE(f.Find(u"a"_s, true), u"0:0+1"_s);
}

void tst_CFinder::EscLeavesAllAsItWas()
{
    CFindFixture f({u"a"_s, u"b"_s, u"c"_s, u"wanted"_s});
    f.List(0).SetSelection({{0, 2}}, 0);
    f.Host.Selected = {0, 1};
    CImpatientUser user(2);
    f.Board.SetWatch(&user);
    QCOMPARE(f.Find(u"wanted"_s, true), u"broken off"_s);
    QCOMPARE(user.Begun, u"+-"_s);
    QCOMPARE(f.Place(), u"0:0+1"_s);
    QCOMPARE(f.List(0).SelectedCount(), 3);
    QCOMPARE(f.Host.Body, QStringList(u"a"_s));
    QCOMPARE(f.Finder.Trouble(), QString());
    f.Board.SetWatch(nullptr);
}

void tst_CFinder::RawTable()
{
    CFindFixture f({u"two"_s});
    f.List(1).FillRaw({u"A"_s, u"B"_s}, {u"1"_s, u"one"_s, u"2"_s, u"two"_s, u"3"_s, u"twice"_s});
    f.Viewer.ShowList(1);
    f.Host.Selected = {};
    f.App.Option().UseRegExp = false;
    QStringList places;
    for (const bool isForward : {true, true, true, false})
        places.append(f.Find(u"tw"_s, isForward));
    QCOMPARE(places.join(u' '), u"1:0+0 2:0+0 none 1:0+0"_s);
    QCOMPARE(f.List(1).SelectedRows(), std::vector<int>{1});
    QCOMPARE(f.Host.PaneSelections, 0);
}

void tst_CFinder::SaysWhatIsWrong()
{
    const QString hopeless = QString(40, u'a') + u"bx"_s;
    CFindFixture f({hopeless, hopeless, u"aa"_s});
    QCOMPARE(f.Find(u"(a"_s, true), u"none"_s);
    QCOMPARE(f.Finder.Trouble(), u"正規表現の 1 文字目: 「(」が閉じられていません。"_s);
    QCOMPARE(f.Find(u"^(a+)+$"_s, true), u"2:0+2"_s);
    QVERIFY2(f.Finder.Trouble().contains(u"、2 件のメッセージを"_s), qPrintable(f.Finder.Trouble()));
    QCOMPARE(f.Find(u"^aa"_s, false), u"1:0+2"_s);
    QCOMPARE(f.Finder.Trouble(), QString());
}

QTEST_GUILESS_MAIN(tst_CFinder)
#include "tst_CFinder.moc"
