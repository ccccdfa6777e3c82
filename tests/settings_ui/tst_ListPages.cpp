// tests/settings_ui/tst_ListPages.cpp
// The pages that choose the boards to visit and put the shown ones in order.

#include "settings_ui/COrderPage.h"
#include "settings_ui/CVisitPage.h"
#include "tests/settings_ui/CPageFixture.h"
#include "tests/support/Table.h"

#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

struct CListPages : CPageFixture
{
    CBBSProperty InView = Property();

    /// Boards 3 to 6 are A to D, with these places; there are no others.
    explicit CListPages(const QString& Places = u"0,1,2,3"_s)
    {
        Run(u"DELETE FROM BBS WHERE BBS_ID > 6"_s);
        int number = 3;
        for (const QString& place : Places.split(u','))
            Run(u"UPDATE BBS SET BBS_Name = Chr(%1), ListOrder = %2 WHERE BBS_ID = %3"_s.arg(62 + number)
                    .arg(place)
                    .arg(number)),
                ++number;
        InView.GetProperty(3);
    }

    QListWidget& List(const QString& Name) { return Find<QListWidget>(Name); }
    QString Items(const QString& Name)
    {
        QStringList texts;
        for (int row = 0; row < List(Name).count(); ++row)
            texts << (List(Name).item(row)->text() == u"[区切り線]" ? u"-"_s : List(Name).item(row)->text());
        return texts.join(u'|');
    }
    QString Column(const QString& Field)
    {
        return Rows(u"SELECT "_s + Field + u" FROM BBS ORDER BY BBS_ID"_s).replace(u' ', u',');
    }
    QPoint PlaceOf(const QString& Name, int Row) { return List(Name).visualItemRect(List(Name).item(Row)).center(); }
    void Click(const QString& Name, int Row)
    {
        QTest::mouseClick(List(Name).viewport(), Qt::LeftButton, {}, PlaceOf(Name, Row));
    }

    QPushButton& Button(QChar Sign)
    {
        static const QHash<QChar, QString> names{
            {u'+', u"cmdAdd"_s}, {u'-', u"cmdDelete"_s}, {u'^', u"cmdUp"_s}, {u'v', u"cmdDown"_s}};
        return Find<QPushButton>(names[Sign]);
    }
    QString EnabledButtons()
    {
        QString enabled;
        for (const QChar sign : u"+-^v"_s)
            enabled += Button(sign).isEnabled() ? QString(sign) : QString();
        return enabled;
    }

    /// "o1", "a1" click a row of the left or right list, "O1", "A1" twice; "+-^v" press a button by Space, "x" the
    /// Delete key in the left list.
    void Do(const QString& Step)
    {
        const QString name = Step[0].toLower() == u'o' ? u"lstOrder"_s : u"lstAll"_s;
        if (Step == u'x') {
            QTest::keyClick(&List(u"lstOrder"_s), Qt::Key_Delete);
        } else if (Step.size() == 1) {
            Button(Step[0]).setFocus();
            QTest::keyClick(&Button(Step[0]), Qt::Key_Space);
        } else {
            Click(name, Step[1].digitValue());
            if (Step[0].isUpper())
                QTest::mouseDClick(List(name).viewport(), Qt::LeftButton, {}, PlaceOf(name, Step[1].digitValue()));
        }
    }
};

} // namespace

class tst_ListPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void Order_data();
    void Order();
    void TheBoardInViewIsKept();
    void FocusStaysInThePage();
    void Visits();
    void BothPagesInStep();
};

void tst_ListPages::Order_data()
{
    // enabled: the buttons then; applied: the places of A to D after OK; accepted: whether A may be without a place
    mdlTable::AddRows<QString, QString, QString, QString, QString, QString, bool>(
        "board-pages.json", "Order", {"places", "steps", "order", "all", "enabled", "applied", "accepted"});
}

void tst_ListPages::Order()
{
    QFETCH(QString, places);
    QFETCH(QString, steps);
    QFETCH(QString, applied);
    QFETCH(bool, accepted);
    CListPages f(places);
    f.Run(u"UPDATE BBS SET VisitLoad = True"_s);
    COrderPage& page = f.Show(std::make_unique<COrderPage>(f.App, f.InView, nullptr));
    for (const QString& step : steps.split(u' ', Qt::SkipEmptyParts))
        f.Do(step);
    QCOMPARE(page.HasChanges(), steps.contains(QRegularExpression(u"[AO]|[a0-9] "_s)));
    QTEST(f.Items(u"lstOrder"_s), "order");
    QTEST(f.Items(u"lstAll"_s), "all");
    QTEST(f.EnabledButtons(), "enabled");
    QCOMPARE(f.Column(u"ListOrder"_s), places); // until OK
    if (!accepted)
        f.Desk.Expect(applied.contains(QRegularExpression(u"\\b(?<!-)[0-9]"_s))
                          ? u"現在選択されている[A]は必ず選択してください。"_s
                          : u"掲示板が選択されていません。"_s);
    QCOMPARE(page.Validate(), accepted);
    page.Apply();
    QCOMPARE(f.Column(u"ListOrder"_s), applied);
    QCOMPARE(f.Column(u"VisitLoad"_s),
             f.Column(u"ListOrder >= 0"_s).replace(u"-1"_s, u"True"_s).replace(u'0', u"False"_s));
}

void tst_ListPages::TheBoardInViewIsKept()
{
    CListPages f(u"-1,1,0,-1"_s);
    COrderPage& page = f.Show(std::make_unique<COrderPage>(f.App, f.InView, nullptr));
    f.Desk.Expect(u"現在選択されている[A]は必ず選択してください。"_s);
    QVERIFY(!page.Validate());
    QCOMPARE(f.Focus(), u"lstAll"_s); // where it can be added at once
    f.Do(u"+"_s);
    QVERIFY(page.Validate());
    QCOMPARE(f.Items(u"lstOrder"_s), u"C|B|A"_s);
    f.InView.GetProperty(99); // a row that went is not asked for
    QVERIFY(page.Validate());
}

void tst_ListPages::FocusStaysInThePage()
{
    CListPages f;
    f.Show(std::make_unique<COrderPage>(f.App, f.InView, nullptr));
    f.Do(u"o1"_s);
    f.Do(u"^"_s);
    QVERIFY(!f.Button(u'^').isEnabled());
    QCOMPARE(f.Focus(), u"lstOrder"_s);
    f.List(u"lstAll"_s).setFocus(); // its only item is the separator
    f.Do(u"+"_s);
    QCOMPARE(f.Items(u"lstOrder"_s), u"B|-|A|C|D"_s);
    for (int board = 0; board < 5; ++board) {
        QCOMPARE(f.Find<QPushButton>(u"cmdDelete"_s).isEnabled(), true);
        f.Do(u"-"_s);
    }
    QCOMPARE(f.Focus(), u"lstOrder"_s);
}

void tst_ListPages::Visits()
{
    CListPages f(u"3,1,-1,2"_s);
    f.Run(u"UPDATE BBS SET VisitLoad = (BBS_ID <> 4)"_s);
    CVisitPage& page = f.Show(std::make_unique<CVisitPage>(f.App, nullptr));
    QListWidget& list = f.List(u"lstVisitLoad"_s);
    QCOMPARE(f.Items(u"lstVisitLoad"_s), u"A|B|D"_s);
    QSignalSpy toggled(&page, &CVisitPage::VisitToggled);
    page.SetVisit(3, false);
    page.SetVisit(3, true);
    page.SetVisit(99, true);
    QVERIFY(!page.HasChanges());
    list.setFocus();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Space, Qt::Key_Home}) // B
        QTest::keyClick(&list, key);
    f.Click(u"lstVisitLoad"_s, 2); // D, on its name
    const QRect row = list.visualItemRect(list.item(0));
    const QPoint box(row.left() + row.height() / 2, row.center().y()); // A's
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, box);
    QCOMPARE(toggled, (QList<QVariantList>{{4, true}, {6, false}, {3, false}}));
    Qt::CheckState expected = Qt::Unchecked;
    for (const QPoint place : {box, row.center(), box, box, row.center(), row.center()}) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(list.item(0)->checkState(), expected = expected == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    }
    QVERIFY(page.HasChanges());
    QCOMPARE(f.Column(u"VisitLoad"_s), u"True,False,True,True"_s);
    page.Apply();
    QCOMPARE(f.Column(u"VisitLoad"_s), u"False,True,False,False"_s);
    QTest::keyClick(&list, Qt::Key_B);
    QTest::keyClick(&list, Qt::Key_Space);
    page.Apply();
    QCOMPARE(f.Column(u"VisitLoad"_s), u"False,False,False,False"_s);
}

void tst_ListPages::BothPagesInStep()
{
    CListPages f(u"0,1,-1,2"_s);
    f.Run(u"UPDATE BBS SET VisitLoad = (BBS_ID = 4 OR BBS_ID = 5)"_s);
    CVisitPage visits(f.App, nullptr);
    visits.Load();
    COrderPage& order = f.Show(std::make_unique<COrderPage>(f.App, f.InView, nullptr));
    connect(&order, &COrderPage::BoardAdded, &visits, &CVisitPage::AddBoard);
    connect(&order, &COrderPage::BoardRemoved, &visits, &CVisitPage::RemoveBoard);
    QSignalSpy told(&visits, &CVisitPage::VisitToggled);
    for (const QString& step : u"a0 + a0 + o1 -"_s.split(u' ')) // C and a separator come, B goes
        f.Do(step);
    QCOMPARE(told, (QList<QVariantList>{{5, true}}));
    visits.Apply();
    order.Apply();
    QCOMPARE(f.Column(u"ListOrder"_s), u"0,-1,2,1"_s);
    QCOMPARE(f.Column(u"VisitLoad"_s), u"False,False,True,False"_s);
}

QTEST_MAIN(tst_ListPages)
#include "tst_ListPages.moc"
