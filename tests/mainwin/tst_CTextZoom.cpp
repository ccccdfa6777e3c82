// tests/mainwin/tst_CTextZoom.cpp
// Larger and smaller letters in the message pane, and the place in the text meanwhile.

#include "mainwin/CMessagePane.h"
#include "mainwin/CTextZoom.h"

#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace
{

struct CPane
{
    CMessagePane Pane;
    CTextZoom Zoom{WithSize(Pane)};

    static CMessagePane& WithSize(CMessagePane& Pane)
    {
        QFont font = Pane.font();
        font.setPointSizeF(10.5);
        Pane.setFont(font);
        return Pane;
    }

    CPane()
    {
        std::vector<ViewerHost::BodyLine> lines;
        for (int line = 0; line < 200; ++line)
            lines.push_back({QString::number(line) + QString(line % 7 * 40, u'あ'), ViewerHost::LineKind::Plain});
        Pane.resize(420, 300);
        Pane.ShowLines(lines);
        Pane.show();
    }
    int Top() const { return Pane.cursorForPosition(QPoint(0, 0)).blockNumber(); }
    void Wheel(int Delta, Qt::KeyboardModifiers With)
    {
        const QPointF at(50, 50);
        QWheelEvent wheel(at, Pane.viewport()->mapToGlobal(at), {}, QPoint(0, Delta), Qt::NoButton, With,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(Pane.viewport(), &wheel);
    }
};

} // namespace

class tst_CTextZoom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Steps_data();
    void Steps();
    void StoredSizes();
    void PlaceStays();
    void SelectionStaysInView();
    void Wheel();
};

void tst_CTextZoom::Steps_data()
{
    QTest::addColumn<QList<int>>("steps"); // 0 goes back to the usual size, 10.5 points
    QTest::addColumn<double>("wanted");
    QTest::newRow("one up") << QList<int>{1} << 11.0;
    QTest::newRow("one down") << QList<int>{-1} << 10.0;
    QTest::newRow("down and up") << QList<int>{-1, 1} << 11.0;
    QTest::newRow("back to usual") << QList<int>{4, 0} << 10.5;
    QTest::newRow("as large as it gets") << QList<int>{10, 1000000} << 72.0;
    QTest::newRow("as small as it gets") << QList<int>{-1000000, -1} << 6.0;
}

void tst_CTextZoom::Steps()
{
    QFETCH(QList<int>, steps);
    QFETCH(double, wanted);
    CPane p;
    for (const int step : steps)
        step == 0 ? p.Zoom.Reset() : p.Zoom.Step(step);
    QCOMPARE(p.Pane.font().pointSizeF(), wanted);
    QCOMPARE(p.Zoom.Chosen().value_or(10.5), wanted);
    QCOMPARE(p.Zoom.Chosen().has_value(), wanted != 10.5);
}

void tst_CTextZoom::StoredSizes()
{
    CPane p;
    for (const auto& [stored, wanted] : {std::pair{1e9, 72.0}, {0.5, 6.0}, {13.0, 13.0}}) {
        p.Zoom.SetChosen(stored);
        QCOMPARE(p.Pane.font().pointSizeF(), wanted);
    }
}

void tst_CTextZoom::PlaceStays()
{
    CPane p;
    for (const int wanted : {0, 40, 101, 190}) {
        p.Zoom.SetChosen(std::nullopt);
        QTextCursor place(p.Pane.document()->findBlockByNumber(wanted));
        p.Pane.setTextCursor(place);
        p.Pane.verticalScrollBar()->setValue(place.block().firstLineNumber());
        QCoreApplication::processEvents();
        const int top = p.Top();
        for (const int step : {3, 3, 4, -1, -4, -5, -2, 1, 1}) {
            p.Zoom.Step(step);
            p.Pane.viewport()->repaint();
            if (wanted < 150) // near the end a smaller text has nothing to fill the pane with
                QCOMPARE(p.Top(), top);
        }
    }
    // A scroll in between is a new place.
    p.Pane.verticalScrollBar()->setValue(20);
    const int top = p.Top();
    p.Zoom.Step(5);
    QCOMPARE(p.Top(), top);

    // And so is another message that happens to be scrolled as far.
    const int scrolled = p.Pane.verticalScrollBar()->value();
    p.Pane.ShowLines(std::vector<ViewerHost::BodyLine>(100, {u"x"_s, ViewerHost::LineKind::Quote}));
    p.Pane.verticalScrollBar()->setValue(scrolled);
    const int other = p.Top();
    p.Zoom.Step(-1);
    QCOMPARE(p.Top(), other);
}

void tst_CTextZoom::SelectionStaysInView()
{
    CPane p;
    const QTextBlock block = p.Pane.document()->findBlockByNumber(9);
    QTextCursor match(block);
    match.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    p.Pane.setTextCursor(match);
    p.Pane.ensureCursorVisible();
    p.Zoom.Step(12);
    p.Pane.viewport()->repaint();
    QVERIFY(p.Pane.viewport()->rect().intersects(p.Pane.cursorRect()));
}

void tst_CTextZoom::Wheel()
{
    CPane p;
    p.Wheel(-120, Qt::NoModifier);
    QVERIFY(p.Pane.verticalScrollBar()->value() > 0); // still scrolls
    QCOMPARE(p.Zoom.Size(), 10.5);
    const int scrolled = p.Pane.verticalScrollBar()->value();
    p.Wheel(120, Qt::ControlModifier);
    QCOMPARE(p.Zoom.Size(), 11.0);
    for (int part = 0; part < 4; ++part)
        p.Wheel(-30, Qt::ControlModifier);
    QCOMPARE(p.Zoom.Size(), 10.0);
    p.Wheel(-90, Qt::ControlModifier);
    p.Wheel(-1, Qt::NoModifier); // what was left of the notch is forgotten
    p.Wheel(-90, Qt::ControlModifier);
    QCOMPARE(p.Zoom.Size(), 10.0);
    p.Wheel(240, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(p.Zoom.Chosen().value_or(0), 12.0);
    QVERIFY(qAbs(p.Pane.verticalScrollBar()->value() - scrolled) <= 2);
}

QTEST_MAIN(tst_CTextZoom)
#include "tst_CTextZoom.moc"
