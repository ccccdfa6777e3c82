// tests/platform/tst_DesktopSingleInstance.cpp
// A second start finds the first, and a crash leaves nothing in the way.

#include "platform/desktop/CSingleInstance.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace
{
/// Starts the program a second time: as another process would, it does not share the first one's event loop.
bool StartAgain(const QString& ProgramPath)
{
    std::atomic<int> result = -1;
    const std::unique_ptr<QThread> second(QThread::create([&] {
        CSingleInstance instance(ProgramPath);
        result = instance.ActivatePrevInstance() ? 1 : 0;
    }));
    second->start();
    while (!second->isFinished())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    return result == 1;
}
} // namespace

class tst_DesktopSingleInstance : public QObject
{
    Q_OBJECT

private:
    QString Program(const QString& Name) const
    {
        QFile file(m_folder->filePath(Name));
        return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
    }
    QStringList Sockets() const { return QDir(m_folder->path()).entryList({u"tavora-*"_s}, QDir::System); }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", m_folder->path().toLocal8Bit());
    }

    void SecondStartWakesTheFirst();
    void EndOfTheFirstFreesThePlace();
    void OtherProgramsDoNotMatter();
    void DeadSocketDoesNotBlock();
    void ForeignWordsDoNotWake_data();
    void ForeignWordsDoNotWake();
};

void tst_DesktopSingleInstance::SecondStartWakesTheFirst()
{
    const QString program = Program(u"tavora"_s);
    CSingleInstance first(program);
    QSignalSpy woken(&first, &CSingleInstance::ActivateRequested);
    QVERIFY(!first.ActivatePrevInstance());
    QVERIFY(StartAgain(program));
    QCOMPARE(woken.size(), 1);
    QVERIFY(StartAgain(program));
    QCOMPARE(woken.size(), 2);

    // The same file by way of a link is the same program.
    const QString link = m_folder->filePath(u"link"_s);
    QVERIFY(QFile::link(program, link));
    QVERIFY(StartAgain(link));
    QCOMPARE(woken.size(), 3);
}

void tst_DesktopSingleInstance::EndOfTheFirstFreesThePlace()
{
    const QString program = Program(u"tavora"_s);
    {
        CSingleInstance first(program);
        QVERIFY(!first.ActivatePrevInstance());
    }
    CSingleInstance next(program);
    QVERIFY(!next.ActivatePrevInstance());
    QVERIFY(StartAgain(program));
}

void tst_DesktopSingleInstance::OtherProgramsDoNotMatter()
{
    CSingleInstance first(Program(u"tavora"_s));
    QSignalSpy woken(&first, &CSingleInstance::ActivateRequested);
    QVERIFY(!first.ActivatePrevInstance());
    QVERIFY(!StartAgain(Program(u"tavora2"_s)));
    QVERIFY(!StartAgain(m_folder->filePath(u"not there"_s)));
    QCOMPARE(woken.size(), 0);
}

void tst_DesktopSingleInstance::DeadSocketDoesNotBlock()
{
#ifdef Q_OS_UNIX
    const QString program = Program(u"tavora"_s);
    {
        CSingleInstance first(program);
        QVERIFY(!first.ActivatePrevInstance());
        QCOMPARE(Sockets().size(), 1);
    }
    // Ends as kill -9 ends it: the socket's file stays, and nobody listens.
    CSingleInstance probe(program);
    QVERIFY(!probe.ActivatePrevInstance());
    const QByteArray path = QFile::encodeName(m_folder->filePath(Sockets().value(0)));
    QVERIFY(QFile::remove(QFile::decodeName(path)));
    const int dead = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    QVERIFY(path.size() < qsizetype(sizeof(address.sun_path)));
    std::copy(path.begin(), path.end(), address.sun_path);
    QCOMPARE(::bind(dead, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ::close(dead);

    CSingleInstance second(program);
    QVERIFY(!second.ActivatePrevInstance());
    QSignalSpy woken(&second, &CSingleInstance::ActivateRequested);
    QVERIFY(StartAgain(program));
    QCOMPARE(woken.size(), 1);
#endif
}

void tst_DesktopSingleInstance::ForeignWordsDoNotWake_data()
{
    QTest::addColumn<QByteArray>("words");
    QTest::newRow("another word") << QByteArray("quit\n");
    QTest::newRow("more behind it") << QByteArray("activate now\n");
    QTest::newRow("no end") << QByteArray(100'000, 'x');
}

void tst_DesktopSingleInstance::ForeignWordsDoNotWake()
{
    QFETCH(QByteArray, words);
    const QString program = Program(u"tavora"_s);
    CSingleInstance first(program);
    QSignalSpy woken(&first, &CSingleInstance::ActivateRequested);
    QVERIFY(!first.ActivatePrevInstance());
    QLocalSocket socket;
    socket.connectToServer(m_folder->filePath(Sockets().value(0)));
    QVERIFY(socket.waitForConnected());
    socket.write(words);
    QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
    QCOMPARE(woken.size(), 0);
    QVERIFY(StartAgain(program));
    QCOMPARE(woken.size(), 1);
}

QTEST_GUILESS_MAIN(tst_DesktopSingleInstance)
#include "tst_DesktopSingleInstance.moc"
