// tests/store/tst_Compaction.cpp
// Writing the database anew: smaller and the same, or not at all.

#include "store/Compaction.h"
#include "tests/store/CStoreFixture.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/CReadOnlyUser.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_Compaction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SmallerAndTheSame();
    void Refused_data();
    void Refused();
    void LeftoversGo();
    void OtherConnectionIsNotLeftBehind();
};

namespace
{

const QString AllMessages = u"SELECT * FROM Message ORDER BY BBS_ID, ID"_s;

void Fill(CStoreFixture& Fixture)
{
    Fixture.Desk.Expect(u"存在しません"_s);
    const auto db = Fixture.Open();
    db->CreateQueryDef(u"検索"_s, u"SELECT * FROM Message"_s);
    db->LeaveLog();
    db->Close();
    Fixture.AddMessages(1000);
    Fixture.Run(u"DELETE FROM Message WHERE ID > 300"_s);
}

int Compact(CStoreFixture& Fixture, const dao::Progress& Report = {})
{
    auto db = dao::Database::Open(Fixture.File);
    const auto reason = mdlStore::CompactLogDatabase(db, Report);
    return reason ? reason->Number : db ? 0 : -1;
}

} // namespace

void tst_Compaction::SmallerAndTheSame()
{
    CStoreFixture fixture;
    Fill(fixture);
    const QString link = fixture.Folder.filePath(u"link.mdb"_s);
    QVERIFY(QFile::link(fixture.File, link));
    QVERIFY(QFile::setPermissions(fixture.File, QFile::ReadOwner | QFile::WriteOwner));
    const auto rights = QFile::permissions(fixture.File);
    const QStringList before = fixture.Rows(AllMessages);
    const qint64 size = QFile(fixture.File).size();
    auto db = dao::Database::Open(link);
    db->Execute(u"UPDATE Message SET Mark = Mark"_s); // something for the log
    QList<int> shown;
    QVERIFY(!mdlStore::CompactLogDatabase(db, [&](int Percent) {
        shown.append(Percent);
        return true;
    }));
    QVERIFY(std::is_sorted(shown.begin(), shown.end()) && !shown.isEmpty() && shown.last() <= 100);
    QCOMPARE(db->QueryDefs(), QStringList({u"検索"_s}));
    db->Close();
    QVERIFY(QFile(fixture.File).size() < size / 2);
    QCOMPARE(fixture.Rows(AllMessages), before);
    QCOMPARE(fixture.Rows(u"PRAGMA application_id"_s), QStringList({u"1415673458"_s}));
    QCOMPARE(QFile::permissions(fixture.File), rights);
    QCOMPARE(fixture.Files(), QStringList({u"link.mdb"_s, u"log.mdb"_s}));
    QVERIFY(QFileInfo(link).isSymLink());
}

void tst_Compaction::Refused_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("somebody reads") << 3260;
    QTest::newRow("somebody writes") << 3260;
    QTest::newRow("read-only file") << 3027;
    QTest::newRow("read-only folder") << 3027;
    QTest::newRow("full disk") << 3026;
    QTest::newRow("broken off at once") << 3059;
    QTest::newRow("broken off while it is checked") << 3059;
    QTest::newRow("damaged page") << 3049;
    QTest::newRow("damaged index") << 3049;
}

void tst_Compaction::Refused()
{
    QFETCH(int, number);
    CStoreFixture fixture;
    Fill(fixture);
    const QString what = QString::fromLatin1(QTest::currentDataTag());
    const QStringList before = fixture.Rows(AllMessages);
    std::unique_ptr<CRawDatabase> other;
    dao::Progress report;
    std::unique_ptr<CFileSizeLimit> limit;
    std::unique_ptr<CReadOnlyUser> user;
    if (what.startsWith(u"somebody")) {
        other = std::make_unique<CRawDatabase>(fixture.File);
        const QString job = what.endsWith(u"reads") ? u"BEGIN; SELECT * FROM Mark"_s : u"BEGIN IMMEDIATE"_s;
        QCOMPARE(other->Run(u"PRAGMA journal_mode=WAL;"_s + job), QString());
    } else if (what.startsWith(u"read-only")) {
        const bool isFolder = what.endsWith(u"folder");
        QVERIFY(
            QFile::setPermissions(fixture.File, isFolder ? QFile::Permissions(0x6666) : QFile::Permissions(0x4444)));
        QVERIFY(QFile::setPermissions(fixture.Folder.path(), QFile::Permissions(isFolder ? 0x5555 : 0x7777)));
        user = std::make_unique<CReadOnlyUser>();
    } else if (what == u"full disk") {
        limit = std::make_unique<CFileSizeLimit>(100000);
    } else if (what.startsWith(u"broken off")) {
        report = [least = what.endsWith(u"once") ? -1 : 76](int Percent) { return Percent < least; };
    } else {
        const bool isIndex = what.endsWith(u"index");
        const QString object = isIndex ? u"Message.IDX1"_s : u"Message"_s;
        const int page =
            fixture.Rows(u"SELECT max(pageno) FROM dbstat WHERE name = '%1' AND pagetype = 'leaf'"_s.arg(object))
                .value(0)
                .toInt();
        QFile file(fixture.File);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek((page - 1) * 4096) &&
                file.write(QByteArray(4096, isIndex ? '\x0a' : '\0')) > 0);
    }
    const int refused = Compact(fixture, report);
    other.reset();
    limit.reset();
    user.reset();
    QFile::setPermissions(fixture.Folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(refused, number);
    QCOMPARE(fixture.Files().filter(u"TVR"_s), QStringList());
    if (number != 3049)
        QCOMPARE(fixture.Rows(AllMessages), before);
}

/// Versions of a killed job go; what another program may have moved to such a name stays.
void tst_Compaction::LeftoversGo()
{
    CStoreFixture fixture;
    Fill(fixture);
    fixture.Write("SQLite format 3\0..."_ba, u"TVRabcdef.tmp"_s);
    fixture.Write("log", u"TVRabcdef.tmp-wal"_s);
    fixture.Write(QByteArray(8192, '\0'), u"TVR123456.tmp"_s);
    fixture.Write("short name", u"TVR1A2B.tmp"_s);
    fixture.Write(QByteArray("\0\1\0\0Standard", 12), u"TVR12345a.tmp"_s);
    QVERIFY(fixture.Open());
    QCOMPARE(fixture.Files(), QStringList({u"TVR12345a.tmp"_s, u"TVR1A2B.tmp"_s, u"log.mdb"_s}));
}

/// Who has had the file open since before a compaction would write into a file without a name.
void tst_Compaction::OtherConnectionIsNotLeftBehind()
{
    CStoreFixture fixture;
    Fill(fixture);
    const auto early = dao::Database::Open(fixture.File);
    QCOMPARE(Compact(fixture), 0);
    int number = 0;
    try {
        early->Execute(u"UPDATE Mark SET ForeColor = 1"_s);
    } catch (const dao::Error& error) {
        number = error.Number;
    }
    QCOMPARE(number, 3260);
    QCOMPARE(fixture.Files(), QStringList({u"log.mdb"_s}));
}

QTEST_GUILESS_MAIN(tst_Compaction)
#include "tst_Compaction.moc"
