// tests/platform/tst_ArchiveLzh.cpp
// Archives of all levels and methods, and what is left of them when they are damaged. How the archives were made stands
// in tests/data/lzh/make.

#include "platform/archive/CLzhReader.h"
#include "tests/support/Files.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

QByteArray Data(const QString& Name) { return mdlFiles::Read(QStringLiteral(TAVORA_TEST_DATA "/lzh/") + Name); }

/// A stored member at level 2, without a checksum of its header.
QByteArray Member(const QByteArray& Method, const QByteArray& Packed, quint32 Size, const QByteArray& Name)
{
    const auto word = [](quint32 Number, int Width) {
        QByteArray bytes;
        for (; Width > 0; --Width, Number >>= 8)
            bytes += static_cast<char>(Number & 255);
        return bytes;
    };
    const QByteArray chain = word(quint32(Name.size() + 3), 2) + '\1' + Name + word(0, 2);
    return word(quint32(24 + chain.size()), 2) + Method + word(quint32(Packed.size()), 4) + word(Size, 4) + word(0, 4) +
           " \2" + word(0, 2) + 'M' + chain + Packed;
}

/// Blocks of an -lh5- stream whose only code, "the last byte 256 times more", takes no bits: seven bytes make 16 MB.
QByteArray Bomb(int Blocks)
{
    const QByteArray bits =
        QByteArray("1111111111111111" + QByteArray(19, '0') + "111111101" + "00000000").repeated(Blocks);
    QByteArray bytes;
    for (qsizetype i = 0; i < bits.size(); i += 8)
        bytes += static_cast<char>(bits.mid(i, 8).leftJustified(8, '0').toInt(nullptr, 2));
    return bytes;
}

/// What is in Archive: a line for each member with its name and its contents or fault, "damaged" behind them if it is.
QStringList Shown(const QByteArray& Archive)
{
    static const QByteArray log = Data(u"log.txt"_s);
    static const char* const faults[] = {"", "bad", "cut", "unknown", "large", "stopped"};
    CLzhReader reader(Archive);
    QStringList lines;
    while (const auto member = reader.Next()) {
        QString what = QString::fromLatin1(faults[int(member->Problem)]);
        if (member->Problem == CLzhMember::Fault::None)
            what = member->Bytes == log ? u"log"_s : QString::number(member->Bytes.size());
        if (what == u"cut" && !log.startsWith(member->Bytes) && member->Name.endsWith(u".log"))
            what = u"cut, then noise"_s;
        lines << member->Name + u' ' + what;
    }
    return reader.IsWhole() ? lines : lines << u"damaged"_s;
}

QByteArray Patched(QByteArray Bytes, qsizetype Place, const QByteArray& Patch)
{
    return Bytes.replace(Place, Patch.size(), Patch);
}

} // namespace

class tst_ArchiveLzh : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Members_data();
    void Members();
    void CutAnywhere();
    void Limits();
    void Stops();
};

void tst_ArchiveLzh::Members_data()
{
    QTest::addColumn<QByteArray>("archive");
    QTest::addColumn<QStringList>("wanted");

    const QStringList plain{u"first.log log"_s, u"readme.txt 20"_s, u"second.log log"_s};
    const QStringList names{u"表.log log"_s,  u"アイ.TXT log"_s, u"予約/2001/能登.log log"_s,
                            u"説明.txt 20"_s, u"かな.log log"_s, QString(40, u'長') + u".log log"_s};
    for (const QString& level : {u"0"_s, u"1"_s, u"2"_s})
        QTest::addRow("level %s", qPrintable(level)) << Data(u"plain-"_s + level + u".lzh"_s) << plain;
    for (const QString& level : {u"0"_s, u"1"_s, u"2"_s, u"3"_s})
        QTest::addRow("names at level %s", qPrintable(level)) << Data(u"names-"_s + level + u".lzh"_s) << names;
    QTest::newRow("behind a program") << Data(u"stub.lzh"_s) << names;
    QTest::newRow("methods")
        << Data(u"methods.lzh"_s)
        << u"lh0.log log|lh1.log log|lh3.log unknown|lh4.log log|lh5.log log|lh6.log log|lh7.log log|"
           "lz4.log log|lz5.log log|lzs.log log|pm0.log log|mac.log log"_s.split(u'|');

    const QStringList lost{plain[0], plain[2], u"damaged"_s};
    const QByteArray level0 = Data(u"plain-0.lzh"_s), level1 = Data(u"plain-1.lzh"_s), level2 = Data(u"plain-2.lzh"_s);
    const QByteArray weak = Patched(level2, 26, "?"); // without the checksum of the first header
    const qsizetype second = level2.indexOf("-lh0-") - 2;
    QTest::newRow("no end mark") << level2.chopped(1) << plain;
    QTest::newRow("end mark and padding") << level2 + QByteArray(100, '\0') << plain;
    QTest::newRow("noise at the end") << level2.chopped(1) + "noise" << plain + QStringList{u"damaged"_s};
    QTest::newRow("packed bytes changed")
        << Patched(level2, 200, "??") << QStringList{u"first.log bad"_s, plain[1], plain[2]};
    QTest::newRow("unknown method") << Patched(weak, 2, "-lh9-")
                                    << QStringList{u"first.log unknown"_s, plain[1], plain[2]};
    QTest::newRow("4 GB promised") << Patched(weak, 11, "\xFF\xFF\xFF\xFF")
                                   << QStringList{u"first.log large"_s, plain[1], plain[2]};
    QTest::newRow("4 GB packed") << Patched(weak, 7, "\xFF\xFF\xFF\xFF") << plain + QStringList{u"damaged"_s};
    QTest::newRow("header sum, level 0") << Patched(level0, level0.indexOf("-lh0-") - 1, "?") << lost;
    QTest::newRow("header sum, level 1") << Patched(level1, level1.indexOf("-lh0-") - 1, "?") << lost;
    QTest::newRow("header zeroed") << Patched(level2, second, QByteArray(30, '\0')) << lost;
    QTest::newRow("first header gone") << level2.mid(3) << QStringList{plain[1], plain[2], u"damaged"_s};
    QTest::newRow("no archive") << QByteArray("-lh5- is what archives begin with.") << QStringList{u"damaged"_s};
    QTest::newRow("nothing") << QByteArray() << QStringList();
    QTest::newRow("control characters in a name") << Member("-lh0-", "x", 1, "a\r\nb\x7F") << QStringList{u"ab bad"_s};
    QTest::newRow("no name") << Member("-lh0-", {}, 0, "\r") << QStringList{u" 0"_s};
}

void tst_ArchiveLzh::Members()
{
    QFETCH(QByteArray, archive);
    QTEST(Shown(archive), "wanted");
    QFETCH(QStringList, wanted);
    QCOMPARE(CLzhReader::IsArchive(archive), !wanted.isEmpty() && wanted.first() != u"damaged"_s);
}

/// However much of an archive is left, the members that are whole come out and nothing is taken for whole that is not.
void tst_ArchiveLzh::CutAnywhere()
{
    for (const QString& name : {u"plain-0.lzh"_s, u"plain-1.lzh"_s, u"plain-2.lzh"_s, u"names-3.lzh"_s}) {
        const QByteArray archive = Data(name);
        const QStringList whole = Shown(archive);
        for (qsizetype size = 0; size < archive.size() - 1; ++size) {
            QStringList left = Shown(archive.first(size));
            const bool isDamaged = !left.isEmpty() && left.last() == u"damaged"_s;
            left.removeIf([](const QString& Line) { return Line == u"damaged"_s || Line.endsWith(u" cut"_s); });
            QCOMPARE(left, whole.first(left.size()));
            const bool isBetween = archive.mid(size + 2, 2) == "-l";
            QVERIFY2(isDamaged || isBetween || size == 0, qPrintable(name + QString::number(size)));
        }
    }
}

void tst_ArchiveLzh::Limits()
{
    const QByteArray bomb = Bomb(20); // of 320 MB, some 130 bytes
    constexpr quint32 Large = 200 << 20;
    QCOMPARE(Shown(Member("-lh5-", bomb, 300 << 20, "a")), QStringList{u"a large"_s});
    QCOMPARE(Shown(Member("-lh5-", bomb, Large, "a").repeated(3)).join(u','), u"a bad,a bad,a large"_s);

    const QStringList many = Shown(Member("-lh0-", {}, 0, "a").repeated(CLzhReader::MaxMembers + 1));
    QCOMPARE(many.size(), CLzhReader::MaxMembers + 1);
    QCOMPARE(many.last(), u"damaged"_s);

    // Nothing but beginnings of headers of level 1 whose parts have no end: the time must not grow with their number.
    const QByteArray part = Member("-lh5-", {}, 0, "a").first(24).replace(20, 1, "\1");
    QVERIFY(!CLzhReader::IsArchive(part.repeated(1 << 20)));
}

void tst_ArchiveLzh::Stops()
{
    CLzhReader reader(Member("-lh5-", Bomb(20), 200 << 20, "a"));
    int calls = 0;
    const auto member = reader.Next([&] { return ++calls < 10; });
    QVERIFY(member && member->Problem == CLzhMember::Fault::Stopped);
    QVERIFY(member->Bytes.size() < 1 << 20);
    QCOMPARE(calls, 10);
}

QTEST_APPLESS_MAIN(tst_ArchiveLzh)
#include "tst_ArchiveLzh.moc"
