// tests/controls/tst_uSeparator.cpp
// The bar under the mouse and the keys, and where the panes come to lie.

#include "controls/uSeparator.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A window of 400 by 604 pixels with a splitter 10 pixels from its left and 20 from its top, 300 by 504 pixels large:
/// the bar takes 4 of them, 500 are left (7500 twips).
class CWindow : public QWidget
{
public:
    explicit CWindow(int Aspect)
        : Separator(this)
        , Panel1(this)
        , Panel2(this)
        , Panel3(this)
    {
        resize(400, 604);
        Separator.SetAspect(Aspect);
        Separator.setGeometry(Aspect == uSeparator::Horizontal ? QRect(10, 20, 300, 504) : QRect(10, 20, 504, 300));
        Separator.Initialize(&Panel1, &Panel2);
        show();
    }

    QWidget& Bar() { return *Separator.findChild<QWidget*>(u"picBar"_s); }
    /// Presses the bar's upper left corner, moves to the splitter's pixel Along in two steps, lets go.
    void Drag(int Along)
    {
        QTest::mousePress(&Bar(), Qt::LeftButton, {}, QPoint(0, 0));
        Move(Along / 2);
        Move(Along);
        QTest::mouseRelease(&Bar(), Qt::LeftButton, {}, QPoint(0, 0));
    }
    void Move(int Along)
    {
        const QPoint place =
            Separator.Aspect() == uSeparator::Horizontal ? QPoint(Bar().x(), Along) : QPoint(Along, Bar().y());
        const QPointF at = place - Bar().pos();
        QMouseEvent move(QEvent::MouseMove, at, Bar().mapToGlobal(at), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&Bar(), &move);
    }
    void DoubleClick()
    {
        QTest::mouseClick(&Bar(), Qt::LeftButton, {}, QPoint(1, 1));
        QTest::mouseDClick(&Bar(), Qt::LeftButton, {}, QPoint(1, 1));
    }

    uSeparator Separator;
    QWidget Panel1;
    QWidget Panel2;
    QWidget Panel3;
};
} // namespace

class tst_uSeparator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void PanesLieOverTheArea();
    void OtherPanesTakeOver();
    void OffsetAndPercent_data();
    void OffsetAndPercent();
    void PercentBeforeTheSizeIsKnown();
    void DragStopsAtTheSides_data();
    void DragStopsAtTheSides();
    void PanesWaitForTheEndOfADrag();
    void BarIsSeenOverThePanes();
    void DoubleClickCollapses();
    void ShrinkingKeepsTheBarInside();
    void Keys_data();
    void Keys();
    void TabReachesTheBar();
    void Accessibility();
    void GonePaneIsForgotten();
};

void tst_uSeparator::PanesLieOverTheArea()
{
    CWindow above(uSeparator::Horizontal);
    QCOMPARE(above.Panel1.geometry(), QRect(10, 20, 300, 252)); // the bar begins in the middle
    above.Separator.SetOffset(1500);
    QCOMPARE(above.Panel1.geometry(), QRect(10, 20, 300, 100));
    QCOMPARE(above.Panel2.geometry(), QRect(10, 124, 300, 400));
    above.Separator.setGeometry(0, 0, 200, 304);
    QCOMPARE(above.Panel1.geometry(), QRect(0, 0, 200, 100));
    QCOMPARE(above.Panel2.geometry(), QRect(0, 104, 200, 200));

    CWindow left(uSeparator::Vertical);
    left.Separator.SetOffset(1500);
    QCOMPARE(left.Panel1.geometry(), QRect(10, 20, 100, 300));
    QCOMPARE(left.Panel2.geometry(), QRect(114, 20, 400, 300));
    left.Separator.move(30, 40);
    QCOMPARE(left.Panel2.geometry(), QRect(134, 40, 400, 300));
}

void tst_uSeparator::OtherPanesTakeOver()
{
    CWindow window(uSeparator::Horizontal);
    const QRect before = window.Panel1.geometry();
    window.Separator.Initialize(&window.Panel3, &window.Panel2);
    QCOMPARE(window.Panel3.geometry(), before);
    window.Separator.SetOffset(1500);
    QCOMPARE(window.Panel3.geometry(), QRect(10, 20, 300, 100));
    QCOMPARE(window.Panel1.geometry(), before);
}

void tst_uSeparator::OffsetAndPercent_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("shown");
    QTest::addColumn<double>("percent");
    QTest::newRow("top") << 0 << 0 << 0.0;
    QTest::newRow("a fifth") << 1500 << 1500 << 20.0;
    QTest::newRow("between two pixels, read back as it was") << 1504 << 1504 << 20.0;
    QTest::newRow("bottom") << 7500 << 7500 << 100.0;
    QTest::newRow("above the top") << -150 << -150 << 50.0;
    QTest::newRow("below the bottom") << 9000 << 7500 << 100.0;
}

void tst_uSeparator::OffsetAndPercent()
{
    QFETCH(int, offset);
    QFETCH(int, shown);
    QFETCH(double, percent);
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetOffset(offset);
    QCOMPARE(window.Separator.Offset(), shown);
    QCOMPARE(window.Separator.Parsent(), percent);
}

void tst_uSeparator::PercentBeforeTheSizeIsKnown()
{
    QWidget window;
    auto* separator = new uSeparator(&window);
    separator->SetAspect(uSeparator::Horizontal);
    separator->SetParsent(70);
    separator->setGeometry(0, 0, 100, 504);
    window.show();
    QCOMPARE(separator->Offset(), 350 * 15);
    separator->resize(100, 704);
    QCOMPARE(separator->Offset(), 350 * 15); // from then on it is a place like any other
    separator->SetParsent(50);
    QCOMPARE(separator->Offset(), 350 * 15);
    separator->SetParsent(qQNaN());
    QCOMPARE(separator->Offset(), 350 * 15);
}

void tst_uSeparator::DragStopsAtTheSides_data()
{
    QTest::addColumn<int>("aspect");
    QTest::addColumn<int>("to");
    QTest::addColumn<int>("wanted"); // pixels; a side of 300 twips is 20 of them
    for (const int aspect : {0, 1}) {
        QTest::addRow("to the middle, %d", aspect) << aspect << 300 << 300;
        QTest::addRow("near edge, %d", aspect) << aspect << 5 << 20;
        QTest::addRow("past the near edge, %d", aspect) << aspect << -500 << 20;
        QTest::addRow("far edge, %d", aspect) << aspect << 490 << 480;
        QTest::addRow("past the far edge, %d", aspect) << aspect << 5000 << 480;
    }
}

void tst_uSeparator::DragStopsAtTheSides()
{
    QFETCH(int, aspect);
    QFETCH(int, to);
    QFETCH(int, wanted);
    CWindow window(aspect);
    window.Separator.SetSideMin(300);
    QSignalSpy moved(&window.Separator, &uSeparator::Moved);
    window.Drag(to);
    QCOMPARE(window.Separator.Offset(), wanted * 15);
    QCOMPARE(moved.size(), 1);
    const QSize size = window.Panel1.size();
    QCOMPARE(aspect == uSeparator::Horizontal ? size.height() : size.width(), wanted);
}

void tst_uSeparator::PanesWaitForTheEndOfADrag()
{
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetOffset(1500);
    QSignalSpy moved(&window.Separator, &uSeparator::Moved);
    QTest::mousePress(&window.Bar(), Qt::LeftButton, {}, QPoint(0, 0));
    window.Move(200);
    QCOMPARE(window.Bar().y(), 200);
    QCOMPARE(window.Panel1.height(), 100);
    QTest::mouseRelease(&window.Bar(), Qt::LeftButton, {}, QPoint(0, 0));
    QCOMPARE(window.Panel1.height(), 200);

    // Pressing without moving, and the right button, are no drag.
    QTest::mouseClick(&window.Bar(), Qt::LeftButton, {}, QPoint(3, 3));
    QTest::mousePress(&window.Bar(), Qt::RightButton, {}, QPoint(0, 0));
    window.Move(300);
    QTest::mouseRelease(&window.Bar(), Qt::RightButton, {}, QPoint(0, 0));
    QCOMPARE(window.Separator.Offset(), 3000);
    QCOMPARE(moved.size(), 1);
}

void tst_uSeparator::BarIsSeenOverThePanes()
{
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetOffset(1500);
    window.Panel1.hide();
    window.Panel3.raise();
    window.Panel2.raise();
    window.Separator.Initialize(&window.Panel3, &window.Panel2);
    QTest::mousePress(&window.Bar(), Qt::LeftButton, {}, QPoint(0, 0));
    window.Move(300);
    // What lies at a place is who gets its clicks. The panes still lie as before.
    QCOMPARE(window.childAt(50, 20 + 301), &window.Bar());
    QCOMPARE(window.childAt(50, 20 + 99), &window.Panel3);
    QCOMPARE(window.childAt(50, 20 + 299), &window.Panel2);
    QCOMPARE(window.childAt(50, 20 + 305), &window.Panel2);
}

void tst_uSeparator::DoubleClickCollapses()
{
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetSideMin(100);
    window.Separator.SetOffset(3000);
    window.DoubleClick();
    QCOMPARE(window.Separator.Offset(), 100);
    QCOMPARE(window.Panel1.height(), 7);
    window.DoubleClick();
    QCOMPARE(window.Separator.Offset(), 3000);

    // A drag in between does not change what is remembered, but is no collapse either.
    window.DoubleClick();
    window.Drag(100);
    window.DoubleClick();
    QCOMPARE(window.Separator.Offset(), 100);
    window.DoubleClick();
    QCOMPARE(window.Separator.Offset(), 1500);

    // Dragged to the least size counts as collapsed.
    window.DoubleClick();
    window.Drag(0);
    window.DoubleClick();
    QCOMPARE(window.Separator.Offset(), 1500);

    CWindow found(uSeparator::Horizontal); // collapsed by an earlier run
    found.Separator.SetOffset(100);
    found.DoubleClick();
    QCOMPARE(found.Separator.Offset(), 252 * 15);
}

void tst_uSeparator::ShrinkingKeepsTheBarInside()
{
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetOffset(6000);
    window.Separator.resize(300, 200);
    QCOMPARE(window.Separator.Offset(), 196 * 15); // 60 twips inside
    QCOMPARE(window.Bar().geometry(), QRect(0, 196, 300, 4));
    QVERIFY(window.Panel2.geometry().isEmpty()); // not upon the other one
    window.Separator.resize(300, 2); // nearly nothing left
    QCOMPARE(window.Separator.Offset(), 0);
    window.Separator.resize(300, 504);
    QCOMPARE(window.Separator.Offset(), 6000);
}

void tst_uSeparator::Keys_data()
{
    QTest::addColumn<int>("aspect");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("wanted"); // pixels, from 200
    QTest::newRow("up") << 0 << Qt::Key_Up << 192;
    QTest::newRow("down") << 0 << Qt::Key_Down << 208;
    QTest::newRow("left of a horizontal bar") << 0 << Qt::Key_Left << 200;
    QTest::newRow("left") << 1 << Qt::Key_Left << 192;
    QTest::newRow("right") << 1 << Qt::Key_Right << 208;
    QTest::newRow("up at a vertical bar") << 1 << Qt::Key_Up << 200;
    QTest::newRow("home") << 0 << Qt::Key_Home << 7;
    QTest::newRow("end") << 0 << Qt::Key_End << 493;
    QTest::newRow("enter collapses") << 0 << Qt::Key_Return << 7;
    QTest::newRow("any other") << 0 << Qt::Key_A << 200;
}

void tst_uSeparator::Keys()
{
    QFETCH(int, aspect);
    QFETCH(Qt::Key, key);
    QFETCH(int, wanted);
    CWindow window(aspect);
    window.Separator.SetOffset(3000);
    QTest::keyClick(&window.Bar(), key);
    const QPoint bar = window.Bar().pos();
    QCOMPARE(aspect == uSeparator::Horizontal ? bar.y() : bar.x(), wanted);
}

void tst_uSeparator::TabReachesTheBar()
{
    CWindow window(uSeparator::Horizontal);
    window.Panel1.setFocusPolicy(Qt::StrongFocus);
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.Panel1.setFocus();
    QTest::keyClick(&window.Panel1, Qt::Key_Tab);
    QVERIFY(window.Bar().hasFocus());
    window.Panel1.setFocus();
    QTest::mouseClick(&window.Bar(), Qt::LeftButton);
    QVERIFY(window.Panel1.hasFocus()); // a drag leaves the focus where it is
}

void tst_uSeparator::Accessibility()
{
    CWindow window(uSeparator::Horizontal);
    window.Separator.SetOffset(1500);
    QAccessibleInterface* bar = QAccessible::queryAccessibleInterface(&window.Bar());
    QVERIFY(bar && bar->valueInterface());
    QCOMPARE(bar->role(), QAccessible::Splitter);
    QCOMPARE(bar->text(QAccessible::Name), u"区切りバー"_s);
    QCOMPARE(bar->valueInterface()->currentValue().toDouble(), 20.0);
    bar->valueInterface()->setCurrentValue(40.0);
    QCOMPARE(window.Separator.Offset(), 3000);
    QCOMPARE(window.Separator.property("Offset").toInt(), 3000);
    QVERIFY(window.Separator.setProperty("Parsent", 20.0));
    QCOMPARE(window.Separator.Offset(), 1500);
    QVERIFY(window.Separator.setProperty("SizeMin", 450));
    QCOMPARE(window.Separator.SideMin(), 450);
}

void tst_uSeparator::GonePaneIsForgotten()
{
    QWidget window;
    uSeparator separator(&window);
    auto* pane = new QWidget(&window);
    separator.Initialize(pane, nullptr);
    delete pane;
    separator.SetOffset(1500);
    separator.resize(100, 100);
    QCOMPARE(separator.Offset(), 96 * 15);
}

QTEST_MAIN(tst_uSeparator)
#include "tst_uSeparator.moc"
