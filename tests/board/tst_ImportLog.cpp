// tests/board/tst_ImportLog.cpp
// Log files into the database: what is stored, what is told, and what a file that is not quite sound does.

#include "boardd/StoredArchive.h"
#include "tests/board/CBoardFixture.h"
#include "tests/board/Records.h"
#include "tests/support/Files.h"

#include <QTest>
#include <QTimer>

#include <filesystem>

using namespace Qt::StringLiterals;
using mdlRecords::Block;
using mdlRecords::Bytes;
using mdlRecords::Plain;

namespace
{
QByteArray Archive(const QByteArrayList& Members)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < Members.size(); ++i) {
        bytes.chop(i > 0); // the end mark
        bytes += mdlStoredArchive::Make("log" + QByteArray::number(i) + ".txt", Members[i],
                                        QDateTime(QDate(2002, 1, 15), QTime(1, 2)));
    }
    return bytes;
}

struct CImportFixture : CBoardFixture
{
    QStringList Log; ///< what the dialog's log would show

    CImportFixture()
    {
        QObject::connect(&Board, &CBBS::ChangeState, &Board, [this](const QString& Text, bool, bool AddLog) {
            if (AddLog)
                Log << Text;
        });
    }

    QString Write(const QString& Name, const QByteArray& Content)
    {
        QFile file(Folder.filePath(Name));
        return file.open(QIODevice::WriteOnly) && file.write(Content) == Content.size() ? file.fileName() : QString();
    }
    bool Import(const QByteArray& Content, const QString& Name = u"log.txt"_s, bool Read = false)
    {
        return Board.ImportLog(3, Write(Name, Content), Read);
    }
    QString Numbers() { return Rows(u"SELECT ID FROM Message WHERE BBS_ID = 3 ORDER BY ID"_s); }
    /// The log without the folder.
    QString Told() const { return Log.join(u'\n').remove(Folder.path() + u'/'); }
};
} // namespace

class tst_ImportLog : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Files_data();
    void Files();
    void FilesThatCannotBeRead();
    void TheDatabaseItself();
    void TellsWhatItDoes();
    void TwiceIsOnce();
    void TheReadFlagAndTheUnreadPosition();
    void CancelKeepsWhatIsCommitted();
    void CancelWhileUnpacking();
    void AFailingDatabaseEndsIt();
    void OnlyOneRunAtATime();
    void ThreadsAreMendedAcrossFiles();
};

void tst_ImportLog::Files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isSound");
    QTest::addColumn<QString>("numbers");
    QTest::addColumn<QString>("told"); // the last line of the log
    const QString three = u"%1から3件インポートしました。"_s;
    const auto row = [](const char* Title, const QString& Name, const QByteArray& Content, const QString& Numbers,
                        const QString& Told) {
        QTest::newRow(Title) << Name << Content << (Told.endsWith(u"インポートしました。"_s)) << Numbers
                             << (Told.contains(u"%1"_s) ? Told.arg(Name) : Told);
    };
    const QByteArray sound = Bytes(Plain(1, 3));
    row("text", u"log.txt"_s, sound, u"1 2 3"_s, three);
    row("bare LF", u"log.log"_s, QByteArray(sound).replace("\r\n", "\n"), u"1 2 3"_s, three);
    row("UTF-8", u"ログ"_s, Plain(1, 3).toUtf8(), u"1 2 3"_s, three);
    row("last separator unended", u"log.txt"_s, sound.chopped(2), u"1 2 3"_s, three);
    row("archive", u"log.LzH"_s, Archive({sound}), u"1 2 3"_s, three);
    row("members are blocks", u"log.lzh"_s, Archive({Bytes(Plain(1, 2)), Bytes(Plain(3, 3))}), u"1 2 3"_s, three);
    row("a name with .lzh inside", u"log.lzh.txt"_s, sound, u"1 2 3"_s, three);
    row("broken records", u"log.txt"_s, Bytes(Plain(1, 1) + Block({u"x"_s}) + Plain(2, 2) + Block({u"y"_s})), u"1 2"_s,
        u"%1には取り込めない記録が2件ありました。取り込んだ新しいメッセージは2件です。"_s);
    row("broken in the first member", u"log.lzh"_s, Archive({Bytes(Block({u"x"_s})), Bytes(Plain(3, 3))}), u"3"_s,
        u"%1には取り込めない記録が1件ありました。取り込んだ新しいメッセージは1件です。"_s);
    row("cut within a record", u"log.txt"_s, sound.chopped(60), u"1 2"_s,
        u"%1には取り込めないところがありました。取り込んだ新しいメッセージは2件です。"_s);
    QByteArray damaged = Archive({Bytes(Plain(1, 1)), sound});
    damaged.chop(40);
    row("archive cut short", u"log.lzh"_s, damaged, u"1 2"_s,
        u"%1には取り込めないところがありました。取り込んだ新しいメッセージは2件です。"_s);
    row("empty", u"log.txt"_s, {}, {}, u"「log.txt」は空のファイルです。"_s);
    row("no log", u"log.txt"_s, "<html>", {},
        u"「log.txt」にはログの区切り行がありません。掲示板のログではないようです。"_s);
    row("an archive without a log", u"log.lzh"_s, Archive({"readme"}), {},
        u"「log.lzh」には掲示板のログが入っていません。"_s);
}

void tst_ImportLog::Files()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    CImportFixture fixture;
    QTEST(fixture.Import(content, name), "isSound");
    QTEST(fixture.Numbers(), "numbers");
    QTEST(fixture.Told().section(u'\n', -1), "told");
    QVERIFY(!fixture.Board.IsImport() && !fixture.Board.IsError() && !fixture.App.LogDB()->InTransaction());
    QCOMPARE(fixture.Board.AnalyseError(), fixture.Logged.isEmpty() ? 0 : -1);
}

void tst_ImportLog::FilesThatCannotBeRead()
{
    CImportFixture fixture;
    for (const QString& name : {fixture.Folder.path(), fixture.Folder.filePath(u"none.txt"_s), u"/dev/zero"_s}) {
        QVERIFY(!fixture.Board.ImportLog(3, name, false));
        QCOMPARE(std::exchange(fixture.Errors, {}).size(), 1);
    }
    QVERIFY(!fixture.Board.ImportLog(99, fixture.Write(u"log.txt"_s, Bytes(Plain(1, 1))), false));
    QCOMPARE(fixture.Errors, QStringList{u"掲示板の情報が見つかりません。"_s});
    QCOMPARE(fixture.Rows(u"SELECT Count(*) FROM Message"_s), u"0"_s);
}

void tst_ImportLog::TheDatabaseItself()
{
    CImportFixture fixture;
    QVERIFY(fixture.Import(Bytes(Plain(1, 1)))); // now its log is there, too
    const QString database = fixture.App.DatabaseFileName();
    const QString second = fixture.Folder.filePath(u"backup.txt"_s);
    std::filesystem::create_hard_link(database.toStdString(), second.toStdString());
    for (const QString& name : {database, database + u"-wal"_s, database + u"-shm"_s, second}) {
        QVERIFY2(QFile::exists(name) && !fixture.Board.ImportLog(3, name, false), qPrintable(name));
        QVERIFY2(fixture.Log.last().contains(u"データベースなので"_s), qPrintable(fixture.Log.last()));
    }
}

void tst_ImportLog::TellsWhatItDoes()
{
    CImportFixture fixture;
    const QString file = fixture.Write(u"log.txt"_s, Bytes(Plain(1, 1) + Block({u"x"_s})));
    fixture.Board.ImportLog(3, file, false);
    QCOMPARE(fixture.States,
             QStringList({file + u"の取込中..."_s, file + u"の解析中..."_s, u"0件目を解析中..."_s,
                          u"スレッド情報を更新中..."_s, u"スレッド情報の更新を終了しました。"_s,
                          file + u"には取り込めない記録が1件ありました。取り込んだ新しいメッセージは1件です。"_s}));
    QCOMPARE(fixture.LoggedText, QStringList{u"x"_s});
}

void tst_ImportLog::TwiceIsOnce()
{
    CImportFixture fixture;
    QVERIFY(fixture.Import(Bytes(Plain(1, 3))));
    fixture.Log.clear();
    QVERIFY(fixture.Import(Bytes(Plain(1, 3))));
    QCOMPARE(fixture.Told(), u"log.txtから0件インポートしました。"_s);
    QCOMPARE(fixture.Board.SaveCount(), 0);
    QCOMPARE(fixture.Board.AnalyseCount(), 3);
}

void tst_ImportLog::TheReadFlagAndTheUnreadPosition()
{
    CImportFixture fixture;
    fixture.Property().SetNoReadPoint(2);
    QVERIFY(fixture.Import(Bytes(Plain(1, 2)), u"a.txt"_s, true));
    QVERIFY(fixture.Import(Bytes(Plain(2, 3)), u"b.txt"_s, false));
    QCOMPARE(fixture.Rows(u"SELECT Read FROM Message ORDER BY ID"_s), u"True True False"_s);
    QCOMPARE(fixture.Property().NoReadPoint(), 2);
}

void tst_ImportLog::CancelKeepsWhatIsCommitted()
{
    CImportFixture fixture;
    connect(&fixture.Board, &CBBS::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID == 2500)
            QTimer::singleShot(0, this, [&] { fixture.Board.Cancel(); });
    });
    QVERIFY(!fixture.Import(Bytes(Plain(1, 6000))));
    QVERIFY(fixture.Board.IsCancel());
    const int stored = fixture.Rows(u"SELECT Count(*) FROM Message WHERE RootThread = ID"_s).toInt();
    QCOMPARE(stored, fixture.Board.SaveCount());
    QVERIFY2(stored >= 2500 && stored < 3500, qPrintable(QString::number(stored)));
    QCOMPARE(fixture.Told(), QString());

    QVERIFY(fixture.Import(Bytes(Plain(1, 2)))); // the next one begins afresh
}

void tst_ImportLog::CancelWhileUnpacking()
{
    CImportFixture fixture;
    QTimer::singleShot(0, &fixture.Board, &CBBS::Cancel);
    QVERIFY(!fixture.Import(Archive({Bytes(Plain(1, 3)), Bytes(Plain(4, 5))}), u"log.lzh"_s));
    QCOMPARE(fixture.Numbers(), QString());
    QVERIFY(fixture.Board.IsCancel() && !fixture.Board.IsImport());
}

void tst_ImportLog::AFailingDatabaseEndsIt()
{
    CImportFixture fixture;
    fixture.App.LogDB()->DeleteTable(u"BBS"_s);
    QVERIFY(!fixture.Import(Bytes(Plain(1, 3))));
    QVERIFY(fixture.Board.IsError() && !fixture.Board.IsImport());
    QCOMPARE(fixture.Errors.size(), 1);
}

void tst_ImportLog::OnlyOneRunAtATime()
{
    CImportFixture fixture;
    bool wasRefused = false;
    connect(&fixture.Board, &CBBS::AddMessage, this, [&] {
        wasRefused = fixture.Board.IsImport() && !fixture.Board.LoadBBS(3, true, false) &&
                     !fixture.Board.ImportLog(3, fixture.Folder.filePath(u"log.txt"_s), false);
    });
    QVERIFY(fixture.Import(Bytes(Plain(1, 1))));
    QVERIFY(wasRefused);
}

void tst_ImportLog::ThreadsAreMendedAcrossFiles()
{
    CImportFixture fixture;
    const auto record = [](int ID, int Reply) {
        return CRecordText{.ID = QString::number(ID), .InReplyTo = QString::number(Reply)}.Text();
    };
    QVERIFY(fixture.Import(Bytes(Block({record(3, 2), record(4, 3)}))));
    QVERIFY(fixture.Import(Bytes(Block({record(2, 1)}))));
    QVERIFY(fixture.Import(Bytes(Plain(1, 1))));
    QCOMPARE(fixture.Threads(), u"1:1 2:1 3:1 4:1"_s);
}

QTEST_MAIN(tst_ImportLog)
#include "tst_ImportLog.moc"
