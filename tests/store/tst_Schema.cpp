// tests/store/tst_Schema.cpp
// A new message database, read as any other program reads it.

#include "store/Schema.h"
#include "store/Store.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/CRawDatabase.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using dao::Database;

class tst_Schema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void Fields_data();
    void Fields();
    void Indexes();
    void FirstRows_data();
    void FirstRows();
    void Versions();
    void WriteVersionTable();
    void StepsFailQuietly();
    void NeverReplaces();
    void NothingLeftBehindWhenRefused();
    void NothingLeftBehindOnAFullDisk();
    void LostLogDoesNotJoinTheNewFile();

private:
    QStringList RawRows(const QString& Sql) const { return CRawDatabase(m_file).Rows(Sql); }
    QStringList Files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

void tst_Schema::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = m_folder->filePath(u"log.mdb"_s);
}

void tst_Schema::Fields_data()
{
    // wanted: name type size, "0" where '' may be stored
    mdlTable::AddRows<QString, QString>("schema.json", "Fields", {"table", "wanted"});
}

void tst_Schema::Fields()
{
    QFETCH(QString, table);
    QFETCH(QString, wanted);
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QStringList fields;
    for (const dao::TableDef& def : db->TableDefs()) {
        if (def.Name != table)
            continue;
        for (const dao::FieldDef& field : def.Fields) {
            QVERIFY(!field.Required);
            fields.append(u"%1 %2 %3%4"_s.arg(field.Name)
                              .arg(int(field.Type))
                              .arg(field.Size)
                              .arg(field.AllowZeroLength ? u" 0"_s : u""_s));
        }
    }
    QCOMPARE(fields.join(u'|'), wanted);
}

void tst_Schema::Indexes()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QStringList indexes;
    for (const dao::TableDef& table : db->TableDefs()) {
        for (const dao::IndexDef& index : table.Indexes) {
            if (table.Attributes == 0)
                indexes.append(u"%1.%2(%3)%4%5"_s.arg(table.Name, index.Name, index.Fields.join(u','),
                                                      index.Primary ? u" primary"_s : u""_s,
                                                      index.Unique ? u" unique"_s : u""_s));
        }
    }
    QCOMPARE(indexes, QStringList({u"BBS.PK(BBS_ID) primary unique"_s, u"Message.PK(ID,BBS_ID) primary unique"_s,
                                   u"Message.IDX1(RootThread)"_s, u"Mark.PK(ID) primary unique"_s}));
    // Counting the unread messages of a board must not read the messages.
    QVERIFY(RawRows(u"EXPLAIN QUERY PLAN SELECT count(*) FROM Message WHERE BBS_ID = 3 AND Read = 0"_s)
                .join(u' ')
                .contains(u"COVERING INDEX"_s));
}

void tst_Schema::FirstRows_data()
{
    mdlTable::AddRows<QString, QStringList>("schema.json", "FirstRows", {"query", "wanted"});
}

void tst_Schema::FirstRows()
{
    QFETCH(QString, query);
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
    QTEST(RawRows(query), "wanted");
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_Schema::Versions()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QCOMPARE(mdlStore::GetTableVersion(*db, u"Message"_s), u"Ver.0.13"_s);
    QCOMPARE(mdlStore::GetTableVersion(*db, u"Nope"_s), u"Ver.0.00"_s);
    QCOMPARE(mdlStore::GetTableVersion(*db, QString()), u"Ver.0.42"_s);
}

void tst_Schema::WriteVersionTable()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QVERIFY(mdlSchema::WriteVersionTable(*db, u"Ver.0.13"_s));
    QCOMPARE(RawRows(u"SELECT * FROM Version ORDER BY rowid"_s),
             QStringList({u"BBS|Ver.0.13"_s, u"Message|Ver.0.13"_s, u"Mark|Ver.0.13"_s}));
    db->DeleteTable(u"Version"_s);
    QCOMPARE(mdlStore::GetTableVersion(*db, QString()), u"Ver.0.00"_s);
    QVERIFY(mdlSchema::WriteVersionTable(*db, QString()));
    QVERIFY(!mdlSchema::WriteVersionTable(*db, u"Ver.0.123"_s)); // nine characters where eight fit
    db->Execute(u"DELETE FROM Version"_s);
    QCOMPARE(mdlStore::GetTableVersion(*db, QString()), u"Ver.0.00"_s);
    db->Execute(u"INSERT INTO Version VALUES('BBS', 'Ver.1')"_s);
    QCOMPARE(mdlStore::GetTableVersion(*db, u"BBS"_s), u"Ver.0.00"_s);
}

void tst_Schema::StepsFailQuietly()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QVERIFY(!mdlSchema::CreateBBSTable(*db));
    QVERIFY(!mdlSchema::CreateMessageTable(*db));
    QVERIFY(!mdlSchema::CreateMarkTable(*db));
    QCOMPARE(RawRows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
}

void tst_Schema::NeverReplaces()
{
    mdlFiles::Write(m_file, "mine");
    QVERIFY(!mdlStore::CreateNewDatabase(m_file));
    QCOMPARE(mdlFiles::Read(m_file), QByteArray("mine"));
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_Schema::NothingLeftBehindWhenRefused()
{
    QVERIFY(!mdlStore::CreateNewDatabase(m_folder->filePath(u"nowhere/log.mdb"_s)));
    QCOMPARE(Files(), QStringList());
}

void tst_Schema::NothingLeftBehindOnAFullDisk()
{
    {
        const CFileSizeLimit limit(10000);
        QVERIFY(!mdlStore::CreateNewDatabase(m_file));
    }
    QCOMPARE(Files(), QStringList());
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
}

/// Someone deleted the database but not the log beside it. Read into the new file it would spoil it.
void tst_Schema::LostLogDoesNotJoinTheNewFile()
{
    {
        const auto db = mdlStore::CreateNewDatabase(m_file);
        db->Execute(u"DELETE FROM BBS"_s);
        QVERIFY(QFile::copy(m_file + u"-wal"_s, m_folder->filePath(u"saved"_s)));
    }
    QVERIFY(QFile::remove(m_file));
    QVERIFY(QFile::rename(m_folder->filePath(u"saved"_s), m_file + u"-wal"_s));
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
    QCOMPARE(RawRows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
    QCOMPARE(Files(), QStringList({u"log.mdb"_s, u"log.mdb.lost-wal"_s}));
}

QTEST_GUILESS_MAIN(tst_Schema)
#include "tst_Schema.moc"
