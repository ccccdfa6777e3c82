// tests/store/tst_OpenLogDatabase.cpp
// Starting with a database that is missing, no database, current, too new, too old, damaged or locked.

#include "app/Application.h"
#include "store/Store.h"
#include "tests/support/CRawDatabase.h"
#include "tests/support/CReadOnlyUser.h"
#include "tests/support/CScriptedDesktop.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_OpenLogDatabase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
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
    std::unique_ptr<dao::Database> Open() { return mdlStore::OpenLogDatabase(m_file, *m_app); }
    QStringList Files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }
    QByteArray Contents(const QString& Name = u"log.mdb"_s) const
    {
        QFile file(m_folder->filePath(Name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    void Write(const QByteArray& Bytes, const QString& Name = u"log.mdb"_s) const
    {
        QFile file(m_folder->filePath(Name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(Bytes), Bytes.size());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
    std::unique_ptr<CScriptedDesktop> m_desktop;
    std::unique_ptr<Application> m_app;
};

namespace
{

const QString MissingText = u"データベースファイルが存在しません。\n新しく作成します。"_s;

}

void tst_OpenLogDatabase::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(u"log.mdb"_s);
    m_desktop = std::make_unique<CScriptedDesktop>();
    m_app = std::make_unique<Application>(*m_desktop, m_folder->path(), u"Tavora"_s);
}

void tst_OpenLogDatabase::cleanup()
{
    QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_app.reset();
    m_desktop.reset();
}

void tst_OpenLogDatabase::MissingFileIsMade()
{
    m_desktop->Expect(MissingText);
    const auto db = Open();
    QVERIFY(db);
    QCOMPARE(db->Name(), m_file);
    QCOMPARE(m_desktop->Boxes[0].Text, MissingText);
    QCOMPARE(m_desktop->Boxes[0].Caption, m_app->AppTitle());
    QCOMPARE(m_desktop->Boxes[0].Icon, Desktop::Icon::Information);
    QCOMPARE(m_desktop->Boxes[0].Buttons, Desktop::Buttons::Ok);
    QCOMPARE(CRawDatabase(m_file).Rows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
}

void tst_OpenLogDatabase::CurrentFileOpensSilently()
{
    mdlStore::CreateNewDatabase(m_file);
    const auto db = Open();
    QVERIFY(db);
    QVERIFY(!db->IsReadOnly());
    QVERIFY(m_desktop->Boxes.empty());
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
    Write(bytes);
    const QString text =
        m_file +
        u"をデータベースファイルとして認識できませんでした。\nログのバックアップ(log.bak)を作成し、新しいデータベースファイルを作成します。"_s;
    m_desktop->Expect(text);
    QVERIFY(Open());
    QCOMPARE(m_desktop->Boxes[0].Text, text);
    QCOMPARE(m_desktop->Boxes[0].Icon, Desktop::Icon::Information);
    QCOMPARE(Contents(u"log.bak"_s), bytes);
    QCOMPARE(CRawDatabase(m_file).Rows(u"SELECT max(Version) FROM Version"_s), QStringList({u"Ver.0.42"_s}));
}

void tst_OpenLogDatabase::BackupIsNeverOverwritten()
{
    Write("new junk");
    Write("old backup", u"log.bak"_s);
    m_desktop->Expect(u"認識できませんでした"_s);
    m_desktop->Expect(u"バックアップ(log.bak)を作成できませんでした。\n同じ名前"_s);
    QVERIFY(!Open());
    QCOMPARE(Contents(), QByteArray("new junk"));
    QCOMPARE(Contents(u"log.bak"_s), QByteArray("old backup"));
    QCOMPARE(Files(), QStringList({u"log.bak"_s, u"log.mdb"_s}));
}

void tst_OpenLogDatabase::LogOfUnrecognisedFileGoesWithIt()
{
    Write("junk");
    Write("its log", u"log.mdb-wal"_s);
    Write("its index", u"log.mdb-shm"_s);
    m_desktop->Expect(u"認識できませんでした"_s);
    QVERIFY(Open());
    QCOMPARE(Contents(u"log.bak"_s), QByteArray("junk"));
    QCOMPARE(Contents(u"log.bak-wal"_s), QByteArray("its log"));
    QCOMPARE(CRawDatabase(m_file).Rows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
    QCOMPARE(CRawDatabase(m_file).Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
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
    mdlStore::CreateNewDatabase(m_file);
    QCOMPARE(CRawDatabase(m_file).Run(change), QString());
    const QByteArray before = Contents();
    const QString text =
        isNewer ? u"データベースファイルが新しすぎます。"_s : u"データベースファイルが古くなっています。"_s;
    m_desktop->Expect(text, isNewer ? Desktop::Answer::Ok : Desktop::Answer::Cancel);
    QVERIFY(!Open());
    QCOMPARE(m_desktop->Boxes[0].Text.section(u'\n', 0, 0), text);
    QCOMPARE(m_desktop->Boxes[0].Icon, Desktop::Icon::Information);
    QVERIFY(Contents() == before);
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_OpenLogDatabase::DamagedFile()
{
    mdlStore::CreateNewDatabase(m_file);
    const QByteArray cut = Contents().left(5000);
    Write(cut);
    m_desktop->Expect(u"壊れている可能性があります"_s);
    m_desktop->Expect(u"取り出しますか"_s, Desktop::Answer::No);
    QVERIFY(!Open());
    QCOMPARE(m_desktop->Boxes[0].Icon, Desktop::Icon::Critical);
    QCOMPARE(Contents(), cut);
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

/// Damage where the version stands must not be taken for an old file.
void tst_OpenLogDatabase::DamagedVersionTable()
{
    mdlStore::CreateNewDatabase(m_file);
    const int page =
        CRawDatabase(m_file).Rows(u"SELECT rootpage FROM sqlite_master WHERE name = 'Version'"_s)[0].toInt();
    QByteArray bytes = Contents();
    bytes.replace((page - 1) * 4096, 4096, QByteArray(4096, '\x7f'));
    Write(bytes);
    m_desktop->Expect(u"壊れている可能性があります"_s);
    m_desktop->Expect(u"取り出しますか"_s, Desktop::Answer::No);
    QVERIFY(!Open());
    QVERIFY(Contents() == bytes);
}

void tst_OpenLogDatabase::LockedFile()
{
    mdlStore::CreateNewDatabase(m_file);
    CRawDatabase other(m_file);
    QCOMPARE(other.Run(u"PRAGMA locking_mode=EXCLUSIVE; BEGIN IMMEDIATE; UPDATE Mark SET ID = ID; COMMIT"_s),
             QString());
    m_desktop->Expect(u"他でロックされているため"_s);
    QVERIFY(!Open());
    QCOMPARE(m_desktop->Boxes[0].Icon, Desktop::Icon::Critical);
}

void tst_OpenLogDatabase::ReadOnlyFolder()
{
    mdlStore::CreateNewDatabase(m_file);
    QVERIFY(QFile::setPermissions(m_file, QFile::Permissions(0x4444)));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x5555)));
    {
        const CReadOnlyUser user;
        const auto db = Open();
        QVERIFY(db);
        QVERIFY(db->IsReadOnly());
        QCOMPARE(mdlStore::GetTableVersion(*db, u"BBS"_s), u"Ver.0.42"_s);
        db->Close();
        m_file = m_folder->filePath(u"other.mdb"_s);
        m_desktop->Expect(MissingText);
        m_desktop->Expect(u"データベースファイルを作成できませんでした。\n"_s + m_file);
        QVERIFY(!Open());
    }
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_OpenLogDatabase::FolderInPlaceOfTheFile()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"log.mdb"_s));
    m_desktop->Expect(u"'%1' を開けません"_s.arg(m_file));
    QVERIFY(!Open());
    QVERIFY(QDir(m_file).exists());
}

QTEST_GUILESS_MAIN(tst_OpenLogDatabase)
#include "tst_OpenLogDatabase.moc"
