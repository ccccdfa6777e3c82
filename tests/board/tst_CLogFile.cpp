// tests/board/tst_CLogFile.cpp
// Files that a user may choose as old logs: texts in the encodings and with the line ends that exist, archives, and
// what is neither or is damaged.

#include "board/CLogFile.h"
#include "board/CLogParser.h"
#include "platform/text/Codepage932.h"
#include "tests/support/Files.h"

#include <QDir>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

QByteArray Data(const QString& Name) { return mdlFiles::Read(QStringLiteral(TAVORA_TEST_DATA "/lzh/") + Name); }

QString Separator() { return u"\r\n"_s + CRecordCutter::SeparatorLine().toString() + u"\r\n"_s; }

/// Two records of a few lines, as the boards send them.
QString Log() { return u"Number:1\r\n能登の表（①）"_s + Separator() + u"Number:2\r\n二行の\r\n本文～"_s + Separator(); }

QByteArray With(QByteArray Bytes, const char* LineEnd) { return Bytes.replace("\r\n", LineEnd); }

/// The first member of an archive of level 2 that is packed with Method.
QByteArray MemberAt(const QByteArray& Archive, const char* Method)
{
    const qsizetype place = Archive.indexOf(Method) - 2;
    const auto size = [&](qsizetype Offset) {
        return qFromLittleEndian<quint16>(Archive.constData() + place + Offset);
    };
    return Archive.sliced(place, size(0) + size(7));
}

/// What Next gave: a line for each block with its member's name, its number of records and its problem, then the error.
QStringList Shown(const QString& FileName)
{
    CLogFile file(FileName);
    QStringList lines;
    while (const auto block = file.Next()) {
        CRecordCutter cutter(block->Text);
        int records = 0;
        while (cutter.Next())
            ++records;
        lines << block->Name + u' ' + QString::number(records) + block->Problem;
    }
    if (!file.Error().isEmpty())
        lines << file.Error();
    return lines;
}

} // namespace

class tst_CLogFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Texts_data();
    void Texts();
    void Files_data();
    void Files();
    void NoFile();
    void Stopped();

private:
    QString Path(const QString& Name) const { return m_folder.filePath(Name); }

    QTemporaryDir m_folder;
};

void tst_CLogFile::Texts_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("wanted");

    const QString log = Log();
    const QByteArray sjis = text::To932(log), utf8 = log.toUtf8();
    const QString bare = log.left(20) + u"\nbare\n"_s + log.mid(20);
    QTest::newRow("code page 932") << sjis << log;
    QTest::newRow("UTF-8") << utf8 << log;
    QTest::newRow("UTF-8, mark") << "\xEF\xBB\xBF" + utf8 << log;
    QTest::newRow("UTF-8, mark and a wrong byte")
        << "\xEF\xBB\xBF" + utf8 + "\xFF" << log + QChar::ReplacementCharacter;
    QTest::newRow("UTF-8, cut in a character") << utf8 + "\xE3\x81" << log + QString(2, QChar::ReplacementCharacter);
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        QTest::addRow("UTF-16 %d", encoding) << QByteArray(encoder(log)) << log;
    }
    QTest::newRow("LF") << With(sjis, "\n") << log;
    QTest::newRow("CR") << With(sjis, "\r") << log;
    QTest::newRow("LF, last one missing") << With(sjis, "\n").chopped(1) << log.chopped(2);
    QTest::newRow("LF in a body stays") << text::To932(bare) << bare;
    QTest::newRow("one record, its last line end missing")
        << sjis.left(sjis.indexOf("--===") + 5) << log.left(log.indexOf(u"--===") + 5);
    QTest::newRow("end mark, to the end of a sector") << sjis + "\x1A" << log;
    QTest::newRow("end mark and what was in the sector") << sjis + QByteArray("\x1A\x1A\0", 3) << log;
    QTest::newRow("end mark behind a missing line end")
        << With(sjis.sliced(sjis.indexOf("Number:2")), "\n").chopped(1) + "\x1A"
        << log.mid(log.indexOf(u"Number:2")).chopped(2);
    QTest::newRow("joined with end marks") << sjis + "\x1A" + sjis + "\x1A" << log + log;
    QTest::newRow("joined by sectors") << sjis + QByteArray("\x1A\x1A\0\0", 4) + sjis + "\x1A" + sjis
                                       << log + log + log;
    const QString large = u"表"_s.repeated(700000) + u"\r\n"_s + log.repeated(9000); // of several portions
    QTest::newRow("large") << text::To932(large) << large;
    QTest::newRow("large UTF-8") << large.toUtf8() << large;
}

void tst_CLogFile::Texts()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, wanted);
    mdlFiles::Write(Path(u"log.lzh.txt"_s), bytes);
    CLogFile file(Path(u"log.lzh.txt"_s));
    const auto block = file.Next();
    QVERIFY2(block, qPrintable(file.Error()));
    QVERIFY(block->Name.isEmpty() && block->Problem.isEmpty());
    QVERIFY2(block->Text == wanted, qPrintable(block->Text.left(200)));
    QVERIFY(!file.Next() && file.Error().isEmpty());
}

void tst_CLogFile::Files_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("wanted");

    const QByteArray log = Data(u"log.txt"_s), plain = Data(u"plain-2.lzh"_s), methods = Data(u"methods.lzh"_s);
    const QByteArray stored = MemberAt(methods, "-lh0-");
    const QString noLog = u"「a.txt」にはログの区切り行がありません。掲示板のログではないようです。"_s;
    QTest::newRow("empty") << u"a.txt"_s << QByteArray() << QStringList{u"「a.txt」は空のファイルです。"_s};
    QTest::newRow("no log") << u"a.txt"_s << QByteArray("text\r\n") << QStringList{noLog};
    QTest::newRow("zeros") << u"a.txt"_s << QByteArray(5000, '\0') << QStringList{noLog};
    QTest::newRow("archive called a text")
        << u"a.txt"_s << Data(u"stub.lzh"_s)
        << QStringList{u"「a.txt」はLZH書庫のようです。名前の最後を「.lzh」に変えると取り込めます。"_s};
    QTest::newRow("text called an archive")
        << u"a.lzh"_s << log
        << QStringList{
               u"「a.lzh」はLZH書庫ではないか、先頭から壊れています。テキストのログなら、名前の最後を「.txt」に変えると取り込めます。"_s};
    QTest::newRow("whole name") << u"lzh"_s << QByteArray() << QStringList{u"「lzh」は空のファイルです。"_s};

    QTest::newRow("archive") << u"a.LzH"_s << plain << QStringList{u"first.log 8"_s, u"second.log 8"_s};
    QTest::newRow("names") << u"a.lzh"_s << Data(u"names-1.lzh"_s)
                           << QStringList{u"表.log 8"_s, u"アイ.TXT 8"_s, u"予約/2001/能登.log 8"_s, u"かな.log 8"_s,
                                          QString(40, u'長') + u".log 8"_s};
    QTest::newRow("archive without a log")
        << u"a.lzh"_s << MemberAt(plain, "-lh0-") << QStringList{u"「a.lzh」には掲示板のログが入っていません。"_s};
    QTest::newRow("cut short")
        << u"a.lzh"_s << plain.chopped(100)
        << QStringList{u"first.log 8"_s,
                       u"second.log 1「a.lzh」の「second.log」は途中で切れています。読めたところまで取り込みます。"_s};
    QTest::newRow("cut at the start of a member")
        << u"a.lzh"_s << plain.chopped(310)
        << QStringList{u"first.log 8"_s, u"second.log 0「a.lzh」の「second.log」は途中で切れていて取り込めません。"_s};
    QTest::newRow("bad header")
        << u"a.lzh"_s << QByteArray(plain).replace("readme.txt", "readme.TXT")
        << QStringList{u"first.log 8"_s, u"second.log 8"_s,
                       u" 0「a.lzh」には壊れていて読めないところがあります。読めたログだけを取り込みます。"_s};
    QTest::newRow("unknown method")
        << u"a.lzh"_s << MemberAt(methods, "-lh3-")
        << QStringList{u"lh3.log 0「a.lzh」の「lh3.log」は知らない方式（-lh3-）で圧縮されているので取り込めません。"_s};
    // Of the eight records of a stored log the third is damaged: the two in front of it are sound.
    const QString damaged = u"lh0.log %1「a.lzh」の「lh0.log」は壊れています。読めたところまで取り込みます。"_s;
    const qsizetype third = stored.indexOf("Number:3");
    QTest::newRow("control character") << u"a.lzh"_s << QByteArray(stored).replace(third, 1, "\1")
                                       << QStringList{damaged.arg(2)};
    QTest::newRow("half a character") << u"a.lzh"_s
                                      << QByteArray(stored).replace(third, 2,
                                                                    "\x81"
                                                                    "1")
                                      << QStringList{damaged.arg(2)};
    QTest::newRow("cut character at a line end is no damage")
        << u"a.lzh"_s << QByteArray(stored).replace(stored.indexOf("\r\n", third) - 1, 1, "\x81")
        << QStringList{damaged.arg(8)};
}

void tst_CLogFile::Files()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    mdlFiles::Write(Path(name), bytes);
    QTEST(Shown(Path(name)), "wanted");
}

void tst_CLogFile::NoFile()
{
    QCOMPARE(Shown(Path(u"none.txt"_s)), QStringList{u"「none.txt」が見つかりません。"_s});
    QVERIFY(QDir(m_folder.path()).mkdir(u"folder.lzh"_s));
    QCOMPARE(mkfifo(qPrintable(Path(u"pipe.txt"_s)), 0600), 0);
    for (const QString& name : {u"folder.lzh"_s, u"pipe.txt"_s, u"/dev/zero"_s})
        QVERIFY(Shown(QDir(m_folder.path()).absoluteFilePath(name))
                    .join(u' ')
                    .endsWith(u"はふつうのファイルではないので取り込めません。"_s));
    QFile large(Path(u"large.txt"_s));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(CLogFile::MaxSize + 1));
    QCOMPARE(Shown(large.fileName()),
             QStringList{u"「large.txt」は256MBを超えているので取り込めません。いくつかに分けてください。"_s});
}

/// Whenever the user has enough, no more blocks come and nothing is called an error.
void tst_CLogFile::Stopped()
{
    mdlFiles::Write(Path(u"a.txt"_s), text::To932(Log()));
    mdlFiles::Write(Path(u"a.lzh"_s), Data(u"plain-1.lzh"_s));
    for (const QString& name : {u"a.txt"_s, u"a.lzh"_s}) {
        bool isStopped = true;
        for (int limit = 0; isStopped; ++limit) {
            isStopped = false;
            CLogFile file(Path(name));
            int calls = 0;
            while (const auto block = file.Next([&] { return !(isStopped = ++calls > limit); }))
                QVERIFY(block->Problem.isEmpty() && !isStopped);
            QVERIFY2(file.Error().isEmpty(), qPrintable(file.Error()));
        }
    }
}

QTEST_APPLESS_MAIN(tst_CLogFile)
#include "tst_CLogFile.moc"
