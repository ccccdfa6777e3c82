// tests/mainwin/tst_CTray.cpp
// The tray icon by its events: what each desktop reports becomes the same few signals; tips are cut.

#include "mainwin/CIconSet.h"
#include "mainwin/CTray.h"

#include <QApplication>
#include <QRegularExpression>
#include <QSystemTrayIcon>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DoubleClickMs = 200;

/// What the letters of Told mean to the toolkit: t a click, d a double click, c right, m middle, "_" a pause.
QString SignalsFor(const QString& Told)
{
    CTray tray;
    QStringList heard;
    QObject::connect(&tray, &CTray::Click, [&] { heard << u"Click"_s; });
    QObject::connect(&tray, &CTray::DblClick, [&] { heard << u"Dbl"_s; });
    QObject::connect(&tray, &CTray::MouseDown, [&](qint16 Button) { heard << u"down%1"_s.arg(Button); });
    QObject::connect(&tray, &CTray::MouseUp, [&](qint16 Button) { heard << u"up%1"_s.arg(Button); });
    auto* icon = tray.findChild<QSystemTrayIcon*>();
    for (const QChar letter : Told) {
        if (letter == u'_')
            QTest::qWait(DoubleClickMs + 50);
        else
            Q_EMIT icon->activated(letter == u't'   ? QSystemTrayIcon::Trigger
                                   : letter == u'd' ? QSystemTrayIcon::DoubleClick
                                   : letter == u'c' ? QSystemTrayIcon::Context
                                                    : QSystemTrayIcon::MiddleClick);
    }
    return heard.join(u' ');
}

} // namespace

class tst_CTray : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void Events_data();
    void Events();
    void Tooltip_data();
    void Tooltip();
    void NeedsAPicture();
};

void tst_CTray::Events_data()
{
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("wanted");
    const QString click = u"down1 up1 Click"_s;
    QTest::newRow("click") << u"t"_s << click;
    QTest::newRow("two slow clicks") << u"t_t"_s << click + u' ' + click;
    QTest::newRow("double click") << u"td"_s << click + u" Dbl up1"_s;
    QTest::newRow("double click with its second release") << u"tdt"_s << click + u" Dbl up1"_s;
    QTest::newRow("desktop that knows clicks only") << u"tt"_s << click + u" Dbl up1"_s;
    QTest::newRow("three clicks there") << u"ttt"_s << click + u" Dbl up1"_s;
    QTest::newRow("click after a double click") << u"td_t"_s << click + u" Dbl up1 "_s + click;
    QTest::newRow("right") << u"c"_s << u"down2 up2"_s;
    QTest::newRow("right twice") << u"cc"_s << u"down2 up2 down2 up2"_s;
    QTest::newRow("middle") << u"m"_s << u"down4 up4"_s;
}

void tst_CTray::Events()
{
    QFETCH(QString, told);
    QApplication::setDoubleClickInterval(DoubleClickMs);
    QTEST(SignalsFor(told), "wanted");
}

void tst_CTray::Tooltip_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("wanted");
    const QString sixty(60, u'あ');
    QTest::newRow("short") << u"Tavora"_s << u"Tavora"_s;
    QTest::newRow("just fits") << sixty + u"123"_s << sixty + u"123"_s;
    QTest::newRow("one too long") << sixty + u"1234"_s << sixty + u"123"_s;
    QTest::newRow("character of two units at the edge") << sixty + u"12𠮷"_s << sixty + u"12"_s;
    QTest::newRow("... that fits") << sixty + u"1𠮷4"_s << sixty + u"1𠮷"_s;
}

void tst_CTray::Tooltip()
{
    QFETCH(QString, text);
    CTray tray;
    tray.SetTooltipText(text);
    QTEST(tray.TooltipText(), "wanted");
}

void tst_CTray::NeedsAPicture()
{
    CTray tray;
    QVERIFY(!tray.AddIcon());
    tray.SetVisible(true);
    QVERIFY(!tray.Visible());
    tray.SetIcon(CIconSet::Picture(u"SMALLICON4"_s));
    QVERIFY(!tray.Visible());
    QVERIFY(tray.AddIcon());
    QVERIFY(tray.Visible());
    tray.SetIcon({});
    QVERIFY(!tray.Visible());
}

QTEST_MAIN(tst_CTray)
#include "tst_CTray.moc"
