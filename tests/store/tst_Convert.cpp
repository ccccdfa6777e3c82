// tests/store/tst_Convert.cpp
// Databases of earlier versions, as programs and people have left them, become today's; until then they are untouched.

#include "tests/store/CStoreFixture.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/CReadOnlyUser.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Answer = Desktop::Answer;

class tst_Convert : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Versions_data();
    void Versions();
    void DecliningChangesNothing();
    void BreakingOffChangesNothing();
    void FullDiskChangesNothing_data();
    void FullDiskChangesNothing();
    void RefusedChangesNothing_data();
    void RefusedChangesNothing();
    void FailedStepIsTold();
    void ManyMessages();
};

namespace
{

const QString Question = u"データベースファイルが古くなっています。\n"
                         "新しいデータベースファイルにコンバートします。\n\n"
                         "注意！:\n"
                         "  完全にコンバートできるとは限りません。\n"
                         "  必ずデータベースファイルのバックアップをとってください。"_s;
const QString Done = u"データベースのコンバートが完了しました。"_s;
const QString NotMoved = u"移せなかった、または初期値に戻ったデータがあります。"_s;

/// Board 3 renamed and hidden, and a board of the user's own; no pattern for past logs, fields in another order.
const QString OldBoards =
    u"CREATE TABLE BBS (ListOrder INTEGER, BBS_ID INTEGER, BBS_NAME TEXT(255), ShortName TEXT, "
    "URL TEXT, HowtouseURL TEXT, MaxCount INTEGER, Hitokoto INTEGER, VisitLoad BOOLEAN, "
    "Identifier TEXT, DefaultLogFile TEXT);"
    "INSERT INTO BBS VALUES (-1, 3, '私の掲示板', '私', 'http://a/', 'http://b/', 77, -1, 0, "
    "'mine', 'mine*');"
    "INSERT INTO BBS VALUES (30, 99, '自作', '自', 'http://c/', 'http://d/', 5, -1, 1, 'own', '');"_s;
/// An empty text and a Null, a double number, a subject that is too long, a date as text; no marks.
const QString OldMessages =
    u"CREATE TABLE Message (ID INTEGER, BBS_ID INTEGER, Subject TEXT, Homepage TEXT, Mail TEXT, PostName TEXT, "
    "PostDate, InReplyTo INTEGER, body TEXT, RootThread INTEGER, Read BOOLEAN);"
    "INSERT INTO Message VALUES (1, 3, '一', '', '', 'あ', 37271.5, 0, '', 1, 1);"
    "INSERT INTO Message VALUES (2, 3, NULL, '', '', 'い', '2002-01-15 12:00', 1, '本文', 1, 0);"
    "INSERT INTO Message VALUES (2, 3, '二度目', '', '', 'う', 37271.5, 1, '本文', 1, 0);"
    "INSERT INTO Message VALUES (3, 3, printf('%.*c', 256, 'x'), '', '', 'え', 37271.5, 1, '本文', 1, 0);"_s;
const QString OldMarks = u"CREATE TABLE Mark (ID INTEGER, Name TEXT, ForeColor INTEGER, BackColor INTEGER);"
                         "INSERT INTO Mark VALUES (1, '私の印', 1, 2), (2, 'マーク&2', 32768, -2147483643), "
                         "(7, '七', 3, 4);"_s;

QString VersionRows(const QString& Boards, const QString& Messages, const QString& Marks)
{
    return u"CREATE TABLE Version (\"Table\" TEXT, Version TEXT);"
           "INSERT INTO Version VALUES ('BBS', '%1'), ('Message', '%2'), ('Mark', '%3');"_s.arg(Boards, Messages,
                                                                                                Marks);
}

QString SingleVersion(const QString& Version)
{
    return u"CREATE TABLE Version (Version TEXT); INSERT INTO Version VALUES ('%1');"_s.arg(Version);
}

const QStringList SeedMark = {u"1|マーク&1|128|-2147483643"_s, u"7|七|3|4"_s};
const QStringList MovedMessages = {u"1|一|37271.5|NULL|-1|0"_s, u"2|NULL|37271.5|本文|0|0"_s};

} // namespace

void tst_Convert::Versions_data()
{
    QTest::addColumn<QString>("old");
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("leftOut"); // part of the box, empty for no box
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<bool>("isCompacted");

    const QString all = OldBoards + OldMessages + OldMarks;
    const QString boards = u"SELECT BBS_ID, BBS_Name, MaxCount, VisitLoad, ListOrder, DefaultLogFile, Identifier FROM "
                           "BBS WHERE BBS_ID IN (3, 4, 99) ORDER BY BBS_ID"_s;
    const QString seedPattern = u"3|私の掲示板|77|0|-1|keyaki*|mine"_s;
    const QString ownPattern = u"3|私の掲示板|77|0|-1|mine*|mine"_s;
    const QString maple = u"4|かえで掲示板|400|-1|2|kaede*|kaede"_s;
    const QString messages = u"SELECT ID, Subject, PostDate, Body, Read, Mark FROM Message ORDER BY ID"_s;
    const QString marks = u"SELECT * FROM Mark WHERE ID IN (1, 7)"_s;
    const QString tables =
        u"SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE '~%' ORDER BY name"_s;
    const QStringList ours = {u"BBS"_s, u"Mark"_s, u"Message"_s, u"Version"_s};

    QTest::newRow("one version for all: boards")
        << all + SingleVersion(u"Ver.0.12"_s) << u"Ver.0.12"_s
        << u"  BBSテーブル: 1件\n  Markテーブル: 1件\n  Messageテーブル: 2件\n"_s << boards
        << QStringList{seedPattern, maple} << true;
    QTest::newRow("one version for all: messages")
        << all + SingleVersion(u"Ver.0.12"_s) << u"Ver.0.12"_s << NotMoved << messages << MovedMessages << true;
    QTest::newRow("one version for all: marks")
        << all + SingleVersion(u"Ver.0.12"_s) << u"Ver.0.12"_s << NotMoved << marks << SeedMark << true;
    QTest::newRow("no version: messages") << all << u"Ver.0.00"_s << NotMoved << messages << MovedMessages << true;
    QTest::newRow("pattern since 0.30") << all + VersionRows(u"Ver.0.30"_s, u"Ver.0.13"_s, u"Ver.0.40"_s)
                                        << u"Ver.0.40"_s << u"BBSテーブル: 1件"_s << boards
                                        << QStringList{ownPattern, maple} << false;
    QTest::newRow("no pattern in 0.29") << all + VersionRows(u"Ver.0.29"_s, u"Ver.0.13"_s, u"Ver.0.40"_s)
                                        << u"Ver.0.40"_s << u"BBSテーブル: 1件"_s << boards
                                        << QStringList{seedPattern, maple} << false;
    QTest::newRow("current tables stay as they are")
        << all + VersionRows(u"Ver.0.41"_s, u"Ver.0.13"_s, u"Ver.0.40"_s) << u"Ver.0.41"_s << u"BBSテーブル: 1件"_s
        << u"SELECT count(*) FROM Message WHERE Subject = '二度目'"_s << QStringList{u"1"_s} << false;
    QTest::newRow("tables are missing") << OldMarks + SingleVersion(u"Ver.0.13"_s) << u"Ver.0.13"_s
                                        << u"Markテーブル: 1件"_s << tables << ours << true;
    QTest::newRow("nothing of ours")
        << u"CREATE TABLE 家計簿 (日付 TEXT, 金額 INTEGER); INSERT INTO 家計簿 VALUES ('元旦', 500)"_s << u"Ver.0.00"_s
        << QString() << u"SELECT * FROM 家計簿"_s << QStringList{u"元旦|500"_s} << true;
    QTest::newRow("an earlier conversion was not finished")
        << OldMessages +
               u"ALTER TABLE Message RENAME TO Message_BACK; CREATE TABLE Message AS SELECT * FROM Message_BACK "
               "WHERE ID = 1; UPDATE Message SET Subject = '新しい'"_s
        << u"Ver.0.00"_s << u"Messageテーブル"_s << u"SELECT ID, Subject FROM Message"_s
        << QStringList{u"1|新しい"_s, u"2|NULL"_s} << true;
    QTest::newRow("nothing but the new name") << OldMessages + u"ALTER TABLE Message RENAME TO Message_BACK"_s
                                              << u"Ver.0.00"_s << u"Messageテーブル: 2件"_s << tables << ours << true;
}

void tst_Convert::Versions()
{
    QFETCH(QString, old);
    QFETCH(QString, version);
    QFETCH(QString, leftOut);
    QFETCH(QString, query);
    QFETCH(QStringList, rows);
    QFETCH(bool, isCompacted);
    CStoreFixture fixture;
    QCOMPARE(fixture.Run(old), QString());
    const QByteArray before = fixture.Contents();
    fixture.Desk.Expect(Question);
    if (!leftOut.isEmpty())
        fixture.Desk.Expect(leftOut);
    fixture.Desk.Expect(Done);

    auto db = fixture.Open();
    QVERIFY(db);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Desk.Boxes[0].Text, Question);
    QCOMPARE(fixture.Desk.Boxes[0].Buttons, Desktop::Buttons::OkCancel);
    QCOMPARE(fixture.Desk.Boxes.back().Icon, Desktop::Icon::Information);
    db->Close();
    QCOMPARE(fixture.Rows(query), rows);
    QCOMPARE(fixture.Rows(u"SELECT * FROM Version"_s),
             QStringList({u"BBS|Ver.0.42"_s, u"Message|Ver.0.13"_s, u"Mark|Ver.0.40"_s}));
    QCOMPARE(fixture.Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
    QCOMPARE(fixture.Rows(u"PRAGMA freelist_count"_s) == QStringList({u"0"_s}), isCompacted);
    if (isCompacted)
        QCOMPARE(fixture.Rows(u"SELECT count(*) FROM pragma_index_list('Message')"_s), QStringList({u"6"_s}));
    const QString backup = u"log-"_s + version + u".bak"_s;
    QCOMPARE(fixture.Files(), QStringList({backup, u"log.mdb"_s}));
    QVERIFY(fixture.Contents(backup) == before);
    QVERIFY(fixture.Open()); // and from now on without a word
}

void tst_Convert::DecliningChangesNothing()
{
    CStoreFixture fixture;
    fixture.Run(OldMessages + SingleVersion(u"Ver.0.12"_s));
    const QByteArray before = fixture.Contents();
    fixture.Desk.Expect(Question, Answer::Cancel);
    QVERIFY(!fixture.Open());
    QVERIFY(fixture.Contents() == before);
    QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
}

void tst_Convert::BreakingOffChangesNothing()
{
    CStoreFixture fixture;
    fixture.Desk.Expect(u"存在しません"_s);
    fixture.Open()->Close();
    QCOMPARE(fixture.AddMessages(2000) + fixture.Run(u"UPDATE Version SET Version = 'Ver.0.12'"_s), QString());
    const QByteArray before = fixture.Contents();
    QList<int> shown;
    for (const int last : {0, 12, 45, 70, 89}) {
        fixture.Desk.Expect(Question);
        fixture.Desk.Expect(u"コンバートを中止しました。\nデータベースファイルは元のままです。"_s);
        QVERIFY(!fixture.Open([&](const QString&) {
            return [&, last](int Percent) {
                shown.append(Percent);
                return Percent <= last;
            };
        }));
        QVERIFY(fixture.Contents() == before);
        QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
        QVERIFY(fixture.Desk.Verify());
    }
    QVERIFY(*std::max_element(shown.begin(), shown.end()) <= 100);
}

void tst_Convert::FullDiskChangesNothing_data()
{
    QTest::addColumn<int>("tenths");
    QTest::newRow("copying") << 5;
    QTest::newRow("making the tables") << 10;
    QTest::newRow("moving rows") << 14;
}

void tst_Convert::FullDiskChangesNothing()
{
    QFETCH(int, tenths);
    CStoreFixture fixture;
    fixture.Desk.Expect(u"存在しません"_s);
    fixture.Open()->Close();
    QCOMPARE(fixture.AddMessages(1000) + fixture.Run(u"UPDATE Version SET Version = 'Ver.0.12'"_s), QString());
    const QByteArray before = fixture.Contents();
    fixture.Desk.Expect(Question);
    fixture.Desk.Expect(u"元のまま残します。\n\nディスクの空き領域が足りません。"_s);
    if (tenths >= 10)
        fixture.Desk.Expect(u"に失敗しました。"_s);
    {
        const CFileSizeLimit limit(rlim_t(before.size() * tenths / 10));
        QVERIFY(!fixture.Open());
    }
    QVERIFY(fixture.Desk.Verify());
    QVERIFY(fixture.Contents() == before);
    QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
}

void tst_Convert::RefusedChangesNothing_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("read-only") << u"読み取り専用"_s;
    QTest::newRow("in use") << u"他でロックされている"_s;
}

void tst_Convert::RefusedChangesNothing()
{
    QFETCH(QString, reason);
    CStoreFixture fixture;
    QCOMPARE(fixture.Run(OldMessages + SingleVersion(u"Ver.0.12"_s)), QString());
    const QByteArray before = fixture.Contents();
    fixture.Desk.Expect(Question);
    fixture.Desk.Expect(u"元のまま残します。\n\n"_s + reason);
    CRawDatabase other(fixture.File);
    std::unique_ptr<CReadOnlyUser> user;
    if (reason == u"読み取り専用") {
        QVERIFY(QFile::setPermissions(fixture.File, QFile::Permissions(0x4444)));
        QVERIFY(QFile::setPermissions(fixture.Folder.path(), QFile::Permissions(0x5555)));
        user = std::make_unique<CReadOnlyUser>();
    } else {
        QCOMPARE(other.Run(u"BEGIN IMMEDIATE"_s), QString());
    }
    const auto db = fixture.Open();
    user.reset();
    QVERIFY(!db);
    QVERIFY(QFile::setPermissions(fixture.Folder.path(), QFile::Permissions(0x7777)));
    QVERIFY(fixture.Desk.Verify());
    QVERIFY(fixture.Contents() == before);
    QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
}

/// A damaged page among the messages stops the conversion; nothing of the good ones is lost.
void tst_Convert::FailedStepIsTold()
{
    CStoreFixture fixture;
    fixture.Desk.Expect(u"存在しません"_s);
    fixture.Open()->Close();
    QCOMPARE(fixture.AddMessages(500) + fixture.Run(u"UPDATE Version SET Version = 'Ver.0.12'"_s), QString());
    const int leaf =
        fixture.Rows(u"SELECT max(pageno) FROM dbstat WHERE name = 'Message' AND pagetype = 'leaf'"_s)[0].toInt();
    QFile file(fixture.File);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.seek((leaf - 1) * 4096) && file.write(QByteArray(4096, '\0')) > 0);
    file.close();
    const QByteArray before = fixture.Contents();
    fixture.Desk.Expect(Question);
    fixture.Desk.Expect(u"壊れている可能性があります"_s);
    fixture.Desk.Expect(u"Messageテーブルのコンバートに失敗しました。"_s);
    fixture.Desk.Expect(u"取り出しますか"_s, Answer::No);
    QVERIFY(!fixture.Open());
    QVERIFY(fixture.Desk.Verify());
    QVERIFY(fixture.Contents() == before);
}

/// Twice the messages, about twice the time; a step that looks at all rows for each row would be found here.
void tst_Convert::ManyMessages()
{
    CStoreFixture fixture;
    fixture.Desk.Expect(u"存在しません"_s);
    fixture.Open()->Close();
    QCOMPARE(fixture.AddMessages(30000) + fixture.Run(u"UPDATE Version SET Version = 'Ver.0.12'"_s), QString());
    const QStringList before = fixture.Rows(u"SELECT * FROM Message WHERE ID % 500 = 1 ORDER BY ID"_s);
    fixture.Desk.Expect(Question);
    fixture.Desk.Expect(Done);
    QVERIFY(fixture.Open());
    QCOMPARE(fixture.Rows(u"SELECT * FROM Message WHERE ID % 500 = 1 ORDER BY ID"_s), before);
    QCOMPARE(fixture.Rows(u"SELECT count(*) FROM Message"_s), QStringList({u"25715"_s}));
}

QTEST_GUILESS_MAIN(tst_Convert)
#include "tst_Convert.moc"
