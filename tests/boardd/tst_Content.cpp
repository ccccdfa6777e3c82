// tests/boardd/tst_Content.cpp
// The sample messages: how their files are read, and that what is compiled in is sound.

#include "boardd/Content.h"

#include "boardd/Record.h"

#include "platform/text/Codepage932.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Content : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ReadsMessages();
    void ReadsOneLiners();
    void TellsWhatItCannotRead();
    void IsSound();
    void FitsTheEncoding();
};

void tst_Content::ReadsMessages()
{
    const mdlContent::Posters posters =
        mdlContent::ReadPosters(u"// a | b | c\nみかん | m@example.com | http://www.example.com/\n\nゆうこ | |\n"_s);
    const CContent content = mdlContent::Read(u"@@ 3 2001/12/31 23:59 みかん\n題名\n一行目\n\n@ 三行目\n\n\n"
                                              "@@ past\n"
                                              "@@ 7 >3 2002/01/01 00:00 とおりすがり\nRe: 題名\n> @@ 引用\n"_s,
                                              posters, false);
    const std::vector<CBoardMessage> past = {{3, 0, mdlRecord::ReadWallClock(u"2001/12/31 23:59"_s), u"題名"_s,
                                              u"http://www.example.com/"_s, u"m@example.com"_s, u"みかん"_s,
                                              u"一行目\n\n@ 三行目"_s}};
    const std::vector<CBoardMessage> served = {{7, 3, mdlRecord::ReadWallClock(u"2002/01/01 00:00"_s), u"Re: 題名"_s,
                                                QString(), QString(), u"とおりすがり"_s, u"> @@ 引用"_s}};
    QCOMPARE(content.Errors, QStringList());
    QVERIFY(content.Past == past);
    QVERIFY(content.Served == served);
}

void tst_Content::ReadsOneLiners()
{
    const CContent content = mdlContent::Read(u"@@ 11 2001/11/03 21:15 三毛\n一行目\n二行目"_s, {}, true);
    QCOMPARE(content.Served.size(), std::size_t(1));
    QCOMPARE(content.Served[0].Title, QString());
    QCOMPARE(content.Served[0].Body, u"一行目\n二行目"_s);
}

void tst_Content::TellsWhatItCannotRead()
{
    const CContent content = mdlContent::Read(u"@@ 1 2001/02/30 21:15 三毛\n題名\n本文\n"
                                              "@@ x 2001/02/03 21:15 三毛\n題名\n本文\n"
                                              "@@ 2 2001/02/03 21:15 三毛\n題名\n本文\n"_s,
                                              {}, false);
    QCOMPARE(content.Errors.size(), 2);
    QCOMPARE(content.Served.size(), std::size_t(1));
}

void tst_Content::IsSound()
{
    qsizetype total = 0;
    for (const CBoardInfo& board : mdlBoards::All()) {
        const CContent content = mdlContent::ForBoard(board);
        QCOMPARE(content.Errors, QStringList());
        qint32 last = 0;
        QDateTime lastTime;
        std::vector<CBoardMessage> all = content.Past;
        all.insert(all.end(), content.Served.begin(), content.Served.end());
        for (const CBoardMessage& message : all) {
            const QString where = u"%1 %2"_s.arg(board.Identifier).arg(message.Number);
            QVERIFY2(message.Number > last && message.ReplyTo < message.Number, qPrintable(where));
            QVERIFY2(!lastTime.isValid() || message.Posted >= lastTime, qPrintable(where));
            QVERIFY2(!message.Body.isEmpty() && message.Title.isEmpty() == board.IsTwoSided(), qPrintable(where));
            last = message.Number;
            lastTime = message.Posted;
        }
        const qsizetype served = static_cast<qsizetype>(content.Served.size());
        QVERIFY2(served >= (board.Identifier == u"keyaki" ? 100 : 8) && served <= board.MaxCount, qPrintable(board.Identifier));
        total += static_cast<qsizetype>(all.size());
    }
    QVERIFY2(total >= 320, qPrintable(QString::number(total)));
}

void tst_Content::FitsTheEncoding()
{
    const QDir folder(QStringLiteral(TAVORA_SOURCE_DIR "/boardd/content"));
    const QStringList names = folder.entryList({u"*.txt"_s}, QDir::Files);
    QVERIFY(names.size() == 17); // sixteen boards and the posters
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        for (const QByteArray& line : file.readAll().split('\n')) {
            const QString text = QString::fromUtf8(line).replace(QChar(0x301C), QChar(0xFF5E)); // the wave dash is taken kindly
            QVERIFY2(text::From932(text::To932(text)) == text, (name.toUtf8() + ": " + line).constData());
        }
    }
}

QTEST_GUILESS_MAIN(tst_Content)
#include "tst_Content.moc"
