// tests/sqlshell/tst_SqlShellProgram.cpp
// The program as users and scripts run it: its own process, real pipes, real files.

#include "store/Store.h"
#include "tests/support/DaoHelpers.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace mdlDaoHelpers;

class tst_SqlShellProgram : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void ShowsTables();
    void GoesOnBehindErrors();
    void WritesJsonLines_data();
    void WritesJsonLines();
    void WritesCsv();
    void FillsParameters();
    void OpensAsTheReaderDoes();
    void TellsTypesWithoutAFile();
    void KeepsQueries();
    void SkipsRowsOrKeepsAll();
    void RollsBackWhatWasNotCommitted();
    void TakesAnyInput_data();
    void TakesAnyInput();
    void TakesAHugeStatement();
    void RunsBesideOthers();
    void EndsWithItsReader();
    void EndsOnInterrupt();
    void RepeatsItsOwnSchema();

private:
    struct Outcome
    {
        int Status = -1; ///< -1: ended by a signal
        QByteArray Out;
        QByteArray Messages;
    };
    Outcome Run(const QStringList& Words, const QByteArray& Input = {}) const;
    /// One statement with --json; the one object that it writes.
    QJsonObject Json(const QString& Statement, const QStringList& Options = {}) const;
    QString Path(const QString& Name) const { return m_folder->filePath(Name); }
    void Start(QProcess& Shell, const QStringList& Words) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

namespace
{

QByteArray Sample()
{
    QFile file(QStringLiteral(TAVORA_TEST_DATA "/sql/boards.sql"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Compact(const QJsonObject& Object) { return QJsonDocument(Object).toJson(QJsonDocument::Compact); }

} // namespace

void tst_SqlShellProgram::Start(QProcess& Shell, const QStringList& Words) const
{
    Shell.setWorkingDirectory(m_folder->path());
    Shell.start(QStringLiteral(TAVORA_BINARY_DIR "/sqlshell/tavora-sql"), Words);
}

tst_SqlShellProgram::Outcome tst_SqlShellProgram::Run(const QStringList& Words, const QByteArray& Input) const
{
    QProcess shell;
    Start(shell, Words);
    shell.write(Input);
    shell.closeWriteChannel();
    if (!shell.waitForFinished(60000))
        return {};
    const bool hasEnded = shell.exitStatus() == QProcess::NormalExit;
    return {hasEnded ? shell.exitCode() : -1, shell.readAllStandardOutput(), shell.readAllStandardError()};
}

QJsonObject tst_SqlShellProgram::Json(const QString& Statement, const QStringList& Options) const
{
    const Outcome outcome = Run(QStringList{m_file, u"--json"_s, Statement} + Options);
    return QJsonDocument::fromJson(outcome.Out).object();
}

void tst_SqlShellProgram::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_file = Path(u"log.mdb"_s);
    QVERIFY(mdlStore::CreateNewDatabase(m_file));
    const Outcome filled = Run({m_file}, Sample());
    QCOMPARE(filled.Messages, QByteArray());
    QCOMPARE(filled.Status, 0);
}

void tst_SqlShellProgram::cleanup() { m_folder.reset(); }

void tst_SqlShellProgram::ShowsTables()
{
    const Outcome outcome =
        Run({m_file, u"--width=14"_s,
             u"SELECT ID, PostName, PostDate, Read, Body FROM Message WHERE BBS_ID = 3 AND ID IN (3, 7);"
             "UPDATE Mark SET Name = Name WHERE ID < 3"_s});
    QCOMPARE(QString::fromUtf8(outcome.Out), u" ID | PostName | PostDate       | Read  | Body\n"
                                             "----+----------+----------------+-------+---------------\n"
                                             "  3 | 高橋     | 2002/01/15 12… | True  | どなたか教え…\n"
                                             "  7 | 田中     | 2002/02/20 23… | False | Null\n"
                                             "(2 件)\n\n"
                                             "2 件を更新しました。\n"_s);
    QCOMPARE(outcome.Messages + QByteArray::number(outcome.Status), QByteArray("0"));
}

void tst_SqlShellProgram::GoesOnBehindErrors()
{
    const Outcome outcome =
        Run({m_file}, "SELECT 1;\nSELECT *\nFROM Nowhere;\nSELECT Nope FROM Mark; SELECT 2;\n.what\n");
    QCOMPARE(outcome.Status, 1);
    QVERIFY(outcome.Out.contains("        2\n(1 件)"));
    const QString messages = QString::fromUtf8(outcome.Messages);
    QVERIFY2(messages.contains(u"エラー 3078 (3 行目 6 文字目): "_s), qPrintable(messages));
    QVERIFY2(messages.contains(u"\n  FROM Nowhere\n       ^\n"_s), qPrintable(messages));
    QVERIFY2(messages.contains(u"エラー 3061 (4 行目からの文): "_s) && messages.contains(u"[Nope]"_s),
             qPrintable(messages));
    QVERIFY2(messages.contains(u".what というコマンドはありません。"_s), qPrintable(messages));
}

void tst_SqlShellProgram::WritesJsonLines_data()
{
    // wanted: keys in alphabetical order
    mdlTable::AddRows<QString, QByteArray>("sql-program.json", "WritesJsonLines", {"statement", "wanted"});
}

void tst_SqlShellProgram::WritesJsonLines()
{
    QFETCH(QString, statement);
    QFETCH(QByteArray, wanted);
    QCOMPARE(Compact(Json(statement)), wanted);
    const Outcome three = Run({m_file, u"--json"_s}, "SELECT 1;" + statement.toUtf8() + "\n;SELEC; SELECT 2");
    const QByteArrayList lines = three.Out.trimmed().split('\n');
    QCOMPARE(lines.size(), 4);
    for (const QByteArray& line : lines)
        QVERIFY(QJsonDocument::fromJson(line).isObject());
    QCOMPARE(lines[3], QByteArray("{\"type\":0,\"columns\":[\"Expr1000\"],\"rows\":[[2]]}"));
    QCOMPARE(three.Messages + QByteArray::number(three.Status), QByteArray("1"));
}

void tst_SqlShellProgram::WritesCsv()
{
    const Outcome outcome =
        Run({m_file, u"--csv"_s, u"SELECT ID, Homepage, Body, 'a,b' AS x FROM Message WHERE BBS_ID = 3 AND ID = 7"_s,
             u"UPDATE Mark SET ID = ID"_s, u"SELECT 'x' & Chr(34)"_s});
    QCOMPARE(outcome.Out, QByteArray("ID,Homepage,Body,x\r\n7,\"\",,\"a,b\"\r\n\r\nExpr1000\r\n\"x\"\"\"\r\n"));
}

void tst_SqlShellProgram::FillsParameters()
{
    const QString sql =
        u"PARAMETERS [いつから] DateTime, n Long; SELECT Count(*) FROM Message WHERE PostDate >= [いつから] AND BBS_ID = n"_s;
    const auto count = [&](const QStringList& options) { return Compact(Json(sql, options)); };
    QVERIFY(count({u"--param"_s, u"イツカラ=2002/2/11"_s, u"--param"_s, u"N=4"_s}).contains("[[3]]"));
    QVERIFY(count({u"--param=いつから=#2/12/2002#"_s, u"--param=n=9"_s, u"--param=n=4"_s}).contains("[[1]]"));
    QVERIFY(count({u"--param=いつから=Null"_s, u"--param=n=4"_s}).contains("[[0]]"));
    QVERIFY(count({u"--param=いつから=x"_s, u"--param=n=4"_s}).contains("\"error\":3421"));
    QVERIFY(count({u"--param=n=4"_s}).contains("\"parameters\":[\"いつから\"]"));
}

void tst_SqlShellProgram::OpensAsTheReaderDoes()
{
    mdlFiles::Write(Path(u"garbage.mdb"_s), QByteArray(5000, '\xE5'));
    QCOMPARE(Json(u"SELECT 1"_s, {u"--create"_s})[u"error"_s], 3204);
    for (const auto& [file, number] :
         {std::pair(u"missing.mdb"_s, 3024), {u"nowhere/x.mdb"_s, 3044}, {u"garbage.mdb"_s, 3343}}) {
        const Outcome outcome = Run({file, u"SELECT 1"_s});
        QCOMPARE(outcome.Status, 2);
        QVERIFY(outcome.Messages.startsWith("エラー " + QByteArray::number(number)) && outcome.Out.isEmpty());
    }
    QVERIFY(!QFile::exists(Path(u"missing.mdb"_s)));
    QCOMPARE(Run({u"new.mdb"_s, u"--create"_s, u".tables"_s}).Status, 0);
    QVERIFY(dao::Database::Open(Path(u"new.mdb"_s)));
    QCOMPARE(Run({}).Status, 2);
}

void tst_SqlShellProgram::TellsTypesWithoutAFile()
{
    const Outcome outcome =
        Run({u"missing.mdb"_s, u"--json"_s, u"--type-only"_s},
            "SELECT 1; PARAMETERS a Long; DELETE FROM x;TRANSFORM Count(*) SELECT a FROM b GROUP BY a PIVOT c;"
            "DROP TABLE x; SELECT a INTO b FROM c; SELECT 1 UNION SELECT 2; hello world");
    QCOMPARE(QByteArray(outcome.Out).replace("\"type\":", "").left(43),
             QByteArray("{0}\n{32}\n{16}\n{96}\n{80}\n{128}\n{\"error\":3129"));
    QVERIFY(!QFile::exists(Path(u"missing.mdb"_s)));
    QCOMPARE(Json(u"Message"_s, {u"--type-only"_s})[u"type"_s], 0);
}

void tst_SqlShellProgram::KeepsQueries()
{
    const Outcome saved =
        Run({m_file}, ".save [未 読] SELECT ID FROM Message WHERE Read = False AND BBS_ID = n;\n"
                      ".save 消す\nDELETE FROM Mark\n WHERE ID = 1;\n.queries\n消す; [未 読];\n.save 消す SELECT 1");
    QCOMPARE(saved.Status, 1); // n has no value, and the name is taken
    QVERIFY(saved.Out.contains("消す  | 削除 | DELETE FROM Mark⏎ WHERE ID = 1") &&
            saved.Out.contains("1 件を削除しました。"));
    QVERIFY(saved.Messages.contains("エラー 3012"));
    QCOMPARE(Json(u"SELECT Count(*) FROM [未 読]"_s, {u"--param=n=4"_s})[u"rows"_s], QJsonArray{QJsonArray{2}});
    QCOMPARE(Json(u".schema 消す"_s)[u"sql"_s], u"DELETE FROM Mark\n WHERE ID = 1"_s);
    QCOMPARE(Json(u".save x SELECT * FROM Nix"_s)[u"offset"_s], 22);
    QCOMPARE(Run({m_file, u".delete '未 読'"_s, u".delete 未読"_s}).Status, 1);
    QCOMPARE(dao::Database::Open(m_file)->QueryDefs(), QStringList{u"消す"_s});
}

void tst_SqlShellProgram::SkipsRowsOrKeepsAll()
{
    const QString sql = u"INSERT INTO Mark SELECT ID + 2 AS ID, Name FROM Mark"_s;
    QCOMPARE(Json(sql)[u"error"_s], 3022);
    QCOMPARE(Rows(*dao::Database::Open(m_file), u"SELECT Count(*) FROM Mark"_s), QStringList{u"4"_s});
    QCOMPARE(Json(sql, {u"--no-fail-on-error"_s})[u"affected"_s], 2);
}

void tst_SqlShellProgram::RollsBackWhatWasNotCommitted()
{
    const Outcome outcome = Run({m_file}, ".begin\nDELETE FROM Mark WHERE ID=1;\n.commit\n.begin\nDELETE FROM Mark;");
    QCOMPARE(outcome.Status, 1);
    QVERIFY(outcome.Messages.contains("取り消しました"));
    QCOMPARE(Rows(*dao::Database::Open(m_file), u"SELECT Count(*) FROM Mark"_s), QStringList{u"3"_s});
}

void tst_SqlShellProgram::TakesAnyInput_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("status");
    QByteArray bytes;
    for (int i = 0; i < 200000; ++i)
        bytes.append(char((i * 7919 + (i >> 8) * 104729) >> 3));
    QTest::newRow("nothing") << QByteArray() << 0;
    QTest::newRow("blanks") << QByteArray("\n ;;\r\n \xE3\x80\x80;") << 0;
    QTest::newRow("half a character") << QByteArray("SELECT 1;\xE3\x81") << 1;
    QTest::newRow("another code page") << QByteArray("UPDATE Mark SET Name = '\x83\x5C'; SELECT 1") << 1;
    QTest::newRow("zeros") << QByteArray(100000, '\0') << 1;
    QTest::newRow("points") << QByteArray(100000, '.') << 1;
    QTest::newRow("deep") << QByteArray("SELECT ") + QByteArray(200000, '(') << 1;
    QTest::newRow("bytes") << bytes << 1;
}

void tst_SqlShellProgram::TakesAnyInput()
{
    QFETCH(QByteArray, input);
    const Outcome outcome = Run({m_file, u"--json"_s}, input);
    QTEST(outcome.Status, "status");
    QVERIFY(outcome.Out.isValidUtf8() && outcome.Messages.isEmpty());
    QCOMPARE(Rows(*dao::Database::Open(m_file), u"SELECT Name FROM Mark WHERE ID = 1"_s), QStringList{u"マーク&1"_s});
}

void tst_SqlShellProgram::TakesAHugeStatement()
{
    const QByteArray body(5000000, 'x');
    const Outcome outcome =
        Run({m_file, u"--json"_s}, "UPDATE Message SET Body = '" + body +
                                       ";' WHERE BBS_ID = 3 AND ID = 1;"
                                       "SELECT Body, Body FROM Message WHERE BBS_ID = 3 AND ID = 1");
    const QByteArray cell = '"' + body + ";\"";
    QVERIFY(outcome.Out == "{\"type\":48,\"affected\":1}\n{\"type\":0,\"columns\":[\"Expr1000\",\"Body\"],\"rows\":[[" +
                               cell + ',' + cell + "]]}\n");
    QCOMPARE(outcome.Status, 0);
}

void tst_SqlShellProgram::RunsBesideOthers()
{
    const auto reader = dao::Database::Open(m_file);
    const auto rows = reader->OpenRecordset(u"SELECT * FROM Message"_s, dao::RecordsetType::Dynaset);
    reader->Execute(u"UPDATE Mark SET ForeColor = 0 WHERE ID = 1"_s);
    QProcess first, second;
    for (QProcess* shell : {&first, &second}) {
        Start(*shell, {m_file, u"--json"_s});
        for (int i = 0; i < 100; ++i)
            shell->write("UPDATE Mark SET ForeColor = ForeColor + 1 WHERE ID = 1;\n");
        shell->closeWriteChannel();
    }
    QVERIFY(first.waitForFinished(60000) && second.waitForFinished(60000));
    QCOMPARE(first.exitCode() + second.exitCode(), 0);
    QCOMPARE(Rows(*reader, u"SELECT ForeColor FROM Mark WHERE ID = 1"_s), QStringList{u"200"_s});

    reader->BeginTrans(); // whoever waits for a lock too long is told so
    reader->Execute(u"DELETE FROM Mark"_s);
    QCOMPARE(Json(u"UPDATE Mark SET ID = ID"_s)[u"error"_s], 3260);
    QCOMPARE(Json(u"SELECT Count(*) FROM Mark"_s)[u"rows"_s], QJsonArray{QJsonArray{4}});
    reader->Rollback();
}

void tst_SqlShellProgram::EndsWithItsReader()
{
    QProcess shell;
    shell.setProcessChannelMode(QProcess::SeparateChannels);
    const QString script =
        u"'%1' log.mdb --json 'SELECT a.Body FROM Message AS a, Message AS b, Message AS c, Message AS d' \"$@\" | head -c 10"_s;
    shell.setWorkingDirectory(m_folder->path());
    shell.start(u"bash"_s, {u"-c"_s, script.arg(QStringLiteral(TAVORA_BINARY_DIR "/sqlshell/tavora-sql")), u"x"_s,
                            u"DELETE FROM Mark"_s});
    QVERIFY(shell.waitForFinished(60000));
    QCOMPARE(shell.readAllStandardOutput(), QByteArray("{\"type\":0,"));
    QCOMPARE(shell.readAllStandardError(), QByteArray());
    QCOMPARE(Rows(*dao::Database::Open(m_file), u"SELECT Count(*) FROM Mark"_s), QStringList{u"4"_s});
}

void tst_SqlShellProgram::EndsOnInterrupt()
{
    QProcess shell;
    Start(shell, {m_file, u"--json"_s});
    shell.write(
        "UPDATE Message SET Subject = 'x'; SELECT 'begun';"
        "DELETE FROM Message WHERE (SELECT Count(*) FROM Message AS a, Message AS b, Message AS c, Message AS d, "
        "Message AS e,"
        " Message AS f, Message AS g, Message AS h WHERE a.ID & h.ID Like Message.ID & '*9') > 1; DELETE FROM Mark;");
    QByteArray out;
    while (!out.contains("begun") && shell.waitForReadyRead(30000))
        out += shell.readAllStandardOutput();
    QTest::qWait(200); // into the statement; ended before it began, the outcome is the same
    ::kill(pid_t(shell.processId()), SIGINT);
    QVERIFY(shell.waitForFinished(10000));
    QCOMPARE(shell.exitStatus(), QProcess::CrashExit); // by the signal, as its caller expects
    QVERIFY(shell.readAllStandardOutput().startsWith("{\"error\":3059"));
    const auto database = dao::Database::Open(m_file);
    QCOMPARE(Rows(*database, u"SELECT Count(*), Max(Subject) FROM Message"_s), QStringList{u"11|x"_s});
    QCOMPARE(Rows(*database, u"SELECT Count(*) FROM Mark"_s), QStringList{u"4"_s});
}

void tst_SqlShellProgram::RepeatsItsOwnSchema()
{
    QCOMPARE(Run({m_file}, "CREATE TABLE 宛先 (番号 COUNTER CONSTRAINT 主 PRIMARY KEY, [群 れ] LONG NOT NULL);"
                           "CREATE UNIQUE INDEX 順 ON 宛先 ([群 れ] DESC, 番号) WITH IGNORE NULL;"
                           "ALTER TABLE 宛先 ADD CONSTRAINT 印 FOREIGN KEY ([群 れ]) REFERENCES Mark (ID);").Messages,
             QByteArray());
    const QByteArray schema = Run({m_file, u".schema"_s}).Out;
    QVERIFY(schema.contains("CREATE INDEX IDX1 ON Message (RootThread);") && schema.contains("[Table] TEXT(255)"));
    const Outcome made = Run({u"copy.mdb"_s, u"--create"_s}, schema);
    QCOMPARE(made.Messages, QByteArray());
    QCOMPARE(Run({u"copy.mdb"_s, u".schema"_s}).Out, schema);
}

QTEST_GUILESS_MAIN(tst_SqlShellProgram)
#include "tst_SqlShellProgram.moc"
