// tests/query/tst_CStatementBox.cpp
// The colours of a statement: which parts have them, that they can be read, and that they disturb nothing.

#include "platform/desktop/Contrast.h"
#include "query/CStatementBox.h"
#include "query/CStatementColours.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QRegularExpression>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>

using namespace Qt::StringLiterals;
using mdlStatementParts::Open;
using mdlStatementParts::Part;

namespace
{

/// The statement with <k …>, <t …>, <n …>, <d …> and <a …> around its keywords, texts, numbers, dates and names.
QString Marked(const QString& Sql)
{
    QStringList lines;
    Open open = Open::Nothing;
    for (QString line : Sql.split(u'\n')) {
        const mdlStatementParts::Line read = mdlStatementParts::Read(line, open);
        for (auto run = read.Runs.rbegin(); run != read.Runs.rend(); ++run) {
            line.insert(run->Begin + run->Length, u'>');
            line.insert(run->Begin, u'<' + QString(u"ktnda"[int(run->What)]) + u' ');
        }
        lines << line;
        open = read.AtEnd;
    }
    return lines.join(u'\n');
}

int ColouredUnits(const QTextBlock& Block)
{
    int units = 0;
    for (const QTextLayout::FormatRange& range : Block.layout()->formats())
        units += range.format.hasProperty(QTextFormat::ForegroundBrush) ? range.length : 0;
    return units;
}

} // namespace

class tst_CStatementBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Parts_data();
    void Parts();
    void AnyTextIsRead();
    void ColoursCanBeRead_data();
    void ColoursCanBeRead();
    void UndoAndTextAreLeftAlone();
    void NothingToPaste();
    void ComposingIsLeftAlone();
    void LongStatement_data();
    void LongStatement();
};

void tst_CStatementBox::Parts_data()
{
    QTest::addColumn<QString>("wanted"); // the statement without the marks is what is read
    QTest::newRow("usual")
        << u"<k SELECT> * <k FROM> Message <k WHERE> ID = <n 12> <k And> Subject <k Like> <t '*a*'>;"_s;
    QTest::newRow("letter case, wide blank") << u"<k select>\u3000題名\u3000<k from> 表ソ"_s;
    QTest::newRow("doubled quote") << u"<t 'it'><t 's'> & <t \"a'b\"> x"_s;
    QTest::newRow("text over lines") << u"x = <t 'a>\n<t SELECT>\n\n<t b'> <k AND> y"_s;
    QTest::newRow("unclosed") << u"<k WHERE> <t \"a>\n<t  FROM>"_s;
    QTest::newRow("dates") << u"a = <d #2002/1/15 9:05:00#> <k OR> b"_s;
    QTest::newRow("date just begun") << u"a = <d #20>\n<k AND> b = <n 1>"_s;
    QTest::newRow("names") << u"<a [名前 全部]> <a `x y`>.<a [Select]> <a [from]> <k in> <a [a>\n<a b]>"_s;
    QTest::newRow("statement in brackets") << u"<k FROM> [<k SELECT> <n 1>]. <k AS> t"_s;
    QTest::newRow("numbers") << u"<n 1.5>+<n 2E3>+<n 1e-2>+a1+<n .5>+t1.b2+<n 1.>e"_s;
    QTest::newRow("fields called like keywords") << u"Version.Table, t!Order, selection, Selectx"_s;
    QTest::newRow("functions called like keywords")
        << u"Left(a, <n 1>) Asc (b) <k LEFT> <k JOIN> x <k IN>(<n 1>) <k ASC>"_s;
    QTest::newRow("nothing to colour") << u"+-*/ | ; ] ) \u0001"_s;
}

void tst_CStatementBox::Parts()
{
    QFETCH(QString, wanted);
    static const QRegularExpression marks(u"<[ktnda] ([^>]*)>"_s);
    QCOMPARE(Marked(QString(wanted).replace(marks, u"\\1"_s)), wanted);
}

/// Each beginning, and each end, of an awkward statement: what is typed is incomplete most of the time.
void tst_CStatementBox::AnyTextIsRead()
{
    const QString sql = u"[SELECT '#]\"`1.e+ .5 #1/#'' [\U00020b9f] Left ( \n 'x\n#"_s;
    for (qsizetype length = 0; length <= sql.size(); ++length) {
        for (const QString& part : {sql.left(length), sql.mid(length)}) {
            for (const Open open : {Open::Nothing, Open::SingleQuote, Open::Bracket}) {
                qsizetype end = 0;
                for (const mdlStatementParts::Run& run : mdlStatementParts::Read(part, open).Runs) {
                    QVERIFY(run.Begin >= end && run.Length > 0);
                    end = run.Begin + run.Length;
                }
                QVERIFY(end <= part.size());
            }
        }
    }
}

void tst_CStatementBox::ColoursCanBeRead_data()
{
    QTest::addColumn<QColor>("base");
    for (const char* base : {"white", "#2d2d2d", "black", "#808080"})
        QTest::newRow(base) << QColor(QLatin1StringView(base));
}

void tst_CStatementBox::ColoursCanBeRead()
{
    QFETCH(QColor, base);
    CStatementBox box;
    box.setPlainText(u"SELECT 'a', 1, #2002/1/1#, [b]"_s);
    QPalette palette = box.palette();
    palette.setColor(QPalette::Base, base);
    box.setPalette(palette);
    const QList<QTextLayout::FormatRange> formats = box.document()->firstBlock().layout()->formats();
    QCOMPARE(formats.size(), 5);
    for (const QTextLayout::FormatRange& range : formats)
        QVERIFY(mdlContrast::Ratio(range.format.foreground().color(), base) >= mdlContrast::Readable);
}

void tst_CStatementBox::UndoAndTextAreLeftAlone()
{
    CStatementBox box;
    box.SetStatement(u"SELECT 1"_s);
    QPalette palette = box.palette();
    palette.setColor(QPalette::Base, Qt::black);
    box.setPalette(palette);
    QCoreApplication::processEvents();
    QVERIFY(!box.document()->isModified());
    QVERIFY(!box.document()->isUndoAvailable());
    QCOMPARE(box.textCursor().selectedText(), u"SELECT 1"_s);
    QTest::keyClicks(&box, u"'ab"_s);
    QVERIFY(box.document()->isModified());
    box.undo();
    QCOMPARE(box.Statement(), u"SELECT 1"_s);
    QVERIFY(!box.document()->isUndoAvailable() && !box.document()->isModified());
    QTest::keyClicks(&box, u" WHERE "_s);
    box.Insert(u"ID = "_s, 5);
    box.undo(); // the field alone
    QCOMPARE(box.Statement(), u"SELECT 1 WHERE "_s);
}

/// A clipboard without an owner has data of no format at all.
void tst_CStatementBox::NothingToPaste()
{
    CStatementBox box;
    box.SetStatement(u"SELECT 1"_s);
    QGuiApplication::clipboard()->setMimeData(new QMimeData);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(box.Statement(), u"SELECT 1"_s);
    QGuiApplication::clipboard()->setText(u"a\nb"_s);
    QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(box.Statement(), u"a\r\nb"_s);
}

void tst_CStatementBox::ComposingIsLeftAlone()
{
    CStatementBox box;
    box.SetStatement(u"SELECT 'ab' FROM x"_s);
    box.SetCaret(9); // between a and b
    QTextCharFormat inverse;
    inverse.setForeground(Qt::white);
    inverse.setBackground(Qt::darkBlue);
    const QInputMethodEvent::Attribute clause(QInputMethodEvent::TextFormat, 0, 2, QTextFormat(inverse));
    QInputMethodEvent composing(u"けや"_s, {clause});
    QCoreApplication::sendEvent(&box, &composing);
    const QTextLayout* layout = box.document()->firstBlock().layout();
    QCOMPARE(layout->preeditAreaText(), u"けや"_s);
    int keywords = 0;
    for (const QTextLayout::FormatRange& range : layout->formats()) {
        const bool touches = range.start < 11 && range.start + range.length > 9;
        if (touches)
            QCOMPARE(range.format.foreground().color(), QColor(Qt::white));
        keywords += !touches;
    }
    QCOMPARE(keywords, 2);
    QInputMethodEvent commit;
    commit.setCommitString(u"毛矢"_s);
    QCoreApplication::sendEvent(&box, &commit);
    QCOMPARE(box.Statement(), u"SELECT 'a毛矢b' FROM x"_s);
    QCOMPARE(ColouredUnits(box.document()->firstBlock()), 6 + 6 + 4);
}

void tst_CStatementBox::LongStatement_data()
{
    QTest::addColumn<QString>("sql");
    QTest::newRow("lines") << u"SELECT * FROM Message WHERE ID IN (1, 2, 'a', [b]) OR\n"_s.repeated(20'000);
    QTest::newRow("one line") << u"SELECT 'abc', 1.5, #2002/1/1#, [name] FROM "_s.repeated(24'000);
}

void tst_CStatementBox::LongStatement()
{
    QFETCH(QString, sql);
    CStatementBox box;
    box.resize(600, 400);
    box.show();
    QElapsedTimer clock;
    clock.start();
    box.SetStatement(sql);
    box.moveCursor(QTextCursor::End);
    QTest::keyClicks(&box, u"'x'"_s);
    QTest::qWait(1); // drawn
    QVERIFY2(clock.elapsed() < 20'000, qPrintable(QString::number(clock.elapsed())));
    QCOMPARE(ColouredUnits(box.document()->lastBlock()), box.document()->blockCount() > 1 ? 3 : 0);
}

QTEST_MAIN(tst_CStatementBox)
#include "tst_CStatementBox.moc"
