// tests/viewer/tst_CFinder.cpp
// Find steps over the real viewer: where they stop, and what they leave alone.

#include "board/work_watch.h"
#include "tests/viewer/CViewerFixture.h"
#include "viewer/CFinder.h"

#include <QTest>

using namespace Qt::StringLiterals;
using BodyRange = ViewerHost::BodyRange;

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
    QTest::addColumn<QString>("mode"); // "plain", "exact" or "ignoring case"
    QTest::addColumn<QString>("sought");
    QTest::addColumn<QStringList>("bodies");
    QTest::addColumn<BodyRange>("selected"); // in the first one, to begin with
    QTest::addColumn<QString>("steps");      // > forward, < back
    QTest::addColumn<QString>("places");
    const auto row = [](const char* What, const QString& Mode, const QString& Sought, const QStringList& Bodies,
                        BodyRange Selected, const QString& Steps, const QString& Places) {
        QTest::newRow(What) << Mode << Sought << Bodies << Selected << Steps << Places;
    };
    const QString plain = u"plain"_s;
    const QString exact = u"exact"_s;
    row("to the end and back", plain, u"b"_s, {u"abb"_s, u"x"_s, u"b"_s}, {}, u">>>>><<<<<"_s,
        u"0:1+1 0:2+1 2:0+1 none none 0:2+1 0:1+1 none none none"_s);
    row("from the caret", plain, u"b"_s, {u"b b b"_s}, {1, 0}, u">"_s, u"0:2+1"_s);
    row("the selection itself is left out", plain, u"b"_s, {u"b b b"_s}, {1, 3}, u"<"_s, u"0:0+1"_s);
    row("last of the numbers", exact, u"[0-9]+"_s, {u"a1 b22 c333"_s}, {11, 0}, u"<<<<"_s, u"0:8+3 0:4+2 0:1+1 none"_s);
    row("last of the message before", exact, u"[0-9]+"_s, {u"1"_s, u"1 22"_s, u"x"_s}, {}, u">>><<"_s,
        u"0:0+1 1:0+1 1:2+2 1:0+1 0:0+1"_s);
    row("zero-length matches", exact, u"x*"_s, {u"axxbx"_s, u"b"_s, u"x"_s}, {}, u">>>>"_s,
        u"0:1+2 0:4+1 2:0+1 none"_s);
    row("the start is that of the body", exact, u"^a"_s, {u"aaa"_s, u"ba"_s, u"ab"_s}, {1, 0}, u">"_s, u"2:0+1"_s);
    row("a word begins where it begins", exact, u"\\bcat"_s, {u"concat cat"_s}, {3, 0}, u">"_s, u"0:7+3"_s);
    row("what follows the caret counts", exact, u"cat(?!alog)|log$"_s, {u"cat catalog"_s}, {7, 0}, u"<<"_s,
        u"0:0+3 none"_s);
    row("a match is not cut by the caret", exact, u"[0-9]+"_s, {u"1 2345"_s}, {4, 0}, u"<"_s, u"0:0+1"_s);
    row("case counts", exact, u"abc"_s, {u"ABC"_s}, {}, u">"_s, u"none"_s);
    row("case does not count", u"ignoring case"_s, u"abc"_s, {u"xABC"_s}, {}, u">"_s, u"0:1+3"_s);
    row("plain text has no case and no signs", plain, u"a.C"_s, {u"abc"_s, u"x A.c"_s}, {}, u">"_s, u"1:2+3"_s);
    row("plain text by its fold", plain, u"がぱ"_s, {u"ｱｶﾞﾊﾟ ガパ"_s}, {}, u">><"_s, u"0:1+4 0:6+2 0:1+4"_s);
    row("line breaks and wide characters", plain, u"表"_s, {u"\U0001F600\r\n\r\n表\n表"_s}, {}, u">>"_s,
        u"0:6+1 0:8+1"_s);
    row("a line break", exact, u"\\n"_s, {u"a\r\nb\r\nc"_s}, {}, u">>"_s, u"0:2+1 0:5+1"_s);
}

void tst_CFinder::Steps()
{
    QFETCH(QString, mode);
    QFETCH(QString, sought);
    QFETCH(QStringList, bodies);
    QFETCH(BodyRange, selected);
    QFETCH(QString, steps);
    CFindFixture f(bodies);
    f.App.Option().UseRegExp = mode != u"plain";
    f.App.Option().IgnoreCase = mode == u"ignoring case";
    f.Host.Selected = selected;
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
