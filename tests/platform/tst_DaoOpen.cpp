// tests/platform/tst_DaoOpen.cpp
// Database files that are missing, empty, foreign, cut, locked or not to be written.

#include "tests/support/CRawDatabase.h"
#include "tests/support/CReadOnlyUser.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;

class tst_DaoOpen : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void BadContents_data();
    void BadContents();
    void BadPlaces();
    void CutFile();
    void ZeroedSchemaPage();
    void OpeningChangesNoByte();
    void ClosingLeavesOneFile();
    void UncommittedLogIsRead();
    void CreateNeverReplaces();
    void ReadOnlyFile();
    void ReadOnlyFolder();
    void OddFileNames();
    void ExclusivelyLocked();
    void ClosedObjects();
    void LeaveLogMakesOneFile();

private:
    QString Path(const QString& Name = u"a.mdb"_s) const { return m_folder->filePath(Name); }
    void Write(const QByteArray& Bytes) const { mdlFiles::Write(Path(), Bytes); }
    QByteArray Contents() const { return mdlFiles::Read(Path()); }
    void MakeDatabase() const;
    int OpenError() const
    {
        return ErrorNumber([this] { Database::Open(Path()); });
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_DaoOpen::init() { m_folder = std::make_unique<QTemporaryDir>(); }

void tst_DaoOpen::cleanup()
{
    QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// One table with enough rows for several pages.
void tst_DaoOpen::MakeDatabase() const
{
    const auto db = Database::Create(Path());
    dao::CTransaction transaction(*db);
    db->Execute(u"CREATE TABLE T (N LONG, S TEXT(255))"_s);
    for (int number = 0; number < 500; ++number)
        db->Execute(u"INSERT INTO T VALUES(%1, '%2')"_s.arg(number).arg(QString(40, u'あ')));
    transaction.Keep();
}

void tst_DaoOpen::BadContents_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("number");

    const QByteArray magic("SQLite format 3\0", 16);
    QTest::newRow("empty") << QByteArray() << 3343;
    QTest::newRow("one byte") << QByteArray("S") << 3343;
    QTest::newRow("text") << QByteArray("log of けやき\r\n").repeated(500) << 3343;
    QTest::newRow("zeros") << QByteArray(8192, '\0') << 3343;
    QTest::newRow("another database format")
        << QByteArray("\0\1\0\0Standard Something DB\0", 24) + QByteArray(4096, 'x') << 3343;
    QTest::newRow("magic alone") << magic << 3049;
    QTest::newRow("magic, then junk") << magic + QByteArray(8192, '\xa5') << 3049;
    QTest::newRow("magic, then other junk") << magic + QByteArray("0123456789").repeated(800) << 3049;
}

void tst_DaoOpen::BadContents()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, number);
    Write(bytes);
    QCOMPARE(OpenError(), number);
    QCOMPARE(Contents(), bytes);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({u"a.mdb"_s}));
}

void tst_DaoOpen::BadPlaces()
{
    try {
        Database::Open(Path());
        QFAIL("opened a file that is not there");
    } catch (const dao::Error& error) {
        QCOMPARE(error.Number, 3024);
        QCOMPARE(error.Description, u"ファイル '%1' がありません。"_s.arg(Path()));
    }
    QVERIFY(!QFile::exists(Path()));
    QCOMPARE(ErrorNumber([this] { Database::Open(Path(u"nowhere/a.mdb"_s)); }), 3044);
    QCOMPARE(ErrorNumber([this] { Database::Create(Path(u"nowhere/a.mdb"_s)); }), 3044);
    QVERIFY(QDir(m_folder->path()).mkdir(u"a.mdb"_s));
    QCOMPARE(OpenError(), 3051);
    QCOMPARE(ErrorNumber([this] { Database::Create(Path()); }), 3204);
}

void tst_DaoOpen::CutFile()
{
    MakeDatabase();
    const QByteArray whole = Contents();
    for (const qsizetype size : {whole.size() - 1, whole.size() / 2, qsizetype(4096), qsizetype(500)}) {
        Write(whole.left(size));
        QCOMPARE(OpenError(), 3049);
        QCOMPARE(Contents(), whole.left(size));
    }
}

void tst_DaoOpen::ZeroedSchemaPage()
{
    MakeDatabase();
    QByteArray bytes = Contents();
    bytes.replace(100, 4096 - 100, QByteArray(4096 - 100, '\0'));
    Write(bytes);
    QCOMPARE(OpenError(), 3049);
}

void tst_DaoOpen::OpeningChangesNoByte()
{
    MakeDatabase();
    QCOMPARE(CRawDatabase(Path()).Rows(u"PRAGMA journal_mode=DELETE"_s), QStringList({u"delete"_s}));
    const QByteArray before = Contents();
    {
        const auto db = Database::Open(Path());
        QCOMPARE(db->OpenRecordset(u"T"_s, dao::RecordsetType::Table)->RecordCount(), 500);
    }
    QVERIFY(Contents() == before);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({u"a.mdb"_s}));
}

void tst_DaoOpen::ClosingLeavesOneFile()
{
    MakeDatabase();
    const auto db = Database::Open(Path());
    db->DeleteTable(u"T"_s);
    QVERIFY(QFile::exists(Path(u"a.mdb-wal"_s)));
    db->Checkpoint();
    QCOMPARE(QFile(Path(u"a.mdb-wal"_s)).size(), 0);
    db->Close();
    db->Close();
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({u"a.mdb"_s}));
}

/// After a crash the last rows are in the log only; the file by itself may then be short or even without its tables.
void tst_DaoOpen::UncommittedLogIsRead()
{
    MakeDatabase();
    const auto db = Database::Open(Path());
    db->Execute(u"CREATE TABLE Late (N LONG)"_s);
    QTemporaryDir elsewhere;
    for (const QString& name : {u"a.mdb"_s, u"a.mdb-wal"_s}) {
        QVERIFY(QFile::copy(Path(name), elsewhere.filePath(name)));
        QVERIFY(QFile::setPermissions(elsewhere.filePath(name), QFile::Permissions(0x6666)));
    }
    QVERIFY(QFile::setPermissions(elsewhere.path(), QFile::Permissions(0x5555)));
    {
        const CReadOnlyUser user;
        const auto copy = Database::Open(elsewhere.filePath(u"a.mdb"_s));
        QVERIFY(copy->IsReadOnly());
        QCOMPARE(copy->TableDefs().back().Name, u"Late"_s);
    }
    QCOMPARE(QDir(elsewhere.path()).entryList(QDir::Files).size(), 2);
    QVERIFY(QFile::setPermissions(elsewhere.path(), QFile::Permissions(0x7777)));
    const auto copy = Database::Open(elsewhere.filePath(u"a.mdb"_s));
    QCOMPARE(copy->TableDefs().back().Name, u"Late"_s);
}

void tst_DaoOpen::CreateNeverReplaces()
{
    Write("mine");
    QCOMPARE(ErrorNumber([this] { Database::Create(Path()); }), 3204);
    QCOMPARE(Contents(), QByteArray("mine"));
    QVERIFY(QFile::link(Path(u"gone"_s), Path(u"link.mdb"_s)));
    QCOMPARE(ErrorNumber([this] { Database::Create(Path(u"link.mdb"_s)); }), 3204);
    QVERIFY(!QFile::exists(Path(u"gone"_s)));
}

void tst_DaoOpen::ReadOnlyFile()
{
    MakeDatabase();
    QVERIFY(QFile::setPermissions(Path(), QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777)));
    const CReadOnlyUser user;
    const auto db = Database::Open(Path());
    QVERIFY(db->IsReadOnly());
    QCOMPARE(db->OpenRecordset(u"T"_s, dao::RecordsetType::Table)->RecordCount(), 500);
    QCOMPARE(ErrorNumber([&] { db->DeleteTable(u"T"_s); }), 3027);
    QCOMPARE(ErrorNumber([&] { db->OpenRecordset(u"T"_s, dao::RecordsetType::Table)->AddNew(); }), 3027);
}

void tst_DaoOpen::ReadOnlyFolder()
{
    MakeDatabase();
    QVERIFY(QFile::setPermissions(Path(), QFile::Permissions(0x6666)));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x5555)));
    const CReadOnlyUser user;
    const auto db = Database::Open(Path());
    QVERIFY(db->IsReadOnly());
    const auto rows = db->OpenRecordset(u"T"_s, dao::RecordsetType::Table);
    QCOMPARE(rows->Long(0), 0);
    QCOMPARE(ErrorNumber([&] { db->DeleteTable(u"T"_s); }), 3027);
    db->BeginTrans();
    db->Rollback();
    QCOMPARE(ErrorNumber([this] { Database::Create(Path(u"b.mdb"_s)); }), 3051);
}

void tst_DaoOpen::OddFileNames()
{
    MakeDatabase();
    const QString folder = Path(u"ソ表 %41?#'&"_s);
    QVERIFY(QDir().mkdir(folder));
    const QString name = folder + u"/log?mode=memory#1.mdb"_s;
    QVERIFY(QFile::rename(Path(), name));
    QVERIFY(!Database::Open(name)->IsReadOnly());
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
    {
        const CReadOnlyUser user;
        QCOMPARE(Database::Open(name)->OpenRecordset(u"T"_s, dao::RecordsetType::Table)->RecordCount(), 500);
    }
    QFile::setPermissions(folder, QFile::Permissions(0x7777));
}

void tst_DaoOpen::ExclusivelyLocked()
{
    MakeDatabase();
    CRawDatabase other(Path());
    QCOMPARE(other.Run(u"PRAGMA locking_mode=EXCLUSIVE; BEGIN IMMEDIATE; UPDATE T SET N = N; COMMIT"_s), QString());
    QCOMPARE(OpenError(), 3260);
}

void tst_DaoOpen::ClosedObjects()
{
    MakeDatabase();
    auto db = Database::Open(Path());
    const auto rows = db->OpenRecordset(u"T"_s, dao::RecordsetType::Table);
    QCOMPARE(rows->Long(0), 0);
    db->Close();
    QVERIFY(!db->IsOpen());
    QCOMPARE(ErrorNumber([&] { rows->MoveNext(); }), 3420);
    QCOMPARE(ErrorNumber([&] { rows->Get(0); }), 3420);
    QCOMPARE(ErrorNumber([&] { db->TableDefs(); }), 3420);
    QCOMPARE(ErrorNumber([&] { db->BeginTrans(); }), 3420);
    QCOMPARE(ErrorNumber([&] { db->Execute(u"DELETE FROM T"_s); }), 3420);
    db.reset();
    QCOMPARE(ErrorNumber([&] { rows->Eof(); }), 3420);
}

void tst_DaoOpen::LeaveLogMakesOneFile()
{
    MakeDatabase();
    const auto db = Database::Open(Path());
    db->DeleteTable(u"T"_s);
    db->LeaveLog();
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList({u"a.mdb"_s}));
    QVERIFY(QFile::rename(Path(), Path(u"b.mdb"_s)));
    QCOMPARE(CRawDatabase(Path(u"b.mdb"_s)).Rows(u"SELECT count(*) FROM sqlite_master WHERE name = 'T'"_s),
             QStringList({u"0"_s}));
}

QTEST_GUILESS_MAIN(tst_DaoOpen)
#include "tst_DaoOpen.moc"
