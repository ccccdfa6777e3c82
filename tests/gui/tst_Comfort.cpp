// tests/gui/tst_Comfort.cpp
// The main window as somebody sets it up: text size, columns, palettes, mouse; and what of it is there again next time.

#include "controls/uSeparator.h"
#include "mainwin/CListView.h"
#include "mainwin/CMessagePane.h"
#include "platform/desktop/Contrast.h"
#include "tests/gui/CWindowFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScreen>
#include <QTextBlock>

using namespace Qt::StringLiterals;
using LineKind = ViewerHost::LineKind;

namespace
{

CListView& ListOf(const CWindowFixture& F) { return *F.Find<CListView>(u"lsvMsgList0"_s); }
CMessagePane& PaneOf(const CWindowFixture& F) { return *F.Find<CMessagePane>(u"rtbView"_s); }

void WriteIni(const CWindowFixture& F, const QByteArray& Text)
{
    QFile ini(F.Folder.filePath(u"Tavora.ini"_s));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write(Text);
}

QPalette Dark()
{
    QPalette palette(QColor(0x30, 0x30, 0x34));
    palette.setColor(QPalette::Base, QColor(0x1c, 0x1c, 0x20));
    palette.setColor(QPalette::Text, Qt::white);
    return palette;
}

} // namespace

class tst_Comfort : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void TextSizeKeys_data();
    void TextSizeKeys();
    void SetUpSurvivesARestart();
    void HostileSettings_data();
    void HostileSettings();
    void PaletteChanges();
    void MouseInThePane();
};

void tst_Comfort::TextSizeKeys_data()
{
    QTest::addColumn<QString>("focus");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<int>("change"); // the sign of it
    const int ctrl = int(Qt::ControlModifier);
    const int ctrlShift = ctrl | int(Qt::ShiftModifier);
    QTest::newRow("plus") << u"lsvMsgList0"_s << Qt::Key_Plus << ctrl << 1;
    QTest::newRow("plus with Shift") << u"rtbView"_s << Qt::Key_Plus << ctrlShift << 1;
    QTest::newRow("keypad") << u"rtbView"_s << Qt::Key_Plus << (ctrl | int(Qt::KeypadModifier)) << 1;
    QTest::newRow("semicolon") << u"rtbView"_s << Qt::Key_Semicolon << ctrl << 1;
    QTest::newRow("minus") << u"picBar"_s << Qt::Key_Minus << ctrl << -1;
    QTest::newRow("minus on the keypad") << u"rtbView"_s << Qt::Key_Minus << (ctrl | int(Qt::KeypadModifier)) << -1;
    QTest::newRow("without Ctrl") << u"rtbView"_s << Qt::Key_Minus << 0 << 0;
    QTest::newRow("entry field") << u"cmbFindText"_s << Qt::Key_Plus << ctrl << 0;
}

void tst_Comfort::TextSizeKeys()
{
    QFETCH(QString, focus);
    QFETCH(Qt::Key, key);
    QFETCH(int, modifiers);
    QFETCH(int, change);
    CWindowFixture f;
    f.Add(1, 1);
    QVERIFY(f.Start());
    f.Find<QWidget>(focus)->setFocus();
    const double usual = PaneOf(f).font().pointSizeF();
    QTest::keyClick(QApplication::focusWidget(), key, Qt::KeyboardModifiers(modifiers));
    const double now = PaneOf(f).font().pointSizeF();
    QCOMPARE((now > usual) - (now < usual), change);
    PaneOf(f).setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(PaneOf(f).font().pointSizeF(), usual);
}

void tst_Comfort::SetUpSurvivesARestart()
{
    CWindowFixture f;
    f.Add(1, 3);
    QVERIFY(f.Start());
    f.Action(u"mnuBBSMoveSub2"_s)->trigger();
    ListOf(f).header()->moveSection(6, 2);
    ListOf(f).header()->resizeSection(8, 200);
    PaneOf(f).setFocus();
    for (int step = 0; step < 3; ++step)
        QTest::keyClick(&PaneOf(f), Qt::Key_Plus, Qt::ControlModifier);
    const double size = PaneOf(f).font().pointSizeF();
    f.Window->showMaximized();
    f.End();

    QVERIFY(f.Start());
    QCOMPARE(f.Viewer().CurrentBoard(), 16);
    QCOMPARE(PaneOf(f).font().pointSizeF(), size);
    QCOMPARE(ListOf(f).header()->logicalIndex(2), 6);
    QCOMPARE(ListOf(f).header()->sectionSize(8), 200);
    QVERIFY(f.Window->isMaximized());
    QTest::keyClick(&PaneOf(f), Qt::Key_0, Qt::ControlModifier);
    f.Viewer().LoadList(u"SELECT BBS_Name FROM BBS"_s, CViewer::ResultList); // has columns of its own
    f.End();

    QVERIFY(f.Start());
    QVERIFY(PaneOf(f).font().pointSizeF() < size);
    QCOMPARE(ListOf(f).header()->logicalIndex(2), 6);
}

void tst_Comfort::HostileSettings_data()
{
    QTest::addColumn<QByteArray>("ini");
    QTest::newRow("nothing is a number") << QByteArray("[Position]\r\nWindowState=x\r\nLeft=a\r\nTop=b\r\nWidth=c\r\n"
                                                       "Height=d\r\nSeparator=e\r\nListItem1=f\r\nTextSize=g\r\n"
                                                       "ColumnOrder=h,i,j\r\n");
    QTest::newRow("too small") << QByteArray("[Position]\r\nWidth=1\r\nHeight=-500\r\nSeparator=-9000\r\n"
                                             "ListItem1=-1\r\nListItem3=0\r\nTextSize=0.01\r\n");
    QTest::newRow("too large") << QByteArray(
        "[Position]\r\nLeft=999999\r\nTop=999999\r\nWidth=999999\r\nHeight=1E300\r\n"
        "Separator=999999\r\nListItem1=999999\r\nTextSize=1E9\r\n");
    QTest::newRow("from a larger screen")
        << QByteArray("[Position]\r\nHeight=30000\r\nWidth=30000\r\nSeparator=15000\r\n");
    QTest::newRow("order names a column twice") << QByteArray("[Position]\r\nColumnOrder=1,1,2,3,4,5,6,7,8,9,10\r\n");
    QTest::newRow("order goes beyond") << QByteArray("[Position]\r\nColumnOrder=99999999999,2,3,4,5,6,7,8,9,10,11\r\n");
    QByteArray history = "[FindText]\r\n";
    for (int i = 0; i < 20000; ++i)
        history += QByteArray::number(i) + '=' + QByteArray::number(i) + "\r\n";
    QTest::newRow("endless history") << history;
    QTest::newRow("endless text") << QByteArray("[FindText]\r\n1=" + QByteArray(1000000, 'x') + "\r\n");
}

void tst_Comfort::HostileSettings()
{
    QFETCH(QByteArray, ini);
    CWindowFixture f;
    f.Add(1, 3);
    WriteIni(f, ini);
    QVERIFY(f.Start());
    const QRect screen = f.Window->screen()->availableGeometry();
    const QRect seen = f.Window->geometry() & screen;
    QVERIFY(seen.width() >= 300 && seen.height() >= 220);
    QVERIFY(f.Find<QWidget>(u"picBar"_s)->y() >= 0);
    QVERIFY(f.Find<QWidget>(u"picBar"_s)->geometry().bottom() < f.Find<QWidget>(u"sep"_s)->height());
    QVERIFY(!ini.startsWith("[Position]\r\nHeight=30000") || PaneOf(f).height() > seen.height() / 4);
    const double points = PaneOf(f).font().pointSizeF();
    QVERIFY(points >= 6 && points <= 72);
    for (int column = 0; column < 11; ++column)
        QVERIFY(ListOf(f).header()->sectionSize(column) > 0 && ListOf(f).header()->sectionSize(column) <= 2000);
    auto* box = f.Find<QComboBox>(u"cmbFindText"_s);
    QVERIFY(box->count() <= 10);
    QVERIFY(box->view()->minimumWidth() <= screen.width());
}

void tst_Comfort::PaletteChanges()
{
    CWindowFixture f;
    f.Add(1, 2);
    QVERIFY(f.Start());
    f.Action(u"mnuMsgMarkSub1"_s)->trigger();
    const QPalette light = QApplication::palette();
    QPalette contrasting = Dark();
    contrasting.setColor(QPalette::Base, Qt::black);
    contrasting.setColor(QPalette::Highlight, Qt::yellow);
    contrasting.setColor(QPalette::HighlightedText, Qt::black);
    for (const QPalette& palette : {Dark(), contrasting, light}) {
        QApplication::setPalette(palette);
        QCoreApplication::processEvents();
        const QColor ground = PaneOf(f).palette().color(QPalette::Base);
        QCOMPARE(ground, palette.color(QPalette::Base));
        for (const LineKind kind : {LineKind::Plain, LineKind::Quote, LineKind::Comment})
            QVERIFY(mdlContrast::Ratio(PaneOf(f).ColorOf(kind), ground) >= mdlContrast::Readable);
        const QLineEdit* find = f.Find<QComboBox>(u"cmbFindText"_s)->lineEdit();
        QVERIFY(mdlContrast::Ratio(find->palette().color(QPalette::Text), find->palette().color(QPalette::Base)) >=
                mdlContrast::Readable);
        QCOMPARE(find->palette().color(QPalette::PlaceholderText).lightness() > 128, ground.lightness() < 128);
    }
}

void tst_Comfort::MouseInThePane()
{
    CWindowFixture f;
    f.Add(1, 1);
    QVERIFY(f.Start());
    CMessagePane& pane = PaneOf(f);
    pane.ShowLines({{u"掲示板に書く"_s, LineKind::Plain}, {u"> 引用した行"_s, LineKind::Quote}});
    const auto at = [&pane](int Line, int Column) { // the middle of a letter
        QTextCursor cursor(pane.document()->findBlockByNumber(Line));
        cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, Column);
        return pane.cursorRect(cursor).center() + QPoint(4, 0);
    };
    QTest::mouseDClick(pane.viewport(), Qt::LeftButton, {}, at(0, 2));
    QCOMPARE(pane.SelectedText(), u"掲示板"_s);
    QTest::mouseClick(pane.viewport(), Qt::LeftButton, {}, at(1, 5));
    QCOMPARE(pane.SelectedText(), QString());

    QTest::qWait(QApplication::doubleClickInterval() + 50); // not a triple click
    QTest::mousePress(pane.viewport(), Qt::LeftButton, {}, at(0, 3));
    QTest::mouseMove(pane.viewport(), at(1, 2));
    QTest::mouseRelease(pane.viewport(), Qt::LeftButton, {}, at(1, 2));
    QCOMPARE(pane.SelectedText(), u"に書く\r\n> "_s);
    const QString before = pane.toPlainText();
    QGuiApplication::clipboard()->setText(u"x"_s);
    QTest::mouseClick(pane.viewport(), Qt::MiddleButton, {}, at(0, 1));
    QCOMPARE(pane.toPlainText(), before);

    pane.ClearSelection();
    pane.moveCursor(QTextCursor::Start);
    pane.setFocus();
    QVERIFY(pane.cursorWidth() >= 2); // the caret is seen, and Shift selects from there
    QTest::keyClick(&pane, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&pane, Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(pane.SelectedText().startsWith(u"掲示板に書く\r\n"_s));
}

QTEST_MAIN(tst_Comfort)
#include "tst_Comfort.moc"
