// tests/store/tst_Schema.cpp
// A new message database, read as any other program reads it.

#include "store/Schema.h"
#include "store/Store.h"
#include "tests/support/CRawDatabase.h"
#include "tests/support/DaoHelpers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;
using dao::Database;

class tst_Schema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void Fields_data();
    void Fields();
    void Indexes();
    void Boards();
    void ListOrderAndSeparators();
    void Marks();
    void Versions();
    void WriteVersionTable();
    void ZeroLengthRules_data();
    void ZeroLengthRules();
    void MessageKey();
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
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("wanted"); // name type size, "0" where '' may be stored

    QTest::newRow("BBS") << u"BBS"_s
                         << u"BBS_ID 4 0|BBS_Name 10 255|ShortName 10 255|URL 10 255|HowtouseURL 10 255|MaxCount 4 "
                            u"0|Hitokoto 4 0|VisitLoad 1 0|"
                            "ListOrder 4 0|DefaultLogFile 10 255 0|Identifier 10 255 0"_s;
    QTest::newRow("Message") << u"Message"_s
                             << u"BBS_ID 4 0|ID 4 0|Read 1 0|Subject 10 255 0|Homepage 10 255 0|Mail 10 255 0|PostName "
                                u"10 255 0|PostDate 8 0|"
                                "InReplyTo 4 0|Body 12 0|RootThread 4 0|Mark 4 0"_s;
    QTest::newRow("Mark") << u"Mark"_s << u"ID 4 0|Name 10 255 0|ForeColor 4 0|BackColor 4 0"_s;
    QTest::newRow("Version") << u"Version"_s << u"Table 10 255 0|Version 10 8 0"_s;
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

void tst_Schema::Boards()
{
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
    const QString base = u"http://localhost:8932/"_s;
    const auto row = [&](const QString& Head, const QString& Script, const QString& Usage, const QString& Tail) {
        return Head + u'|' + base + u"cgi-bin/"_s + Script + u".cgi|"_s + base + u"howto/"_s + Usage + u".html|"_s +
               Tail;
    };
    const QStringList wanted{
        row(u"3|けやき掲示板|けやき"_s, u"keyaki"_s, u"keyaki"_s, u"400|-1|-1|0|keyaki*|keyaki"_s),
        row(u"4|かえで掲示板|かえで"_s, u"kaede"_s, u"kaede"_s, u"400|-1|-1|2|kaede*|kaede"_s),
        row(u"5|くすのき掲示板|くすのき"_s, u"kusunoki"_s, u"kusunoki"_s, u"400|-1|-1|4|kusunoki*|kusunoki"_s),
        row(u"6|すぎ掲示板|すぎ"_s, u"sugi"_s, u"sugi"_s, u"400|-1|-1|5||sugi"_s),
        row(u"7|ひのき掲示板|ひのき"_s, u"hinoki"_s, u"hinoki"_s, u"200|-1|-1|6||hinoki"_s),
        row(u"8|まつ掲示板|まつ"_s, u"matsu"_s, u"matsu"_s, u"200|-1|-1|8|matsu*|matsu"_s),
        row(u"9|うめ掲示板|うめ"_s, u"ume"_s, u"ume"_s, u"200|-1|-1|12||ume"_s),
        row(u"10|くり掲示板|くり"_s, u"kuri"_s, u"kuri"_s, u"100|-1|-1|13||kuri"_s),
        row(u"11|かし掲示板|かし"_s, u"kashi"_s, u"kashi"_s, u"200|-1|-1|14||kashi"_s),
        row(u"12|しい掲示板|しい"_s, u"shii"_s, u"shii"_s, u"100|-1|-1|15||shii"_s),
        row(u"13|やなぎ掲示板（左）|やなぎ左"_s, u"yanagi"_s, u"yanagi"_s, u"400|0|-1|9||lyanagi"_s),
        row(u"14|やなぎ掲示板（右）|やなぎ右"_s, u"yanagi"_s, u"yanagi"_s, u"400|1|-1|10||ryanagi"_s),
        row(u"15|えのき掲示板|えのき"_s, u"enoki"_s, u"enoki"_s, u"100|-1|-1|17||enoki"_s),
        row(u"16|けやき掲示板２|けやき２"_s, u"keyaki2"_s, u"kyoutsuu"_s, u"400|-1|-1|1||keyaki2"_s),
        row(u"17|ぶな掲示板|ぶな"_s, u"buna"_s, u"kyoutsuu"_s, u"400|-1|-1|3||buna"_s),
        row(u"18|にれ掲示板|にれ"_s, u"nire"_s, u"kyoutsuu"_s, u"400|-1|-1|11||nire"_s),
    };
    QCOMPARE(RawRows(u"SELECT * FROM BBS ORDER BY rowid"_s), wanted);
    QCOMPARE(RawRows(u"SELECT count(*) FROM Message"_s), QStringList({u"0"_s}));
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_Schema::ListOrderAndSeparators()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    const auto boards =
        db->OpenRecordset(u"SELECT BBS_ID, ListOrder FROM BBS WHERE ListOrder >= 0 ORDER BY ListOrder"_s);
    QStringList shown;
    for (int place = 0; !boards->Eof(); ++place) {
        if (boards->Long(1) != place) {
            shown.append(u"-"_s);
            continue;
        }
        shown.append(boards->Text(0));
        boards->MoveNext();
    }
    QCOMPARE(shown.join(u' '), u"3 16 4 17 5 6 7 - 8 13 14 18 9 10 11 12 - 15"_s);
}

void tst_Schema::Marks()
{
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
    QCOMPARE(RawRows(u"SELECT * FROM Mark ORDER BY rowid"_s),
             QStringList({u"1|マーク&1|128|-2147483643"_s, u"2|マーク&2|32768|-2147483643"_s,
                          u"3|マーク&3|8388608|-2147483643"_s, u"4|マーク&4|8421504|-2147483643"_s}));
}

void tst_Schema::Versions()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QCOMPARE(RawRows(u"SELECT * FROM Version ORDER BY rowid"_s),
             QStringList({u"BBS|Ver.0.42"_s, u"Message|Ver.0.13"_s, u"Mark|Ver.0.40"_s}));
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

void tst_Schema::ZeroLengthRules_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<int>("number");

    for (const char* field : {"BBS_Name", "ShortName", "URL", "HowtouseURL"})
        QTest::newRow(field) << u"UPDATE BBS SET %1 = ''"_s.arg(QLatin1StringView(field)) << 3315;
    for (const char* field : {"DefaultLogFile", "Identifier"})
        QTest::newRow(field) << u"UPDATE BBS SET %1 = ''"_s.arg(QLatin1StringView(field)) << 0;
    for (const char* field : {"Subject", "Homepage", "Mail", "PostName", "Body"})
        QTest::newRow(field) << u"UPDATE Message SET %1 = ''"_s.arg(QLatin1StringView(field))
                             << (qstrcmp(field, "Body") == 0 ? 3315 : 0);
    QTest::newRow("Body Null") << u"UPDATE Message SET Body = Null"_s << 0;
    QTest::newRow("long subject") << u"UPDATE Message SET Subject = '%1'"_s.arg(QString(256, u'題')) << 3163;
    QTest::newRow("subject that just fits") << u"UPDATE Message SET Subject = '%1'"_s.arg(QString(255, u'題')) << 0;
}

void tst_Schema::ZeroLengthRules()
{
    QFETCH(QString, sql);
    QFETCH(int, number);
    const auto db = mdlStore::CreateNewDatabase(m_file);
    db->Execute(u"INSERT INTO Message(BBS_ID, ID) VALUES(3, 1)"_s);
    QCOMPARE(ErrorNumber([&] { db->Execute(sql); }), number);
}

void tst_Schema::MessageKey()
{
    const auto db = mdlStore::CreateNewDatabase(m_file);
    const QString insert = u"INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, "
                           u"InReplyTo, Body, RootThread, Mark)"
                           " VALUES(%1,7,False,'a','','','b',#2002/01/15 09:05#,0,'c',0,0)"_s;
    db->Execute(insert.arg(3));
    QCOMPARE(ErrorNumber([&] { db->Execute(insert.arg(3)); }), 3022);
    db->Execute(insert.arg(4));
    QCOMPARE(RawRows(u"SELECT BBS_ID, ID, PostDate FROM Message ORDER BY BBS_ID"_s).size(), 2);
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
    QFile file(m_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    QVERIFY(!mdlStore::CreateNewDatabase(m_file));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("mine"));
    QCOMPARE(Files(), QStringList({u"log.mdb"_s}));
}

void tst_Schema::NothingLeftBehindWhenRefused()
{
    QVERIFY(!mdlStore::CreateNewDatabase(m_folder->filePath(u"nowhere/log.mdb"_s)));
    QCOMPARE(Files(), QStringList());
}

/// A limit on the size of files stands for the end of the disk.
void tst_Schema::NothingLeftBehindOnAFullDisk()
{
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight{10000, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const auto db = mdlStore::CreateNewDatabase(m_file);
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    QVERIFY(!db);
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
