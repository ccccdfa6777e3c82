// tests/store/tst_StoreKilled.cpp
// The power goes while the database is converted or compacted: it is the old one or the new one, and always whole.

#include "store/Compaction.h"
#include "tests/store/CStoreFixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

constexpr int Rounds = 25;
constexpr int Seed = 20020115;

/// The process that is killed.
int RunJob(const QString& Job, const QString& Folder)
{
    CScriptedDesktop desktop;
    desktop.Expect(u"コンバートします"_s);
    desktop.Expect(u"完了しました"_s);
    Application app(desktop, Folder, u"Tavora"_s);
    auto db = Job == u"--convert" ? mdlStore::OpenLogDatabase(app.DatabaseFileName(), app)
                                  : dao::Database::Open(app.DatabaseFileName());
    const bool isDone = db && (Job == u"--convert" || !mdlStore::CompactLogDatabase(db, {}));
    return isDone ? 0 : 1;
}

} // namespace

class tst_StoreKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void OldOrNew_data();
    void OldOrNew();
};

void tst_StoreKilled::OldOrNew_data()
{
    QTest::addColumn<QString>("job");
    QTest::newRow("conversion") << u"--convert"_s;
    QTest::newRow("compaction") << u"--compact"_s;
}

void tst_StoreKilled::OldOrNew()
{
    QFETCH(QString, job);
    CStoreFixture fixture;
    fixture.Desk.Expect(u"存在しません"_s);
    fixture.Open()->Close();
    const bool isConversion = job == u"--convert";
    QCOMPARE(fixture.AddMessages(4000), QString());
    if (isConversion)
        QCOMPARE(fixture.Run(u"UPDATE Version SET Version = 'Ver.0.12'"_s), QString());
    const QByteArray old = fixture.Contents();
    const QString sums = u"SELECT count(*), sum(ID), sum(length(Body)), sum(Mark), sum(Read) FROM Message"_s;
    const QStringList wanted = fixture.Rows(sums);
    const QStringList arguments = {job, fixture.Folder.path()};

    QElapsedTimer clock;
    clock.start();
    QCOMPARE(QProcess::execute(QCoreApplication::applicationFilePath(), arguments), 0);
    const qint64 wholeMs = clock.elapsed();
    QVERIFY(fixture.Contents() != old);

    qInfo("seed %d", Seed);
    std::mt19937 random(Seed);
    int killed = 0;
    for (int round = 0; round < Rounds; ++round) {
        for (const QString& name : fixture.Files())
            QFile::remove(fixture.Folder.filePath(name));
        fixture.Write(old);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(), arguments);
        QVERIFY(child.waitForStarted());
        child.waitForFinished(int((100 * round + int(random() % 100)) * wholeMs / (100 * Rounds)));
        child.kill();
        child.waitForFinished();
        killed += child.exitStatus() == QProcess::CrashExit ? 1 : 0;

        const QString version = fixture.Rows(u"SELECT max(Version) FROM Version"_s)[0];
        QVERIFY2(version == u"Ver.0.42" || (isConversion && version == u"Ver.0.12"), qPrintable(version));
        QCOMPARE(fixture.Rows(sums), wanted);
        QCOMPARE(fixture.Rows(u"PRAGMA integrity_check"_s), QStringList({u"ok"_s}));
        if (version == u"Ver.0.12")
            fixture.Desk.Expect(u"コンバートします"_s, Desktop::Answer::Cancel);
        QCOMPARE(bool(fixture.Open()), version == u"Ver.0.42");
        QVERIFY(fixture.Desk.Verify());
        if (version == u"Ver.0.42") // what the killed one left is gone
            QVERIFY(fixture.Files().filter(u"TVR"_s).isEmpty());
    }
    QVERIFY(killed > Rounds / 2);
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3 && (arguments[1] == u"--convert" || arguments[1] == u"--compact"))
        return RunJob(arguments[1], arguments[2]);
    tst_StoreKilled test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_StoreKilled.moc"
