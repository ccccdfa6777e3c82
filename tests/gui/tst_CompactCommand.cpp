// tests/gui/tst_CompactCommand.cpp
// The command that writes the database anew, in the real main window.

#include "mainwin/CMessagePane.h"
#include "tests/gui/CWindowFixture.h"
#include "tests/support/CRawDatabase.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

const QString Question = u"データベースファイルを最適化します。\n"
                         "データベースが壊れる可能性がありますので、十分注意した上で実行してください。"_s;

}

class tst_CompactCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s)); }
    void KeepsTheView();
    void FailureEndsTheProgram();
    void DamageIsRecovered();
};

void tst_CompactCommand::KeepsTheView()
{
    CWindowFixture f;
    f.Add(1, 30);
    QVERIFY(f.Start());
    f.List().SetSelection({{7, 9}}, 8);
    f.Viewer().ShowMessage(CViewer::BoardList, 8, true);
    const QString text = f.Find<CMessagePane>(u"rtbView"_s)->toPlainText();
    f.Desk.Expect(Question, Desktop::Answer::Cancel);
    f.Action(u"mnuToolCompDB"_s)->trigger();
    QVERIFY(f.Desk.Verify());
    f.Desk.Expect(Question);
    f.Desk.Expect(u"最適化が完了しました。"_s);
    f.Action(u"mnuToolCompDB"_s)->trigger();
    QVERIFY(f.Desk.Verify());
    QCOMPARE(f.Desk.Boxes.back().Text, u"最適化が完了しました。"_s);
    QCOMPARE(f.Desk.Boxes.back().Icon, Desktop::Icon::None);
    QCOMPARE(f.List().Focus(), 8);
    QCOMPARE(f.List().SelectedCount(), 3);
    QCOMPARE(f.Find<CMessagePane>(u"rtbView"_s)->toPlainText(), text);
    f.Action(u"mnuMsgRead"_s)->trigger(); // and the new file is the one that is written to
    QCOMPARE(f.Rows(u"SELECT ID FROM Message WHERE Read ORDER BY ID"_s), u"21 22 23"_s);
    QVERIFY(f.Action(u"mnuToolCompDB"_s)->isEnabled());
}

void tst_CompactCommand::FailureEndsTheProgram()
{
    CWindowFixture f;
    QVERIFY(f.Start());
    CRawDatabase other(f.Folder.filePath(u"log.mdb"_s));
    QCOMPARE(other.Run(u"PRAGMA journal_mode=WAL; BEGIN; SELECT * FROM Mark"_s), QString());
    f.Desk.Expect(Question);
    f.Desk.Expect(u"元のまま残してあります。\n\n他でロックされている"_s);
    f.Desk.Expect(u"最適化に失敗しました。\nTavoraを終了します。"_s);
    f.Action(u"mnuToolCompDB"_s)->trigger();
    QTRY_COMPARE(f.ClosedCount, 1);
    QVERIFY(f.Desk.Verify());
    QCOMPARE(other.Rows(u"SELECT count(*) FROM BBS"_s), QStringList({u"16"_s}));
}

/// An index that is sound but no longer fits its table shows nowhere but in a compaction.
void tst_CompactCommand::DamageIsRecovered()
{
    CWindowFixture f;
    f.Add(1, 30);
    const QString file = f.Folder.filePath(u"log.mdb"_s);
    const QStringList page =
        CRawDatabase(file).Rows(u"SELECT rootpage FROM sqlite_master WHERE name = 'Message.IDX1'"_s);
    QFile bytes(file);
    QVERIFY(bytes.open(QIODevice::ReadWrite) && bytes.seek((page[0].toInt() - 1) * 4096LL));
    const QByteArray emptyIndex("\x0a\0\0\0\0\x10\0\0", 8);
    QCOMPARE(bytes.write(emptyIndex.leftJustified(4096, '\0')), 4096);
    bytes.close();
    QVERIFY(f.Start());
    f.Desk.Expect(Question);
    f.Desk.Expect(u"壊れている可能性があります"_s);
    f.Desk.Expect(u"log-recovered.mdb に取り出しますか"_s, Desktop::Answer::Yes);
    f.Desk.Expect(u"メッセージ: 30件\n"_s, Desktop::Answer::Yes);
    f.Desk.Expect(u"Tavoraを終了します。"_s);
    f.Action(u"mnuToolCompDB"_s)->trigger();
    QTRY_COMPARE(f.ClosedCount, 1);
    QVERIFY(f.Desk.Verify());
    QCOMPARE(CRawDatabase(file).Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
    QVERIFY(QFile::exists(f.Folder.filePath(u"log.bak"_s)));
    QVERIFY(f.Start()); // and the next start finds them all
    QCOMPARE(f.List().Count(), 30);
}

QTEST_MAIN(tst_CompactCommand)
#include "tst_CompactCommand.moc"
