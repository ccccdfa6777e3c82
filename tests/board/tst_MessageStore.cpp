// tests/board/tst_MessageStore.cpp
// Storing messages: the statement, its outcomes, and blocks as transactions.

#include "board/CBlockStore.h"
#include "board/CMessageWriter.h"
#include "board/CRunState.h"
#include "platform/text/DateTime.h"
#include "tests/board/CBoardFixture.h"
#include "tests/board/Records.h"
#include "tests/support/Table.h"

#include <QTest>

using namespace Qt::StringLiterals;
using mdlRecords::Block;
using mdlRecords::Plain;

namespace
{
CMessage Message()
{
    return {.BBS_ID = 3, .ID = 12, .Subject = u"題"_s, .PostName = u"名"_s, .PostDate = text::TextToDate(u"2002/01/15 12:34").value(),
            .Body = u"本文"_s};
}

/// A store that counts and writes down as CBBS does, without a network.
struct CStoreFixture : CBoardFixture
{
    CRunState State;
    CBlockStore Store{App, State};

    CStoreFixture()
    {
        Store.SetDatabase(App.LogDB());
        QObject::connect(&Store, &CBlockStore::ChangeState, &Board, &CBBS::ChangeState);
        QObject::connect(&Store, &CBlockStore::AddMessage, &Board, &CBBS::AddMessage);
        QObject::connect(&Store, &CBlockStore::BatchWithdrawn, &Board, &CBBS::BatchWithdrawn);
        QObject::connect(&Store, &CBlockStore::LogError, &Board, &CBBS::LogError);
    }

    bool Take(const QString& Text) { return Store.Store(3, Text, false); }
    QString Numbers() { return Rows(u"SELECT ID FROM Message ORDER BY ID"_s); }
};
} // namespace

class tst_MessageStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void Statement();
    void StatementOfOddTexts_data();
    void StatementOfOddTexts();
    void TwiceIsOnce();
    void WhatGoesInComesOut_data();
    void WhatGoesInComesOut();
    void ManyBarsStayReadable();
    void RefusalsOfOneMessage();

    void BlockIsCountedAndTold();
    void StoredMessagesMakeTheResultFalse();
    void BrokenRecordsAreHandedOn();
    void CancelLinksWhatIsThere();
    void FullDiskWithdrawsTheBatch();
    void LockedFileEndsTheRunAtOnce();
    void TheUsersChangeSurvivesALaterFailure();
    void ALongTextIsCommittedInBetween();
};

void tst_MessageStore::Statement()
{
    CMessage message = Message();
    message.HomePage = u"http://a/"_s;
    message.Mail = u"a@b"_s;
    message.InReplyTo = 7;
    message.Read = true;
    message.Mark = 2;
    QString statement;
    CMessageWriter::MakeStatement(statement, message);
    QCOMPARE(statement,
             u"INSERT INTO Message(BBS_ID, ID, Read, Subject, HomePage, Mail, PostName, PostDate, InReplyTo, Body, RootThread, Mark)"
             " VALUES(3,12,True,'題','http://a/','a@b','名',#2002/01/15 12:34#,7,'本文',0,2)"_s);
}

void tst_MessageStore::StatementOfOddTexts_data()
{
    mdlTable::AddRows<QString, QString>("message-store.json", "StatementOfOddTexts", {"text", "wanted"});
}

void tst_MessageStore::StatementOfOddTexts()
{
    QFETCH(QString, text);
    QFETCH(QString, wanted);
    CMessage message = Message();
    message.Subject = message.Body = text;
    QString statement;
    CMessageWriter::MakeStatement(statement, message);
    QCOMPARE(statement.section(u"VALUES("_s, 1),
             u"3,12,False,"_s + wanted + u",'','','名',#2002/01/15 12:34#,0,"_s + wanted + u",0,0)"_s);
}

void tst_MessageStore::TwiceIsOnce()
{
    CBoardFixture fixture;
    CMessageWriter writer;
    CMessage message = Message();
    QCOMPARE(writer.Save(*fixture.App.LogDB(), message), SaveOutcome::Stored);
    message.Subject = u"別"_s;
    QCOMPARE(writer.Save(*fixture.App.LogDB(), message), SaveOutcome::AlreadyStored);
    message.BBS_ID = 4;
    QCOMPARE(writer.Save(*fixture.App.LogDB(), message), SaveOutcome::Stored);
    QCOMPARE(fixture.Rows(u"SELECT BBS_ID, ID, Subject FROM Message ORDER BY BBS_ID"_s), u"3,12,題 4,12,別"_s);
}

void tst_MessageStore::WhatGoesInComesOut_data()
{
    mdlTable::AddRows<QString>("message-store.json", "WhatGoesInComesOut", {"text"});
    QTest::newRow("255 characters") << QString(255, u'あ');
}

void tst_MessageStore::WhatGoesInComesOut()
{
    QFETCH(QString, text);
    CBoardFixture fixture;
    CMessage message = Message();
    message.Subject = message.HomePage = message.Mail = message.PostName = message.Body = text;
    QCOMPARE(CMessageWriter().Save(*fixture.App.LogDB(), message), SaveOutcome::Stored);
    QCOMPARE(fixture.Board.ExecSQL(u"SELECT * FROM Message"_s), qint16(0));
    QCOMPARE(fixture.Board.Messages(0), std::optional(message));
}

void tst_MessageStore::ManyBarsStayReadable()
{
    CBoardFixture fixture;
    for (const int bars : {500, 2'000'000}) {
        CMessage message = Message();
        message.ID = bars;
        message.Body = QString(bars, u'|');
        QCOMPARE(CMessageWriter().Save(*fixture.App.LogDB(), message), SaveOutcome::Stored);
    }
    QCOMPARE(fixture.Rows(u"SELECT Len(Body) FROM Message ORDER BY ID"_s), u"500 2000000"_s);
}

void tst_MessageStore::RefusalsOfOneMessage()
{
    CBoardFixture fixture;
    for (QString CMessage::*text : {&CMessage::Subject, &CMessage::HomePage, &CMessage::Mail, &CMessage::PostName}) {
        CMessage message = Message();
        message.*text = QString(256, u'あ');
        CMessageWriter writer;
        QCOMPARE(writer.Save(*fixture.App.LogDB(), message), SaveOutcome::Failed);
        QCOMPARE(writer.LastError().Number, 3163);
        QVERIFY(!CMessageWriter::ConcernsAll(writer.LastError()));
    }
    QCOMPARE(fixture.Rows(u"SELECT ID FROM Message"_s), QString());
}

void tst_MessageStore::BlockIsCountedAndTold()
{
    CStoreFixture store;
    const CRecordText second{.ID = u"9"_s, .PostDate = u"2002/01/15（火） 12:34:56"_s, .InReplyTo = u"8"_s, .Body = QString()};
    QVERIFY(store.Take(Block({CRecordText{.ID = u"8"_s}.Text(), second.Text()}) + u"</html>"_s));
    QCOMPARE(store.Rows(u"SELECT ID, Read, Subject, PostDate, InReplyTo, Body, RootThread, Mark FROM Message ORDER BY ID"_s)
                 .replace(u"12:34:00"_s, u"T"_s),
             u"8,False,題名,2002/01/15 T,0,本文,8,0 9,False,題名,2002/01/15 T,8,Null,8,0"_s);
    QCOMPARE(store.States, QStringList({u"0件目を解析中..."_s, u"1件目を解析中..."_s, u"スレッド情報を更新中..."_s,
                                        u"スレッド情報の更新を終了しました。"_s}));
    QCOMPARE(store.Added.size(), 2u);
    QCOMPARE(store.Added[1].Key(), u"#003000009"_s);
    QCOMPARE(store.State.SaveCount, 2);
    QCOMPARE(store.State.AnalyseCount, 2);
    QCOMPARE(store.State.HighestNumber, 9);
    QVERIFY(!store.App.LogDB()->InTransaction());
}

void tst_MessageStore::StoredMessagesMakeTheResultFalse()
{
    CStoreFixture store;
    QVERIFY(store.Take(Plain(1, 2)));
    QVERIFY(!store.Take(Plain(2, 4)));
    QCOMPARE(store.Numbers(), u"1 2 3 4"_s);
    QCOMPARE(store.State.SaveCount, 4);
    QCOMPARE(store.State.AnalyseCount, 5);
    QVERIFY(!store.State.AnalyseError);
    QCOMPARE(store.State.HighestNumber, 4);
}

void tst_MessageStore::BrokenRecordsAreHandedOn()
{
    CStoreFixture store;
    const QString broken = CRecordText{.ID = u"x"_s}.Text();
    const QString tooLong = CRecordText{.ID = u"5"_s, .Subject = QString(300, u'長')}.Text();
    QVERIFY(store.Take(Block({CRecordText{.ID = u"1"_s}.Text(), broken, tooLong, CRecordText{.ID = u"3"_s}.Text()})));
    QCOMPARE(store.Numbers(), u"1 3"_s);
    QCOMPARE(store.Logged, QStringList({u"1件目のログが壊れていました。"_s, u"2件目のログをデータベースに登録できませんでした。"_s}));
    QCOMPARE(store.LoggedText, QStringList({broken, tooLong}));
    QVERIFY(store.State.AnalyseError);
    QCOMPARE(store.State.AnalyseCount, 3);
    QCOMPARE(store.State.SaveCount, 2);
    QCOMPARE(store.State.RecordCount, 4);
    QVERIFY(!store.State.IsError);

    QVERIFY(store.Take(Plain(10, 10)));
    QVERIFY(!store.State.AnalyseError);
}

void tst_MessageStore::CancelLinksWhatIsThere()
{
    CStoreFixture store;
    connect(&store.Store, &CBlockStore::AddMessage, this, [&](const CMessage& Msg) { store.State.IsCancel = Msg.ID == 2; });
    QVERIFY(!store.Take(Plain(1, 5)));
    QCOMPARE(store.Threads(), u"1:1 2:2"_s);
    QCOMPARE(store.States.last(), u"スレッド情報の更新を終了しました。"_s);
}

void tst_MessageStore::FullDiskWithdrawsTheBatch()
{
    CStoreFixture store;
    QVERIFY(store.Take(Plain(1, 3)));
    store.App.LogDB()->Checkpoint();
    store.App.LogDB()->SetMaxFileSize(QFileInfo(store.App.DatabaseFileName()).size());
    const QString big(100'000, u'大');
    store.States.clear();
    QVERIFY(!store.Take(Block({CRecordText{.ID = u"4"_s}.Text(), CRecordText{.ID = u"5"_s, .Body = big}.Text(),
                               CRecordText{.ID = u"6"_s}.Text()})));
    QVERIFY(store.State.IsError);
    QCOMPARE(store.Errors, QStringList{u"Error(3026):ディスクの空き領域が足りません。"_s});
    QVERIFY(store.Logged.isEmpty()); // nothing is wrong with the record
    QVERIFY(store.States.filter(u"スレッド情報"_s).isEmpty()); // the error is what the user goes on seeing
    QCOMPARE(store.Withdrawn.size(), 1u);
    QCOMPARE(store.Withdrawn[0].ID, 4);
    QCOMPARE(store.State.SaveCount, 3);
    QCOMPARE(store.Numbers(), u"1 2 3"_s);
    QVERIFY(!store.App.LogDB()->InTransaction());

    store.App.LogDB()->SetMaxFileSize(0);
    store.State.IsError = false;
    QVERIFY(store.Take(Plain(4, 6)));
    QCOMPARE(store.Threads(), u"1:1 2:2 3:3 4:4 5:5 6:6"_s);
}

void tst_MessageStore::LockedFileEndsTheRunAtOnce()
{
    CStoreFixture store;
    store.App.LogDB()->SetBusyTimeout(0);
    const auto other = dao::Database::Open(store.App.DatabaseFileName());
    other->BeginTrans();
    other->Execute(u"INSERT INTO Message(BBS_ID, ID) VALUES(4, 1)"_s);
    QVERIFY(!store.Take(Plain(1, 3)));
    QVERIFY(store.State.IsError);
    QCOMPARE(store.Errors.size(), 1);
    QVERIFY(store.Errors[0].startsWith(u"Error(3260):"_s));
    QVERIFY(store.Logged.isEmpty());
    other->Rollback();
    QCOMPARE(store.Numbers(), QString());
}

/// The user marks message 1 as read while a page comes in that the disk cannot take any more.
void tst_MessageStore::TheUsersChangeSurvivesALaterFailure()
{
    CStoreFixture store;
    QVERIFY(store.Take(Plain(1, 1)));
    connect(&store.Store, &CBlockStore::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID != 3)
            return;
        store.Store.CommitPending();
        QVERIFY(!store.App.LogDB()->InTransaction());
        store.Run(u"UPDATE Message SET Read = True WHERE ID = 1"_s);
        store.App.LogDB()->Checkpoint();
        store.App.LogDB()->SetMaxFileSize(QFileInfo(store.App.DatabaseFileName()).size());
    });
    QVERIFY(!store.Take(Plain(2, 3) + Block({CRecordText{.ID = u"4"_s}.Text(),
                                             CRecordText{.ID = u"5"_s, .Body = QString(100'000, u'大')}.Text()})));
    QVERIFY(store.State.IsError);
    QCOMPARE(store.Numbers(), u"1 2 3"_s);
    QCOMPARE(store.Rows(u"SELECT ID FROM Message WHERE Read = True"_s), u"1"_s);
    QCOMPARE(store.Withdrawn.size(), 1u);
    QCOMPARE(store.State.SaveCount, 3);

    store.App.LogDB()->SetMaxFileSize(0);
    store.State.IsError = false;
    QVERIFY(store.Take(Plain(6, 6)));
    QCOMPARE(store.Threads(), u"1:1 2:2 3:3 6:6"_s);
}

void tst_MessageStore::ALongTextIsCommittedInBetween()
{
    CStoreFixture store;
    const auto other = dao::Database::Open(store.App.DatabaseFileName());
    int seen = -1;
    connect(&store.Store, &CBlockStore::AddMessage, this, [&](const CMessage& Msg) {
        if (Msg.ID == CBlockStore::MaxBatchRecords + 1)
            seen = other->OpenRecordset(u"SELECT Count(*) FROM Message WHERE RootThread = ID"_s)->Long(0);
    });
    QVERIFY(store.Take(Plain(1, CBlockStore::MaxBatchRecords + 10)));
    QCOMPARE(seen, CBlockStore::MaxBatchRecords);
    QCOMPARE(store.State.SaveCount, CBlockStore::MaxBatchRecords + 10);
}

QTEST_GUILESS_MAIN(tst_MessageStore)
#include "tst_MessageStore.moc"
