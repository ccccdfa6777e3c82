// tests/store/tst_Recovery.cpp
// Damaged databases: what can be read comes back as it was, nothing is made up, and the damaged file stays.

#include "platform/dao/Recover.h"
#include "store/Schema.h"
#include "tests/store/CStoreFixture.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/DaoHelpers.h"

#include <QSet>
#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;
using Answer = Desktop::Answer;

namespace
{

constexpr int PageSize = 4096;
constexpr int Seed = 20020115;

const QString AllMessages = u"SELECT ID, BBS_ID, Read, Subject, PostName, PostDate, InReplyTo, Body, Mark FROM Message "
                            "ORDER BY ID, BBS_ID"_s;

const QString OtherTable = u"CREATE TABLE 家計簿 (番号 INTEGER PRIMARY KEY, 額 REAL, 絵 BLOB); "
                           "INSERT INTO 家計簿 VALUES (-5, 0.5, x'00ff'), (9000000000, -1e300, NULL)"_s;

/// A database with messages, a saved query and a table that is none of ours.
void Fill(CStoreFixture& Fixture)
{
    Fixture.Desk.Expect(u"存在しません"_s);
    const auto db = Fixture.Open();
    db->CreateQueryDef(u"検索"_s, u"SELECT * FROM Message WHERE Mark = 2"_s);
    db->Execute(u"CREATE TABLE 人 (番号 COUNTER CONSTRAINT PK PRIMARY KEY, 絵 BINARY(4))"_s);
    db->Execute(u"CREATE TABLE 手紙 (宛先 LONG CONSTRAINT 宛 REFERENCES 人 (番号))"_s);
    db->Execute(u"INSERT INTO 人 (絵) VALUES ('a')"_s);
    db->Execute(u"INSERT INTO 人 (絵) VALUES ('gone')"_s);
    db->Execute(u"DELETE FROM 人 WHERE 番号 = 2"_s);
    db->Execute(u"INSERT INTO 手紙 VALUES (1)"_s);
    db->LeaveLog();
    db->Close();
    Fixture.AddMessages(400);
    Fixture.Run(OtherTable);
}

/// Changes the closed file; Page counts from 1.
void Overwrite(const QString& FileName, int Page, const QByteArray& Bytes)
{
    QFile file(FileName);
    file.open(QIODevice::ReadWrite);
    file.seek(qint64(Page - 1) * PageSize);
    file.write(Bytes);
}

QSet<QString> Set(const QStringList& Rows) { return QSet<QString>(Rows.begin(), Rows.end()); }

} // namespace

class tst_Recovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void WholeFile_data();
    void WholeFile();
    void LogBesideTheFile();
    void ZeroedPages_data();
    void ZeroedPages();
    void RandomDamage();
    void BrokenOffOrFull();
    void OfferedAtStart_data();
    void OfferedAtStart();
};

void tst_Recovery::WholeFile_data()
{
    QTest::addColumn<QString>("pragmas");
    QTest::newRow("as we write it") << QString();
    QTest::newRow("another encoding") << u"PRAGMA encoding='UTF-8'; PRAGMA page_size=512"_s;
    QTest::newRow("the other byte order") << u"PRAGMA encoding='UTF-16be'; PRAGMA page_size=65536"_s;
}

void tst_Recovery::WholeFile()
{
    QFETCH(QString, pragmas);
    CStoreFixture fixture;
    Fill(fixture);
    const QString file = pragmas.isEmpty() ? u"log.mdb"_s : u"other.mdb"_s;
    if (!pragmas.isEmpty()) { // what other programs write
        QCOMPARE(fixture.Run(pragmas +
                                 u"; CREATE TABLE Message (BBS_ID, ID, Read, Subject, Homepage, Mail, PostName, "
                                 "PostDate, InReplyTo, Body, RootThread, Mark);"_s +
                                 OtherTable,
                             file),
                 QString());
        QCOMPARE(fixture.AddMessages(400, file), QString());
    }
    const dao::Recovered result =
        dao::RecoverDatabase(fixture.Folder.filePath(file), fixture.Folder.filePath(u"new.mdb"_s),
                             pragmas.isEmpty() ? mdlSchema::Tables() : std::vector<dao::TableDef>());
    QVERIFY(result.IsComplete());
    QCOMPARE(result.Find(u"message").Rows, 343);
    for (const QString& query : {AllMessages, u"SELECT 番号, 額, hex(絵) FROM 家計簿"_s})
        QCOMPARE(fixture.Rows(query, u"new.mdb"_s), fixture.Rows(query, file));
    QCOMPARE(fixture.Rows(u"PRAGMA integrity_check"_s, u"new.mdb"_s), QStringList({u"ok"_s}));
    if (!pragmas.isEmpty())
        return;
    const QString definitions = u"SELECT type, name, sql FROM sqlite_master ORDER BY type, name"_s;
    QCOMPARE(fixture.Rows(definitions, u"new.mdb"_s), fixture.Rows(definitions));
    const auto recovered = dao::Database::Open(fixture.Folder.filePath(u"new.mdb"_s));
    QCOMPARE(recovered->QueryDefs(), QStringList({u"検索"_s}));
    QCOMPARE(mdlDaoHelpers::Rows(*recovered, u"SELECT 番号, 絵 FROM 人, 手紙 WHERE 番号 = 宛先"_s),
             QStringList({u"1|0x61"_s}));
    QCOMPARE(mdlDaoHelpers::ErrorNumber([&] { recovered->Execute(u"INSERT INTO 手紙 VALUES (2)"_s); }), 3201);
    recovered->Execute(u"INSERT INTO 人 (絵) VALUES ('b')"_s);
    QCOMPARE(mdlDaoHelpers::Rows(*recovered, u"SELECT Max(番号) FROM 人"_s), QStringList({u"3"_s}));
    QCOMPARE(result.Find(u"Message").Expected, 343);
}

/// What was committed to the log counts, what was not does not.
void tst_Recovery::LogBesideTheFile()
{
    CStoreFixture fixture;
    Fill(fixture);
    CRawDatabase writer(fixture.File);
    QCOMPARE(writer.Run(u"PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0; UPDATE Message SET Subject = 'log'; "
                        "DELETE FROM Message WHERE ID > 300; PRAGMA cache_size=1; BEGIN; "
                        "UPDATE Message SET Subject = 'never'"_s),
             QString());
    const QString made = fixture.Folder.filePath(u"new.mdb"_s);
    dao::RecoverDatabase(fixture.File, made);
    writer.Run(u"ROLLBACK"_s);
    QCOMPARE(fixture.Rows(AllMessages, u"new.mdb"_s), writer.Rows(AllMessages));
}

void tst_Recovery::ZeroedPages_data()
{
    QTest::addColumn<QString>("pages"); // of dbstat
    QTest::addColumn<bool>("losesRows");
    QTest::newRow("the first page of the messages") << u"name = 'Message' AND path = '/'"_s << false;
    QTest::newRow("every inner page of the messages") << u"name = 'Message' AND pagetype = 'internal'"_s << false;
    QTest::newRow("a page of messages") << u"name = 'Message' AND path LIKE '/003/'"_s << true;
    QTest::newRow("all indexes") << u"name LIKE 'Message.%' OR name LIKE '%autoindex%'"_s << false;
    QTest::newRow("long bodies") << u"name = 'Message' AND pagetype = 'overflow' AND pageno % 3 = 0"_s << true;
    QTest::newRow("the first page of all") << u"pageno = 1"_s << false;
    QTest::newRow("definitions") << u"name = 'sqlite_schema' AND path = '/000/'"_s << false;
}

void tst_Recovery::ZeroedPages()
{
    QFETCH(QString, pages);
    QFETCH(bool, losesRows);
    CStoreFixture fixture;
    Fill(fixture);
    const QStringList before = fixture.Rows(AllMessages);
    const QStringList numbers = fixture.Rows(u"SELECT pageno FROM dbstat WHERE "_s + pages);
    QVERIFY(!numbers.isEmpty());
    for (const QString& number : numbers)
        Overwrite(fixture.File, number.toInt(), QByteArray(PageSize, '\0'));
    const QByteArray damaged = fixture.Contents();
    const dao::Recovered result =
        dao::RecoverDatabase(fixture.File, fixture.Folder.filePath(u"new.mdb"_s), mdlSchema::Tables());
    const dao::Recovered::Table messages = result.Find(u"Message");
    const QStringList after = fixture.Rows(AllMessages, u"new.mdb"_s);
    QCOMPARE(after.size(), messages.Rows);
    QCOMPARE((Set(after) - Set(before)).size(), messages.CutRows); // nothing but what is reported differs
    QCOMPARE(after == before, !losesRows);
    QVERIFY(after.size() > before.size() * 9 / 10);
    QVERIFY(!losesRows || !result.IsComplete());
    QCOMPARE(fixture.Rows(u"PRAGMA integrity_check"_s, u"new.mdb"_s), QStringList({u"ok"_s}));
    QVERIFY(fixture.Contents() == damaged);
}

/// Pages zeroed or overwritten, bytes changed and the end cut off at random: the new file is sound in any case, and
/// most rows come back as they were.
void tst_Recovery::RandomDamage()
{
    CStoreFixture fixture;
    Fill(fixture);
    const QByteArray whole = fixture.Contents();
    const QSet<QString> before = Set(fixture.Rows(AllMessages));
    const int pageCount = int(whole.size() / PageSize);
    qInfo("seed %d", Seed);
    std::mt19937 random(Seed);
    qsizetype recovered = 0;
    for (int round = 0; round < 60; ++round) {
        QByteArray bytes = whole;
        for (unsigned count = random() % 8; count > 0; --count) {
            const qsizetype page = 1 + qsizetype(random()) % (pageCount - 1);
            QByteArray junk(PageSize, '\0');
            if (random() % 2 == 0)
                std::generate(junk.begin(), junk.end(), [&] { return char(random() % 256); });
            bytes.replace(page * PageSize, PageSize, junk);
        }
        if (random() % 3 == 0)
            bytes.truncate(PageSize + qsizetype(random()) % (bytes.size() - PageSize));
        if (random() % 3 == 0) // a few bytes anywhere
            for (int count = 0; count < 20; ++count)
                bytes[100 + qsizetype(random()) % (bytes.size() - 100)] = char(random() % 256);
        fixture.Write(bytes);
        const QString name = u"new%1.mdb"_s.arg(round);
        const dao::Recovered result =
            dao::RecoverDatabase(fixture.File, fixture.Folder.filePath(name), mdlSchema::Tables());
        const QStringList after = fixture.Rows(AllMessages, name);
        QCOMPARE(after.size(), result.Find(u"Message").Rows);
        QCOMPARE(fixture.Rows(u"PRAGMA integrity_check"_s, name), QStringList({u"ok"_s}));
        recovered += (Set(after) & before).size();
        QFile::remove(fixture.Folder.filePath(name));
    }
    QVERIFY2(recovered > before.size() * 60 / 2, qPrintable(QString::number(recovered)));
}

void tst_Recovery::BrokenOffOrFull()
{
    CStoreFixture fixture;
    Fill(fixture);
    const QString made = fixture.Folder.filePath(u"new.mdb"_s);
    QCOMPARE(mdlDaoHelpers::ErrorNumber(
                 [&] { dao::RecoverDatabase(fixture.File, made, {}, [](int Percent) { return Percent < 50; }); }),
             3059);
    QVERIFY(!QFile::exists(made));
    {
        const CFileSizeLimit limit(200000);
        QCOMPARE(mdlDaoHelpers::ErrorNumber([&] { dao::RecoverDatabase(fixture.File, made); }), 3026);
    }
    QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
}

void tst_Recovery::OfferedAtStart_data()
{
    QTest::addColumn<Answer>("wanted");
    QTest::addColumn<Answer>("used");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("lost"); // the table whose first page is overwritten
    const QStringList only = {u"log.mdb"_s};
    QTest::newRow("not wanted") << Answer::No << Answer::No << only << u"Version"_s;
    QTest::newRow("not used") << Answer::Yes << Answer::No << QStringList{u"log-recovered.mdb"_s, u"log.mdb"_s}
                              << u"Version"_s;
    QTest::newRow("used") << Answer::Yes << Answer::Yes << QStringList{u"log.bak"_s, u"log.mdb"_s} << u"Version"_s;
    QTest::newRow("no header") << Answer::Yes << Answer::Yes << QStringList{u"log.bak"_s, u"log.mdb"_s} << QString();
}

void tst_Recovery::OfferedAtStart()
{
    QFETCH(Answer, wanted);
    QFETCH(Answer, used);
    QFETCH(QStringList, files);
    QFETCH(QString, lost);
    CStoreFixture fixture;
    Fill(fixture);
    const QStringList root = fixture.Rows(u"SELECT rootpage FROM sqlite_master WHERE name = '%1'"_s.arg(lost));
    const QStringList before = fixture.Rows(AllMessages);
    Overwrite(fixture.File, root.isEmpty() ? 1 : root[0].toInt(), QByteArray(PageSize, '\x7f'));
    const QByteArray damaged = fixture.Contents();
    fixture.Desk.Expect(u"'%1' を開けません"_s.arg(fixture.File));
    fixture.Desk.Expect(u"log-recovered.mdb に取り出しますか？\n\n元のファイルは変更しません。"_s, wanted);
    if (wanted == Answer::Yes)
        fixture.Desk.Expect(lost.isEmpty() ? u"  メッセージ: 343件\n"_s
                                           : u"  メッセージ: 343件\n  掲示板: 16件\n  マーク: 4件\n\n"
                                             "  Versionテーブル: 壊れたページ"_s,
                            used);
    const auto db = fixture.Open();
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(bool(db), used == Answer::Yes);
    QCOMPARE(fixture.Files(), files);
    QVERIFY(fixture.Contents(used == Answer::Yes ? u"log.bak"_s : u"log.mdb"_s) == damaged);
    if (db)
        QCOMPARE(fixture.Rows(AllMessages), before);
}

QTEST_GUILESS_MAIN(tst_Recovery)
#include "tst_Recovery.moc"
