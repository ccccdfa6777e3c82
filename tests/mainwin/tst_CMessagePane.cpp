// tests/mainwin/tst_CMessagePane.cpp
// Places of a body against places of the pane, on bodies made of all that is awkward.

#include "mainwin/CMessagePane.h"
#include "viewer/mdlBodyLines.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;
using BodyRange = ViewerHost::BodyRange;

namespace
{

QString RandomBody(QRandomGenerator& Random)
{
    static const QStringList parts = {u"a"_s,      u"表"_s,     u"\r\n"_s,         u"\r\n"_s,
                                      u"\r"_s,     u"\n"_s,     u"\u2028"_s,       u"\u2029"_s,
                                      u"\u0085"_s, u"\t"_s,     u"\U0001F600"_s,   u"e\u0301"_s,
                                      u"\uFDD0"_s, u"\uFFFC"_s, QString(QChar(0)), QString(QChar(0xD83D)),
                                      u"> "_s};
    QString body;
    for (int i = Random.bounded(60); i > 0; --i)
        body += parts.at(Random.bounded(int(parts.size())));
    if (Random.bounded(8) == 0) // longer than the pane lays out as one
        body.insert(Random.bounded(int(body.size()) + 1), u"長\U0001F600い"_s.repeated(2500));
    return body;
}

/// Whether Place lies within what is shown, and copied, as one.
bool IsInside(const QString& Body, qsizetype Place)
{
    if (Place <= 0 || Place >= Body.size())
        return false;
    return (Body[Place - 1] == u'\r' && Body[Place] == u'\n') ||
           (Body[Place - 1].isHighSurrogate() && Body[Place].isLowSurrogate());
}

BodyRange Whole(const QString& Body, BodyRange Range)
{
    const qsizetype start = Range.Start - (IsInside(Body, Range.Start) ? 1 : 0);
    const qsizetype end = Range.Start + Range.Length;
    return {start, end + (Range.Length > 0 && IsInside(Body, end) ? 1 : 0) - start};
}

QString Told(BodyRange Range) { return u"%1+%2"_s.arg(Range.Start).arg(Range.Length); }

} // namespace

class tst_CMessagePane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void PlacesOfRandomBodies();
    void RangesBeyondTheText();
    void MoreLinesThanAnybodyWrites();
};

void tst_CMessagePane::PlacesOfRandomBodies()
{
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    CMessagePane pane;
    for (int round = 0; round < 150; ++round) {
        const QString body = RandomBody(random);
        pane.ShowLines(mdlBodyLines::Split(body));
        QCOMPARE(pane.SelectedRange(), BodyRange{});
        for (int i = 0; i < 30; ++i) {
            const qsizetype start = random.bounded(int(body.size()) + 1);
            const BodyRange range{start, random.bounded(int(body.size() - start) + 1)};
            pane.SelectBodyRange(range);
            const BodyRange wanted = range.Length > 0 ? Whole(body, range) : BodyRange{Whole(body, range).Start, 0};
            QVERIFY2(pane.SelectedRange() == wanted,
                     qPrintable(u"seed %1: %2 became %3 in %4"_s.arg(seed).arg(
                         Told(range), Told(pane.SelectedRange()), QString::fromLatin1(body.toUtf8().toHex()))));
            if (start < body.size() && body[start].isLetter()) {
                pane.SelectBodyRange({start, 1});
                QCOMPARE(pane.SelectedText(), body.mid(start, 1));
            }
        }
        pane.selectAll();
        QCOMPARE(pane.SelectedRange(), (BodyRange{0, body.size()}));
    }
}

void tst_CMessagePane::RangesBeyondTheText()
{
    CMessagePane pane;
    pane.SelectBodyRange({5, 5});
    QCOMPARE(pane.SelectedRange(), BodyRange{});
    pane.ShowLines(mdlBodyLines::Split(u"ab\r\nc"_s));
    pane.SelectBodyRange({1, 100});
    QCOMPARE(pane.SelectedRange(), (BodyRange{1, 4}));
    QCOMPARE(pane.SelectedText(), u"b\r\nc"_s);
    pane.SelectBodyRange({-3, 1});
    QCOMPARE(pane.SelectedRange(), BodyRange{});
    pane.SelectBodyRange({2, 1}); // half of a line break would be nothing to see
    QCOMPARE(pane.SelectedRange(), (BodyRange{2, 2}));
    pane.SelectBodyRange({3, 1});
    QCOMPARE(pane.SelectedRange(), (BodyRange{2, 2}));
}

void tst_CMessagePane::MoreLinesThanAnybodyWrites()
{
    const QString body = u"> 表\nい\r\n\r\n"_s.repeated(qsizetype(CMessagePane::MaxLines) / 2) + u"ab"_s;
    CMessagePane pane;
    pane.ShowLines(mdlBodyLines::Split(body));
    QVERIFY(pane.document()->blockCount() < 1000);
    for (const BodyRange range : {BodyRange{9 * 30'000 + 4, 7}, {9 * 44'000, 9}, {body.size() - 2, 2}}) {
        pane.SelectBodyRange(range);
        QCOMPARE(pane.SelectedRange(), range);
        QCOMPARE(pane.SelectedText(), body.mid(range.Start, range.Length).remove(u'\r').replace(u"\n"_s, u"\r\n"_s));
    }
    pane.selectAll();
    QCOMPARE(pane.SelectedText().size(), body.size() + qsizetype(CMessagePane::MaxLines) / 2 + 2);
}

QTEST_MAIN(tst_CMessagePane)
#include "tst_CMessagePane.moc"
