// tests/platform/tst_TextWords.cpp
// The word around a place, in Japanese and in anything else that stands in a message.

#include "platform/text/Words.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_TextWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void WordAt_data();
    void WordAt();
    void LongLines();
};

void tst_TextWords::WordAt_data()
{
    // "|" stands before the unit asked for
    mdlTable::AddRows<QString, QString>("text-words.json", "WordAt", {"text", "wanted"});
    QTest::newRow("second half of a pair") << u"a "_s + QChar(0xd840) + u'|' + QChar(0xdc0b) + u'b' << u"\U0002000B"_s;
}

void tst_TextWords::WordAt()
{
    QFETCH(QString, text);
    const qsizetype at = text.indexOf(u'|');
    text.remove(at, 1);
    const text::WordPlace word = text::WordAt(text, at);
    QTEST(text.mid(word.Start, word.Length), "wanted");
}

void tst_TextWords::LongLines()
{
    const QString line = QString(1000000, u'あ') + u" Tavora "_s + QString(1000000, u'x');
    const qsizetype at = line.indexOf(u"Tavora"_s);
    QCOMPARE(text::WordAt(line, at + 2), (text::WordPlace{at, 6}));
    QVERIFY(text::WordAt(line, line.size() - 1).Length <= 1000);
    QCOMPARE(text::WordAt(line, -1), text::WordPlace());
    QCOMPARE(text::WordAt(line, line.size()), text::WordPlace());
}

QTEST_GUILESS_MAIN(tst_TextWords)
#include "tst_TextWords.moc"
