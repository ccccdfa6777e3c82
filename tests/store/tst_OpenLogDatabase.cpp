// tests/store/tst_OpenLogDatabase.cpp
// Starting with a database that is missing, no database, current, too new, too old, damaged or locked.

#include "tests/store/CStoreFixture.h"
#include "tests/support/CReadOnlyUser.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_OpenLogDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<CStoreFixture>(); }
    void cleanup();
    void MissingFileIsMade();
    void CurrentFileOpensSilently();
    void UnrecognisedFileIsKept_data();
    void UnrecognisedFileIsKept();
    void BackupIsNeverOverwritten();
    void LogOfUnrecognisedFileGoesWithIt();
    void OtherVersions_data();
    void OtherVersions();
    void DamagedFile();
    void DamagedVersionTable();
    void LockedFile();
    void ReadOnlyFolder();
    void FolderInPlaceOfTheFile();

private:
    CStoreFixture& F() { return *m_fixture; }

    std::unique_ptr<CStoreFixture> m_fixture;
};

namespace
{

const QString MissingText = u"データベースファイルが存在しません。\n新しく作成します。"_s;

}

void tst_OpenLogDatabase::cleanup()
{
    QFile::setPermissions(F().Folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_fixture.reset();
}

void tst_OpenLogDatabase::MissingFileIsMade()
{
    F().Desk.Expect(MissingText);
    const auto db = F().Open();
    QVERIFY(db);
    QCOMPARE(db->Name(), F().File);
    QCOMPARE(F().Desk.Boxes[0].Text, MissingText);
    QCOMPARE(F().Desk.Boxes[0].Caption, F().App.AppTitle());
    QCOMPARE(F().Desk.Boxes[0].Icon, Desktop::Icon::Information);
    QCOMPARE(F().Desk.Boxes[0].Buttons, Desktop::Buttons::Ok);
    QCOMPARE(F().Rows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
}

void tst_OpenLogDatabase::CurrentFileOpensSilently()
{
    mdlStore::CreateNewDatabase(F().File);
    const auto db = F().Open();
    QVERIFY(db);
    QVERIFY(!db->IsReadOnly());
    QVERIFY(F().Desk.Boxes.empty());
}

void tst_OpenLogDatabase::UnrecognisedFileIsKept_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("けやき掲示板の過去ログ\r\n");
    QTest::newRow("older database format")
        << QByteArray("\0\1\0\0Standard Something DB\0", 24) + QByteArray(100000, 'x');
}

void tst_OpenLogDatabase::UnrecognisedFileIsKept()
{
    QFETCH(QByteArray, bytes);
    F().Write(bytes);
    const QString text =
        F().File +
        u"をデータベースファイルとして認識できませんでした。\nログのバックアップ(log.bak)を作成し、新しいデータベースファイルを作成します。"_s;
    F().Desk.Expect(text);
    QVERIFY(F().Open());
    QCOMPARE(F().Desk.Boxes[0].Text, text);
    QCOMPARE(F().Desk.Boxes[0].Icon, Desktop::Icon::Information);
    QCOMPARE(F().Contents(u"log.bak"_s), bytes);
    QCOMPARE(F().Rows(u"SELECT max(Version) FROM Version"_s), QStringList({u"Ver.0.42"_s}));
}

void tst_OpenLogDatabase::BackupIsNeverOverwritten()
{
    F().Write("new junk");
    F().Write("old backup", u"log.bak"_s);
    F().Desk.Expect(u"認識できませんでした"_s);
    F().Desk.Expect(u"バックアップ(log.bak)を作成できませんでした。\n同じ名前"_s);
    QVERIFY(!F().Open());
    QCOMPARE(F().Contents(), QByteArray("new junk"));
    QCOMPARE(F().Contents(u"log.bak"_s), QByteArray("old backup"));
    QCOMPARE(F().Files(), QStringList({u"log.bak"_s, u"log.mdb"_s}));
}

void tst_OpenLogDatabase::LogOfUnrecognisedFileGoesWithIt()
{
    F().Write("junk");
    F().Write("its log", u"log.mdb-wal"_s);
    F().Write("its index", u"log.mdb-shm"_s);
    F().Desk.Expect(u"認識できませんでした"_s);
    QVERIFY(F().Open());
    QCOMPARE(F().Contents(u"log.bak"_s), QByteArray("junk"));
    QCOMPARE(F().Contents(u"log.bak-wal"_s), QByteArray("its log"));
    QCOMPARE(F().Rows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
    QCOMPARE(F().Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
}

void tst_OpenLogDatabase::OtherVersions_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<bool>("isNewer");

    QTest::newRow("next version") << u"UPDATE Version SET Version = 'Ver.0.43' WHERE \"Table\" = 'BBS'"_s << true;
    QTest::newRow("one newer table") << u"UPDATE Version SET Version = 'Ver.1.00' WHERE \"Table\" = 'Mark'"_s << true;
    QTest::newRow("older") << u"UPDATE Version SET Version = 'Ver.0.12'"_s << false;
    QTest::newRow("single version")
        << u"DROP TABLE Version; CREATE TABLE Version (Version TEXT(8)); INSERT INTO Version VALUES ('Ver.0.12')"_s
        << false;
    QTest::newRow("no version") << u"DROP TABLE Version"_s << false;
    QTest::newRow("nonsense") << u"UPDATE Version SET Version = 'latest'"_s << false;
    QTest::newRow("somebody else's database")
        << u"DROP TABLE Version; DROP TABLE BBS; DROP TABLE Message; DROP TABLE Mark; PRAGMA application_id=0"_s
        << false;
}

void tst_OpenLogDatabase::OtherVersions()
{
    QFETCH(QString, change);
    QFETCH(bool, isNewer);
    mdlStore::CreateNewDatabase(F().File);
    QCOMPARE(F().Run(change), QString());
    const QByteArray before = F().Contents();
    const QString text =
        isNewer ? u"データベースファイルが新しすぎます。"_s : u"データベースファイルが古くなっています。"_s;
    F().Desk.Expect(text, isNewer ? Desktop::Answer::Ok : Desktop::Answer::Cancel);
    QVERIFY(!F().Open());
    QCOMPARE(F().Desk.Boxes[0].Text.section(u'\n', 0, 0), text);
    QCOMPARE(F().Desk.Boxes[0].Icon, Desktop::Icon::Information);
    QVERIFY(F().Contents() == before);
    QCOMPARE(F().Files(), QStringList({u"log.mdb"_s}));
}

void tst_OpenLogDatabase::DamagedFile()
{
    mdlStore::CreateNewDatabase(F().File);
    const QByteArray cut = F().Contents().left(5000);
    F().Write(cut);
    F().Desk.Expect(u"壊れている可能性があります"_s);
    F().Desk.Expect(u"取り出しますか"_s, Desktop::Answer::No);
    QVERIFY(!F().Open());
    QCOMPARE(F().Desk.Boxes[0].Icon, Desktop::Icon::Critical);
    QCOMPARE(F().Contents(), cut);
    QCOMPARE(F().Files(), QStringList({u"log.mdb"_s}));
}

/// Damage where the version stands must not be taken for an old file.
void tst_OpenLogDatabase::DamagedVersionTable()
{
    mdlStore::CreateNewDatabase(F().File);
    const int page = F().Rows(u"SELECT rootpage FROM sqlite_master WHERE name = 'Version'"_s)[0].toInt();
    QByteArray bytes = F().Contents();
    bytes.replace((page - 1) * 4096, 4096, QByteArray(4096, '\x7f'));
    F().Write(bytes);
    F().Desk.Expect(u"壊れている可能性があります"_s);
    F().Desk.Expect(u"取り出しますか"_s, Desktop::Answer::No);
    QVERIFY(!F().Open());
    QVERIFY(F().Contents() == bytes);
}

void tst_OpenLogDatabase::LockedFile()
{
    mdlStore::CreateNewDatabase(F().File);
    CRawDatabase other(F().File);
    QCOMPARE(other.Run(u"PRAGMA locking_mode=EXCLUSIVE; BEGIN IMMEDIATE; UPDATE Mark SET ID = ID; COMMIT"_s),
             QString());
    F().Desk.Expect(u"他でロックされているため"_s);
    QVERIFY(!F().Open());
    QCOMPARE(F().Desk.Boxes[0].Icon, Desktop::Icon::Critical);
}

void tst_OpenLogDatabase::ReadOnlyFolder()
{
    mdlStore::CreateNewDatabase(F().File);
    QVERIFY(QFile::setPermissions(F().File, QFile::Permissions(0x4444)));
    QVERIFY(QFile::setPermissions(F().Folder.path(), QFile::Permissions(0x5555)));
    {
        const CReadOnlyUser user;
        const auto db = F().Open();
        QVERIFY(db);
        QVERIFY(db->IsReadOnly());
        QCOMPARE(mdlStore::GetTableVersion(*db, u"BBS"_s), u"Ver.0.42"_s);
        db->Close();
        F().File = F().Folder.filePath(u"other.mdb"_s);
        F().Desk.Expect(MissingText);
        F().Desk.Expect(u"データベースファイルを作成できませんでした。\n"_s + F().File);
        QVERIFY(!F().Open());
    }
    QCOMPARE(F().Files(), QStringList({u"log.mdb"_s}));
}

void tst_OpenLogDatabase::FolderInPlaceOfTheFile()
{
    QVERIFY(QDir(F().Folder.path()).mkdir(u"log.mdb"_s));
    F().Desk.Expect(u"'%1' を開けません"_s.arg(F().File));
    QVERIFY(!F().Open());
    QVERIFY(QDir(F().File).exists());
}

QTEST_GUILESS_MAIN(tst_OpenLogDatabase)
#include "tst_OpenLogDatabase.moc"
