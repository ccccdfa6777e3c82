// tests/board/tst_ExecSQL.cpp
// Queries of the user and the viewer: kinds, counts, parameters, and rows as messages.

#include "tests/board/CBoardFixture.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// Messages 1 to Count on board 3, the even ones read.
void Fill(CBoardFixture& Fixture, int Count)
{
    for (int id = 1; id <= Count; ++id)
        Fixture.Run(u"INSERT INTO Message(BBS_ID, ID, Read, Subject, PostDate, InReplyTo, RootThread, Mark) "
                    "VALUES(3, %1, %2, 's%1', #2002/01/15 09:05#, 0, %1, 0)"_s.arg(QString::number(id), id % 2 ? u"False"_s : u"True"_s));
}

int ErrorOf(CBBS& Board, const QString& Sql)
{
    try {
        Board.ExecSQL(Sql);
        return 0;
    } catch (const dao::Error& error) {
        return error.Number;
    }
}
} // namespace

class tst_ExecSQL : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Kinds_data();
    void Kinds();
    void RowsAreMessages();
    void MessagesBeyondTheEnds();
    void ParametersAreAskedInOrder();
    void CancellingAParameterStopsTheQuery();
    void AnErrorLeavesTheLastResult();
    void ASavedTemporaryQueryIsNoHindrance();
    void ClosingDropsTheResult();
    void WithoutADatabase();
};

void tst_ExecSQL::Kinds_data()
{
    mdlTable::AddRows<QString, int, int, int>("board-queries.json", "Kinds", {"sql", "kind", "count", "type"});
}

void tst_ExecSQL::Kinds()
{
    QFETCH(QString, sql);
    QFETCH(int, type);
    CBoardFixture fixture;
    Fill(fixture, 5);
    QTEST(int(fixture.Board.ExecSQL(sql)), "kind");
    QTEST(fixture.Board.Count(), "count");
    if (type >= 0)
        QCOMPARE(fixture.Board.SQLType(), type);
    QVERIFY(!fixture.App.LogDB()->FindQueryDef(u"__TEMP__"_s));
}

void tst_ExecSQL::RowsAreMessages()
{
    CBoardFixture fixture;
    Fill(fixture, 3);
    fixture.Run(u"UPDATE Message SET HomePage = 'h', Mail = 'm', PostName = 'n', Body = 'b', InReplyTo = 1, RootThread = 1, "
                "Mark = 4 WHERE ID = 2"_s);
    fixture.Board.ExecSQL(u"SELECT * FROM Message ORDER BY ID DESC"_s);
    const CMessage wanted{.BBS_ID = 3, .ID = 2, .Subject = u"s2"_s, .HomePage = u"h"_s, .Mail = u"m"_s, .PostName = u"n"_s,
                          .PostDate = 37271 + (9 * 60 + 5) / 1440.0, .InReplyTo = 1, .Body = u"b"_s, .RootThread = 1,
                          .Mark = 4, .Read = true};
    QCOMPARE(fixture.Board.Messages(1), std::optional(wanted));
    QCOMPARE(fixture.Board.GetMessage()->ID, 2);
    QCOMPARE(fixture.Board.Messages(0)->ID, 3);
    QCOMPARE(fixture.Board.Messages(2)->Body, QString()); // Null in the table
}

void tst_ExecSQL::MessagesBeyondTheEnds()
{
    CBoardFixture fixture;
    Fill(fixture, 2);
    QVERIFY(!fixture.Board.Messages(0));
    QVERIFY(!fixture.Board.GetMessage());
    fixture.Board.ExecSQL(u"SELECT * FROM Message"_s);
    QVERIFY(!fixture.Board.Messages(2));
    QVERIFY(!fixture.Board.Messages(-1));
    fixture.Board.ExecSQL(u"SELECT * FROM Message WHERE ID = 99"_s);
    QVERIFY(!fixture.Board.Messages(0));
    QVERIFY(!fixture.Board.GetMessage());
}

void tst_ExecSQL::ParametersAreAskedInOrder()
{
    CBoardFixture fixture;
    Fill(fixture, 5);
    fixture.Desk.ExpectInput(u"最初の番号"_s, u"2"_s);
    fixture.Desk.ExpectInput(u"最後の番号"_s, u"4"_s);
    fixture.Board.ExecSQL(u"SELECT * FROM Message WHERE ID >= [最初の番号] AND ID <= [最後の番号] ORDER BY ID"_s);
    QCOMPARE(fixture.Board.Count(), 3);
    QCOMPARE(fixture.Board.Messages(0)->ID, 2);
    QVERIFY(fixture.Desk.Verify());
    QCOMPARE(fixture.Desk.Boxes.at(0).Caption, u"Tavora Ver.0.50"_s);
}

void tst_ExecSQL::CancellingAParameterStopsTheQuery()
{
    CBoardFixture fixture;
    Fill(fixture, 5);
    fixture.Desk.Expect(u"番号"_s, Desktop::Answer::Cancel);
    QCOMPARE(ErrorOf(fixture.Board, u"DELETE FROM Message WHERE ID > [番号]"_s), 3059);
    QCOMPARE(fixture.Rows(u"SELECT Count(*) FROM Message"_s), u"5"_s);
    QVERIFY(!fixture.App.LogDB()->FindQueryDef(u"__TEMP__"_s));
}

void tst_ExecSQL::AnErrorLeavesTheLastResult()
{
    CBoardFixture fixture;
    Fill(fixture, 5);
    fixture.Board.ExecSQL(u"SELECT * FROM Message ORDER BY ID"_s);
    QCOMPARE(ErrorOf(fixture.Board, u"SELECT * FROM NoSuchTable"_s), 3078);
    QCOMPARE(ErrorOf(fixture.Board, u"SELEKT"_s), 3129);
    QCOMPARE(ErrorOf(fixture.Board, u"INSERT INTO Mark VALUES(1, 'x', 0, 0)"_s), 3022);
    QCOMPARE(fixture.Board.Messages(4)->ID, 5);
    QVERIFY(!fixture.App.LogDB()->FindQueryDef(u"__TEMP__"_s));
}

void tst_ExecSQL::ASavedTemporaryQueryIsNoHindrance()
{
    CBoardFixture fixture;
    fixture.App.LogDB()->CreateQueryDef(u"__TEMP__"_s, u"SELECT 1"_s);
    QCOMPARE(fixture.Board.ExecSQL(u"SELECT * FROM BBS"_s), qint16(0));
    QCOMPARE(fixture.Board.Count(), 16);
}

void tst_ExecSQL::ClosingDropsTheResult()
{
    CBoardFixture fixture;
    Fill(fixture, 1);
    fixture.Board.ExecSQL(u"SELECT * FROM Message"_s);
    QVERIFY(fixture.Board.Recordset());
    fixture.Board.CloseLogMessages();
    QVERIFY(!fixture.Board.Recordset());
    QVERIFY(!fixture.Board.Messages(0));
    fixture.Board.CloseLogMessages();
}

void tst_ExecSQL::WithoutADatabase()
{
    CBoardFixture fixture;
    fixture.Board.Initialize(nullptr);
    QCOMPARE(ErrorOf(fixture.Board, u"SELECT 1"_s), 3420);
}

QTEST_GUILESS_MAIN(tst_ExecSQL)
#include "tst_ExecSQL.moc"
