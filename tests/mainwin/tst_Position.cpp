// tests/mainwin/tst_Position.cpp
// Section "Position" as other versions, or a careless hand, have left it; colours of marks on a palette.

#include "app/CIniFile.h"
#include "mainwin/mdlColors.h"
#include "mainwin/mdlPosition.h"

#include <QFile>
#include <QHeaderView>
#include <QPalette>
#include <QRegularExpression>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;
using mdlPosition::Position;

class tst_Position : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void ReadsWhatIsNumeric();
    void WindowState_data();
    void WindowState();
    void WritesAndSaves();
    void ColumnsComeBack();
    void MarkColors_data();
    void MarkColors();
};

void tst_Position::ReadsWhatIsNumeric()
{
    CIniFile ini;
    ini.SetNowSection(u"Position"_s);
    ini.SetData(u"Left"_s, u"-150"_s);
    ini.SetData(u"Top"_s, u"abc"_s);
    ini.SetData(u"Width"_s, u"9000.4"_s);
    ini.SetData(u"Height"_s, u"1e300"_s);
    ini.SetData(u"ListItem11"_s, u"900"_s);
    ini.SetData(u"ListItem12"_s, u"900"_s);
    ini.SetData(u"ColumnOrder"_s, u"1,2,3,4,5,6,7,8,9,10,10"_s);
    ini.SetData(u"TextSize"_s, u"-12"_s);
    Position wanted;
    wanted.Window.Left = -150;
    wanted.Window.Width = 9000;
    wanted.Columns[10] = 900;
    QVERIFY(mdlPosition::Read(ini) == wanted);
}

void tst_Position::WindowState_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("wanted");
    QTest::newRow("missing") << QString() << 0;
    QTest::newRow("minimised") << u"1"_s << 1;
    QTest::newRow("maximised") << u"2"_s << 2;
    QTest::newRow("beyond") << u"3"_s << 0;
    QTest::newRow("two digits") << u"12"_s << 0;
    QTest::newRow("full width") << u"２"_s << 0;
}

void tst_Position::WindowState()
{
    QFETCH(QString, text);
    CIniFile ini;
    ini.SetNowSection(u"Position"_s);
    ini.SetData(u"WindowState"_s, text);
    QTEST(mdlPosition::Read(ini).WindowState, "wanted");
}

void tst_Position::WritesAndSaves()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(u"t.ini"_s);
    CIniFile ini;
    ini.Load(name);
    Position values;
    values.WindowState = 2;
    values.Window.Left = -15;
    values.Columns[0] = 660;
    values.ColumnOrder = {1, 0, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    values.TextSize = 10.5;
    QVERIFY(mdlPosition::Write(ini, values));
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().trimmed(), QByteArray("[Position]\r\nWindowState=2\r\nLeft=-15\r\nListItem1=660\r\n"
                                                  "ColumnOrder=2,1,3,4,5,6,7,8,9,10,11\r\nTextSize=10.5"));
    QVERIFY(mdlPosition::Read(ini) == values);
    QVERIFY(mdlPosition::Write(ini, {})); // back to the usual size and order
    QCOMPARE(ini.Keys(), QStringList{u"WindowState"_s});
}

// A width of nearly nothing or of a hundred screens still leaves an edge that the mouse can take.
void tst_Position::ColumnsComeBack()
{
    QStandardItemModel model(0, mdlPosition::ColumnCount);
    QTreeView first;
    first.setModel(&model);
    first.header()->resizeSection(4, 321);
    first.header()->moveSection(10, 1);
    first.header()->moveSection(0, 5);
    Position values;
    mdlPosition::TakeColumns(values, *first.header());
    values.Columns[7] = -1000;
    values.Columns[8] = 1000000;
    QTreeView second;
    second.setModel(&model);
    mdlPosition::PlaceColumns(values, *second.header());
    QCOMPARE(second.header()->sectionSize(4), 321);
    for (int place = 0; place < mdlPosition::ColumnCount; ++place)
        QCOMPARE(second.header()->logicalIndex(place), first.header()->logicalIndex(place));
    QVERIFY(second.header()->sectionSize(7) >= 1);
    QCOMPARE(second.header()->sectionSize(8), 2000);
}

void tst_Position::MarkColors_data()
{
    QTest::addColumn<quint32>("stored");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("wanted");
    QTest::newRow("dark red") << 128U << QColor(Qt::white) << QColor(128, 0, 0);
    QTest::newRow("dark blue is blue last") << 8388608U << QColor(Qt::white) << QColor(0, 0, 128);
    QTest::newRow("green is dark enough") << 32768U << QColor(Qt::white) << QColor(0, 128, 0);
    QTest::newRow("grey as the user chose it") << 8421504U << QColor(Qt::white) << QColor(128, 128, 128);
    QTest::newRow("window text") << 0x80000008U << QColor(Qt::white) << QColor(1, 2, 3);
}

void tst_Position::MarkColors()
{
    QFETCH(quint32, stored);
    QFETCH(QColor, ground);
    QPalette palette;
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, QColor(1, 2, 3));
    QFETCH(QColor, wanted);
    QCOMPARE(mdlColors::MarkColor(stored, palette).name(), wanted.name());
    palette.setColor(QPalette::Base, QColor(0x20, 0x20, 0x20));
    const QColor onDark = mdlColors::MarkColor(8388608U, palette);
    QVERIFY(onDark.lightness() > 128 && onDark.hslHue() == 240);
}

QTEST_MAIN(tst_Position)
#include "tst_Position.moc"
