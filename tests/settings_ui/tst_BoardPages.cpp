// tests/settings_ui/tst_BoardPages.cpp
// The pages for a board and its cookie: what they refuse, what they write, what they leave alone.

#include "controls/uSpinButton.h"
#include "platform/text/Codepage932.h"
#include "settings_ui/CBoardPage.h"
#include "settings_ui/CCookiePage.h"
#include "settings_ui/mdlBoardCheck.h"
#include "tests/settings_ui/CPageFixture.h"
#include "tests/support/Table.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

const QString RowOf3 = u"SELECT * FROM BBS WHERE BBS_ID = 3"_s;

struct CBoardPages : CPageFixture
{
    CBBSProperty Edited = Property();

    QString Address() { return Edited.URL; }
    CBoardPage& ShowBoard() { return Show(std::make_unique<CBoardPage>(App, Edited, nullptr)); }
    CCookiePage& ShowCookie(const QByteArray& Cookie)
    {
        if (!Cookie.isEmpty())
            App.Cookies().Set(QUrl(Address()), Address().toLatin1(), Cookie);
        return Show(std::make_unique<CCookiePage>(App, Edited, nullptr));
    }
    QLineEdit& Box(const QString& Name) { return Find<QLineEdit>(Name); }
    QAbstractButton& Button(const QString& Name) { return Find<QAbstractButton>(Name); }

    /// Gives a control of any kind another value by keys.
    void Change(const QString& Control, const QString& Value)
    {
        auto* control = Page->findChild<QWidget*>(Control);
        control->setFocus();
        if (Control.startsWith(u"opt"_s))
            QTest::keyClick(control, Qt::Key_Space);
        else if (Control.startsWith(u"uspn"_s))
            QTest::keyClick(control, Qt::Key_A, Qt::ControlModifier), QTest::keyClicks(control, Value);
        else
            Type(Control, Value);
    }
};

} // namespace

class tst_BoardPages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void Checks_data();
    void Checks();
    void LongIdentifier();
    void OddRowsStay_data();
    void OddRowsStay();
    void TheRowIsEdited();
    void Cookies_data();
    void Cookies();
    void WhatIsLostIsAskedOnce();
    void AllBoards();
};

void tst_BoardPages::Checks_data()
{
    mdlTable::AddRows<QString, QString, QString>("board-pages.json", "Checks", {"box", "typed", "message"});
}

void tst_BoardPages::Checks()
{
    QFETCH(QString, box);
    QFETCH(QString, message);
    QFETCH(QString, typed);
    CBoardPages f;
    f.ShowBoard();
    if (!message.isEmpty())
        f.Desk.Expect(message);
    f.Type(box, typed);
    f.Find<uSpinButton>(u"uspnMaxCount"_s).setFocus();
    QCOMPARE(f.Page->Validate(), message.isEmpty());
    QCOMPARE(f.Focus(), message.isEmpty() ? u"uspnMaxCount"_s : box);
    if (message.isEmpty()) {
        f.Page->Apply();
        QVERIFY(f.Edited.SetProperty()); // and the program can keep its cookie there
        QVERIFY(f.Property().SetPostName(u"sora"_s));
        QVERIFY(!f.Edited.Identifier.contains(u'\t'));
    } else {
        QVERIFY(f.Desk.Boxes.back().Icon == Desktop::Icon::Information);
    }
}

void tst_BoardPages::LongIdentifier()
{
    QCOMPARE(mdlBoardCheck::IdentifierProblem(QString(83, u'表')), QString());
    QCOMPARE(mdlBoardCheck::IdentifierProblem(QString(84, u'表')), u"識別子が長すぎます。"_s);
    CBoardPages f;
    f.ShowBoard();
    for (const QString& box : {u"txtName"_s, u"txtShortName"_s, u"txtURL"_s, u"txtHowtouseURL"_s, u"txtIdentifier"_s,
                               u"txtDefaultLogFile"_s}) {
        f.Type(box, u"𠮟"_s.repeated(300)); // more than the database takes
        QCOMPARE(f.Box(box).text().size(), 255);
    }
    f.Page->Apply();
    QCOMPARE(f.Edited.Name, u"𠮟"_s.repeated(127)); // and no half of a character
}

void tst_BoardPages::OddRowsStay_data()
{
    QTest::addColumn<QString>("set");
    QTest::newRow("usual") << u"VisitLoad = False"_s;
    QTest::newRow("address") << u"URL = 'ftp://odd=1;2', Identifier = '..\\x'"_s;
    QTest::newRow("numbers") << u"MaxCount = 2147483647, Hitokoto = 2147483647"_s;
    QTest::newRow("lower numbers") << u"MaxCount = -3, Hitokoto = -9"_s;
    QTest::newRow("control characters") << u"ShortName = 'a' & Chr(9) & Chr(13) & Chr(10), DefaultLogFile = ''"_s;
}

void tst_BoardPages::OddRowsStay()
{
    QFETCH(QString, set);
    CBoardPages f;
    f.Run(u"UPDATE BBS SET "_s + set + u" WHERE BBS_ID = 3"_s);
    const QString before = f.Rows(RowOf3);
    f.Edited.GetProperty(3);
    CBoardPage& page = f.ShowBoard();
    QVERIFY(page.Validate());
    page.Apply();
    QVERIFY(f.Edited.SetProperty());
    QCOMPARE(f.Rows(RowOf3), before);
}

void tst_BoardPages::TheRowIsEdited()
{
    CBoardPages f;
    f.Edited.GetProperty(13);
    CBoardPage& page = f.ShowBoard();
    QVERIFY(f.Button(u"optHitokoto1"_s).isChecked());
    QSignalSpy toggled(&page, &CBoardPage::VisitToggled);
    page.SetVisit(true);
    page.SetVisit(false);
    QVERIFY(toggled.isEmpty()); // news of the visit page do not go back to it
    page.SetVisit(true);
    QTest::keyClick(&f.Button(u"chkVisitLoad"_s), Qt::Key_Space);
    QCOMPARE(toggled, QList<QVariantList>{{false}});
    f.Button(u"chkVisitLoad"_s).setFocus();
    QTest::keyClick(&f.Button(u"chkVisitLoad"_s), Qt::Key_Tab);
    QCOMPARE(f.Focus(), u"optHitokoto1"_s);
    QTest::keyClick(&f.Button(u"optHitokoto1"_s), Qt::Key_Left);
    f.Change(u"uspnMaxCount"_s, u"123"_s);
    f.Change(u"txtName"_s, u" 名前'|\n"_s);
    f.Change(u"txtURL"_s, u"http://example.com/y.cgi\n"_s);
    QCOMPARE(f.Property(13).Name, u"やなぎ掲示板（左）"_s); // nothing yet
    page.Apply();
    QVERIFY(f.Edited.SetProperty());
    QCOMPARE(f.Rows(u"SELECT BBS_Name, URL, MaxCount, Hitokoto, VisitLoad FROM BBS WHERE BBS_ID = 13"_s),
             u" 名前'| ,http://example.com/y.cgi,123,-1,False"_s);
}

void tst_BoardPages::Cookies_data()
{
    mdlTable::AddRows<QByteArray, QString, QString, QByteArray>("board-pages.json", "Cookies",
                                                                {"before", "control", "value", "after"});
}

void tst_BoardPages::Cookies()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, control);
    QFETCH(QString, value);
    CBoardPages f;
    CCookiePage& page = f.ShowCookie(before);
    QVERIFY(!f.Button(u"cmdAllBBS"_s).isEnabled());
    if (!control.isEmpty())
        f.Change(control, value);
    QCOMPARE(f.Button(u"cmdAllBBS"_s).isEnabled(), control.startsWith(u"txt"_s));
    QVERIFY(page.Validate());
    QCOMPARE(f.Cookie(f.Address()), before);
    page.Apply();
    QTEST(f.Cookie(f.Address()), "after");
}

void tst_BoardPages::WhatIsLostIsAskedOnce()
{
    CBoardPages f;
    CCookiePage& page = f.ShowCookie("?,,,,40");
    const auto note = [&f] { return f.Find<QLabel>(u"lblNote"_s).text(); };
    f.Type(u"txtMail"_s, u"〜50%"_s);
    QCOMPARE(note(), u"「,」「;」「%」は全角で保存されます。"_s);
    QCOMPARE(f.Box(u"txtMail"_s).toolTip(), u"「～50％」と保存されます。"_s);
    f.Type(u"txtPassword"_s, u"geheim,"_s);
    QCOMPARE(f.Box(u"txtPassword"_s).toolTip(), QString());
    QVERIFY(f.Box(u"txtPassword"_s).displayText() != u"geheim,"_s);
    QVERIFY(page.Validate()); // other forms of the same are no loss

    f.Type(u"txtHomePage"_s, u"a😀?"_s);
    QVERIFY(note().endsWith(u"\n掲示板で使えない文字は「?」になります。"_s));
    f.Desk.Expect(u"自分のホームページに掲示板で使えない文字があります。"_s, Desktop::Answer::Cancel);
    QVERIFY(!page.Validate());
    QCOMPARE(f.Focus(), u"txtHomePage"_s);
    QCOMPARE(f.Box(u"txtHomePage"_s).text(), u"a😀?"_s);
    f.Desk.Expect(u"「?」に置き換えて"_s, Desktop::Answer::Ok);
    QVERIFY(page.Validate());
    QVERIFY(page.Validate());
    page.Apply();
    QCOMPARE(f.Cookie(f.Address()), text::To932(u"?,～50％,a???,geheim，,40,,,,"_s));
}

void tst_BoardPages::AllBoards()
{
    CBoardPages f;
    f.Run(u"UPDATE BBS SET URL = Null WHERE BBS_ID = 5"_s);
    f.Run(u"UPDATE BBS SET URL = 'http://x/a=b' WHERE BBS_ID = 6"_s);
    f.Run(u"UPDATE BBS SET ListOrder = -1 WHERE BBS_ID = 4"_s);
    QVERIFY(f.Property(14).SetNoReadPoint(70));
    QVERIFY(f.Property(4).SetViewCount(7));
    CCookiePage& page = f.ShowCookie("old,m,,,40,1,1,123,60,x");
    const int boards = 16 - 2;
    f.Type(u"txtPostName"_s, u"そら"_s);
    f.Desk.Expect(u"次の掲示板には適応できませんでした。\r\nすぎ掲示板"_s);
    f.Button(u"cmdAllBBS"_s).setFocus();
    QTest::keyClick(&f.Button(u"cmdAllBBS"_s), Qt::Key_Space);
    QVERIFY(!f.Button(u"cmdAllBBS"_s).isEnabled());
    int reached = 0;
    for (int board = 3; board <= 18; ++board)
        reached += f.Property(board).Visitor() == CVisitor{u"そら"_s, u"m"_s, {}, {}} ? 1 : 0;
    QCOMPARE(reached, boards);
    QCOMPARE(f.Cookie(f.Address()), text::To932(u"そら,m,,,40,1,1,123,60,x"_s));
    QCOMPARE(f.Cookie(f.Property(4).URL), text::To932(u"そら,m,,,7,,,0,30"_s));
    QCOMPARE(f.Cookie(f.Property(13).URL), text::To932(u"そら,m,,,30,,,0,50,70"_s));

    f.Type(u"txtPostName"_s, u"old"_s); // what stood there at first is a change now
    QVERIFY(f.Button(u"cmdAllBBS"_s).isEnabled());
    page.Apply();
    QCOMPARE(f.Cookie(f.Address()), QByteArray("old,m,,,40,1,1,123,60,x"));
    QCOMPARE(f.Property(4).PostName(), u"そら"_s);
}

QTEST_MAIN(tst_BoardPages)
#include "tst_BoardPages.moc"
