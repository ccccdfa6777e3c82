// tests/boardd/tst_PostStore.cpp
// The file of posts: what survives a crash, a damaged byte, a full disk, and a second server.

#include "boardd/CPostStore.h"
#include "tests/support/CFileSizeLimit.h"

#include "boardd/Record.h"
#include "tests/support/Files.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

CPostEntry Entry(qint32 Number, const QString& Body)
{
    CPostEntry entry;
    entry.Board = u"keyaki"_s;
    entry.Message.Number = Number;
    entry.Message.ReplyTo = Number - 1;
    entry.Message.Posted = mdlRecord::ReadWallClock(u"2002/01/15 12:34"_s);
    entry.Message.Title = u"ソフトの表示"_s;
    entry.Message.Author = u"ﾐｶﾝ①"_s;
    entry.Message.Body = Body;
    entry.PasswordProof = QByteArray("\x00\x01\xff", 3);
    return entry;
}

} // namespace

class tst_PostStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void KeepsEntriesInOrder();
    void TornEnd_data();
    void TornEnd();
    void DamageInTheMiddle();
    void EndOfRubbish();
    void FullDisk();
    void SecondServer();
    void UnusableFolder();

private:
    QString FileName() const { return m_folder->filePath(u"posts.dat"_s); }
    QByteArray Bytes(const QString& Name) const { return mdlFiles::Read(m_folder->filePath(Name)); }
    void Overwrite(const QByteArray& Content) const { mdlFiles::Write(FileName(), Content); }
    /// A file with three posts of these bodies; returns the file's length after each.
    QList<qint64> WriteThree() const;
    static QStringList Bodies(const CPostStore& Store);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_PostStore::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

QList<qint64> tst_PostStore::WriteThree() const
{
    QList<qint64> lengths;
    CPostStore store;
    if (!store.Open(m_folder->path()))
        qFatal("the store cannot be opened");
    for (int number = 1; number <= 3; ++number) {
        if (!store.Append(Entry(number, u"本文%1"_s.arg(number))))
            qFatal("the store takes no entry");
        lengths += QFile(FileName()).size();
    }
    return lengths;
}

QStringList tst_PostStore::Bodies(const CPostStore& Store)
{
    QStringList bodies;
    for (const CPostEntry& entry : Store.Entries())
        bodies += entry.Message.Body;
    return bodies;
}

void tst_PostStore::KeepsEntriesInOrder()
{
    CPostEntry deletion = Entry(7, QString());
    deletion.What = CPostEntry::Kind::Deletion;
    const std::vector<CPostEntry> wanted = {Entry(7, u"一行目\n\n三行目～"_s), deletion, Entry(8, u"八"_s)};
    {
        CPostStore store;
        QVERIFY(store.Open(m_folder->path()));
        QVERIFY(store.Append(wanted[0]));
        QVERIFY(store.Append(wanted[1]));
    }
    {
        CPostStore again;
        QVERIFY(again.Open(m_folder->path()));
        QVERIFY(again.Append(wanted[2]));
    }
    CPostStore last;
    QVERIFY(last.Open(m_folder->path()));
    QVERIFY(last.Entries() == wanted);
    QVERIFY(last.Warnings().isEmpty());
    QCOMPARE(QFile::permissions(FileName()) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

void tst_PostStore::TornEnd_data()
{
    QTest::addColumn<int>("cut"); // bytes missing at the end of the third record
    QTest::newRow("one byte short") << 1;
    QTest::newRow("half of it") << 60;
    QTest::newRow("only its mark") << -4;
    QTest::newRow("only a byte of its mark") << -1;
}

void tst_PostStore::TornEnd()
{
    QFETCH(int, cut);
    const QList<qint64> lengths = WriteThree();
    const QByteArray whole = Bytes(u"posts.dat"_s);
    const QByteArray torn = cut > 0 ? whole.chopped(cut) : whole.first(lengths[1] - cut);
    Overwrite(torn);
    {
        CPostStore store;
        QVERIFY(store.Open(m_folder->path()));
        QCOMPARE(Bodies(store), QStringList({u"本文1"_s, u"本文2"_s}));
        QCOMPARE(store.Warnings().size(), 1);
        QVERIFY(store.Append(Entry(3, u"後から"_s)));
    }
    QCOMPARE(Bytes(u"posts.torn"_s), torn.mid(lengths[1]));
    CPostStore again;
    QVERIFY(again.Open(m_folder->path()));
    QCOMPARE(Bodies(again), QStringList({u"本文1"_s, u"本文2"_s, u"後から"_s}));
    QVERIFY(again.Warnings().isEmpty());
}

void tst_PostStore::DamageInTheMiddle()
{
    const QList<qint64> lengths = WriteThree();
    QByteArray bytes = Bytes(u"posts.dat"_s);
    bytes[lengths[0] + 50] = static_cast<char>(bytes[lengths[0] + 50] ^ 1);
    Overwrite(bytes);
    CPostStore store;
    QVERIFY(store.Open(m_folder->path()));
    QCOMPARE(Bodies(store), QStringList({u"本文1"_s, u"本文3"_s}));
    QCOMPARE(store.Warnings().size(), 1);
    QCOMPARE(Bytes(u"posts.dat"_s), bytes); // what is damaged may still be mended by hand
}

void tst_PostStore::EndOfRubbish()
{
    Overwrite("TVP1 is how a record begins, but none of this TVP1 is one");
    CPostStore store;
    QVERIFY(store.Open(m_folder->path()));
    QVERIFY(store.Entries().empty());
    QCOMPARE(QFile(FileName()).size(), 0);
    QVERIFY(Bytes(u"posts.torn"_s).startsWith("TVP1 is how"));
}

void tst_PostStore::FullDisk()
{
    const QList<qint64> lengths = WriteThree();
    CPostStore store;
    QVERIFY(store.Open(m_folder->path()));
    {
        const CFileSizeLimit limit(rlim_t(lengths[2] + 20));
        QVERIFY(!store.Append(Entry(4, u"入りきらない本文"_s)));
    }
    QCOMPARE(QFile(FileName()).size(), lengths[2]);
    QVERIFY(store.Append(Entry(5, u"空きができた"_s)));
    store.Close();
    CPostStore again;
    QVERIFY(again.Open(m_folder->path()));
    QCOMPARE(Bodies(again), QStringList({u"本文1"_s, u"本文2"_s, u"本文3"_s, u"空きができた"_s}));
}

void tst_PostStore::SecondServer()
{
    CPostStore first;
    QVERIFY(first.Open(m_folder->path()));
    CPostStore second;
    QVERIFY(!second.Open(m_folder->path()));
    QVERIFY2(second.Error().contains(u"別の tavora-boardd"), qPrintable(second.Error()));
    QVERIFY(!second.Append(Entry(1, u"書けない"_s)));
    first.Close();
    QVERIFY(second.Open(m_folder->path()));
}

void tst_PostStore::UnusableFolder()
{
    Overwrite("");
    CPostStore store;
    QVERIFY(!store.Open(FileName() + u"/below a file"_s));
    QVERIFY(store.Error().contains(u"作れません"));
}

QTEST_GUILESS_MAIN(tst_PostStore)
#include "tst_PostStore.moc"
