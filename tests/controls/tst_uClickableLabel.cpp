// tests/controls/tst_uClickableLabel.cpp
// The link label under the pointer and the keys, on light and dark grounds.

#include "controls/uClickableLabel.h"
#include "platform/desktop/Contrast.h"
#include "tests/support/CScriptedDesktop.h"

#include <QAccessible>
#include <QEnterEvent>
#include <QHelpEvent>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

using namespace Qt::StringLiterals;

class tst_uClickableLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ClickOpens_data();
    void ClickOpens();
    void PlainModeOnlyTells();
    void DoubleClickOpensOnce();
    void OnlyAWholeLeftClickCounts();
    void Keys();
    void EmptyCaptionIsNoStop();
    void HoverNeedsTheActiveWindow();
    void HoverIsShown();
    void HoverColor();
    void LongCaptionDoesNotWiden();
    void Accessibility();
};

namespace
{
void Enter(QWidget& Widget, const QPointF& At)
{
    QEnterEvent enter(At, At, Widget.mapToGlobal(At));
    QCoreApplication::sendEvent(&Widget, &enter);
}

void Leave(QWidget& Widget)
{
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&Widget, &leave);
}

/// Brings Window to the front, with the focus on something else than a label.
bool Activate(QWidget& Window)
{
    Window.setFocusPolicy(Qt::StrongFocus);
    Window.setFocus();
    Window.show();
    Window.activateWindow();
    return QTest::qWaitForWindowActive(&Window);
}
} // namespace

void tst_uClickableLabel::ClickOpens_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QStringList>("opened");
    QTest::newRow("web") << 1 << u"http://a.jp/?x=1"_s << QStringList{u"http://a.jp/?x=1"_s};
    QTest::newRow("mail") << 2 << u"hana@a.jp"_s << QStringList{u"mailto:hana@a.jp"_s};
    QTest::newRow("mail with its scheme") << 2 << u"mailto:hana@a.jp"_s << QStringList{u"mailto:hana@a.jp"_s};
    QTest::newRow("plain") << 0 << u"http://a.jp/"_s << QStringList();
    QTest::newRow("nothing to open") << 1 << QString() << QStringList();
    QTest::newRow("no such mode") << 7 << u"http://a.jp/"_s << QStringList();
}

void tst_uClickableLabel::ClickOpens()
{
    QFETCH(int, mode);
    QFETCH(QString, caption);
    QFETCH(QStringList, opened);
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    label.SetClickableMode(mode);
    label.SetCaption(caption);
    QTest::mouseClick(&label, Qt::LeftButton);
    QCOMPARE(desktop.Opened, opened);
}

void tst_uClickableLabel::PlainModeOnlyTells()
{
    CScriptedDesktop desktop;
    QWidget window;
    uClickableLabel label(desktop, &window);
    QCOMPARE(label.ClickableMode(), 1);
    label.SetClickableMode(uClickableLabel::Plain);
    label.SetCaption(u"版"_s);
    QVERIFY(Activate(window));
    QSignalSpy clicked(&label, &uClickableLabel::Click);
    QSignalSpy entered(&label, &uClickableLabel::MouseEnter);
    QSignalSpy left(&label, &uClickableLabel::MouseLeave);
    QTest::mouseClick(&label, Qt::LeftButton);
    Leave(label);
    entered.clear();
    left.clear();
    Enter(label, QPointF(2, 3));
    Enter(label, QPointF(2, 4));
    Leave(label);
    Leave(label);
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(entered, QList<QVariantList>({{30.0f, 45.0f}}));
    QCOMPARE(left.size(), 1);
    QVERIFY(!label.Label()->font().underline());
    QCOMPARE(label.focusPolicy(), Qt::NoFocus);
}

void tst_uClickableLabel::DoubleClickOpensOnce()
{
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    label.SetCaption(u"http://a.jp/"_s);
    QSignalSpy twice(&label, &uClickableLabel::DblClick);
    QTest::mouseClick(&label, Qt::LeftButton);
    QTest::mouseDClick(&label, Qt::LeftButton);
    QCOMPARE(desktop.Opened.size(), 1);
    QCOMPARE(twice.size(), 1);
}

void tst_uClickableLabel::OnlyAWholeLeftClickCounts()
{
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    label.resize(100, 20);
    label.SetCaption(u"http://a.jp/"_s);
    QTest::mouseClick(&label, Qt::RightButton);
    QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(5, 50));
    QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(desktop.Opened, QStringList());
}

void tst_uClickableLabel::Keys()
{
    CScriptedDesktop desktop;
    QWidget window;
    uClickableLabel first(desktop, &window);
    uClickableLabel second(desktop, &window);
    first.SetCaption(u"http://a.jp/"_s);
    second.SetClickableMode(uClickableLabel::MailAddress);
    second.SetCaption(u"b@b.jp"_s);
    QVERIFY(Activate(window));
    first.setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(second.hasFocus());
    QVERIFY(second.Label()->font().underline()); // the focus is seen
    QVERIFY(!first.Label()->font().underline());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Enter);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
    QCOMPARE(desktop.Opened, QStringList({u"http://a.jp/"_s, u"mailto:b@b.jp"_s, u"mailto:b@b.jp"_s}));
}

void tst_uClickableLabel::EmptyCaptionIsNoStop()
{
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    QCOMPARE(label.focusPolicy(), Qt::NoFocus);
    QCOMPARE(label.cursor().shape(), Qt::ArrowCursor);
    label.SetCaption(u"http://a.jp/"_s);
    QCOMPARE(label.focusPolicy(), Qt::TabFocus);
    QCOMPARE(label.cursor().shape(), Qt::PointingHandCursor);
    label.SetCaption(QString());
    QCOMPARE(label.focusPolicy(), Qt::NoFocus);
}

void tst_uClickableLabel::HoverNeedsTheActiveWindow()
{
    CScriptedDesktop desktop;
    QWidget window;
    uClickableLabel label(desktop, &window);
    label.SetCaption(u"http://a.jp/"_s);
    QVERIFY(Activate(window));
    QWidget other;
    QVERIFY(Activate(other));
    Enter(label, QPointF(2, 3));
    QVERIFY(!label.Label()->font().underline());
    Leave(label);

    QVERIFY(Activate(window));
    Enter(label, QPointF(2, 3));
    QVERIFY(label.Label()->font().underline());
    QVERIFY(Activate(other)); // the pointer stays, another window comes to the front
    QVERIFY(!label.Label()->font().underline());
}

void tst_uClickableLabel::HoverIsShown()
{
    CScriptedDesktop desktop;
    QWidget window;
    QPalette light;
    light.setColor(QPalette::Window, Qt::white);
    light.setColor(QPalette::WindowText, Qt::black);
    window.setPalette(light);
    uClickableLabel label(desktop, &window);
    QFont own = label.Label()->font();
    own.setItalic(true);
    label.Label()->setFont(own);
    label.SetCaption(u"http://a.jp/"_s);
    QVERIFY(Activate(window));
    const auto colour = [&] { return label.Label()->palette().color(QPalette::WindowText); };

    Enter(label, QPointF(2, 3));
    QCOMPARE(colour(), QColor(0, 0, 255));
    QVERIFY(label.Label()->font().underline());
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(32, 32, 32));
    dark.setColor(QPalette::WindowText, Qt::white);
    window.setPalette(dark); // the desktop turns dark while the pointer rests
    QVERIFY(mdlContrast::Ratio(colour(), QColor(32, 32, 32)) >= 4.5);
    Leave(label);
    QCOMPARE(colour(), QColor(Qt::white));
    QVERIFY(!label.Label()->font().underline());
    QVERIFY(label.Label()->font().italic());
}

void tst_uClickableLabel::HoverColor()
{
    const QColor blue(0, 0, 255);
    for (const QColor& ground : {QColor(Qt::white), QColor(0xef, 0xef, 0xef), QColor(0x80, 0x80, 0x80),
                                 QColor(0x20, 0x20, 0x20), QColor(Qt::black), blue}) {
        const QColor colour = uClickableLabel::HoverColor(ground);
        QCOMPARE(colour == blue, ground.lightness() >= 0xef);
        QVERIFY2(mdlContrast::Ratio(colour, ground) >= 4.5, qPrintable(colour.name()));
    }
    QCOMPARE(mdlContrast::Ratio(Qt::black, Qt::white), 21.0);
}

void tst_uClickableLabel::LongCaptionDoesNotWiden()
{
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    label.SetCaption(u"http://a.jp/"_s + QString(300, u'x'));
    label.show();
    label.resize(80, 20);
    QCOMPARE(label.width(), 80);
    QCOMPARE(label.Label()->geometry(), label.rect());
    QCOMPARE(label.Label()->textFormat(), Qt::PlainText);
    QCOMPARE(label.minimumSizeHint().width(), 0);

    // What is cut off stands in the tip, as text.
    label.Label()->setToolTip(u"開きます"_s);
    const auto tip = [&label](const QString& Caption) {
        label.SetCaption(Caption);
        QHelpEvent wanted(QEvent::ToolTip, QPoint(5, 5), label.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&label, &wanted);
        QTextDocument shown;
        shown.setHtml(QToolTip::text());
        return shown.toPlainText();
    };
    QCOMPARE(tip(u"http://a.jp/<img src='x'>"_s), u"http://a.jp/<img src='x'>\n開きます"_s);
    QCOMPARE(tip(u"a"_s), u"開きます"_s);
    QCOMPARE(tip(QString(100, u'x')), QString(80, u'x') + u'\n' + QString(20, u'x') + u"\n開きます"_s);
}

void tst_uClickableLabel::Accessibility()
{
    CScriptedDesktop desktop;
    uClickableLabel label(desktop);
    label.SetCaption(u"http://a.jp/"_s);
    QAccessibleInterface* link = QAccessible::queryAccessibleInterface(&label);
    QVERIFY(link && link->actionInterface());
    QCOMPARE(link->role(), QAccessible::Link);
    QCOMPARE(link->text(QAccessible::Name), u"http://a.jp/"_s);
    QCOMPARE(link->childCount(), 0);
    label.Label()->setToolTip(u"開きます"_s);
    QCOMPARE(link->text(QAccessible::Description), u"開きます"_s);
    link->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(desktop.Opened, QStringList{u"http://a.jp/"_s});
}

QTEST_MAIN(tst_uClickableLabel)
#include "tst_uClickableLabel.moc"
