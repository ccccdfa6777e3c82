// tests/app/tst_CIniFile.cpp
// The INI file: what is read from good and bad files, what Save leaves alone, typed values.

#include "app/CIniFile.h"
#include "tests/support/CFileSizeLimit.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// A folder with one INI file in it.
class CIniFolder
{
public:
    explicit CIniFolder(const QByteArray& Bytes = QByteArray())
    {
        if (!Bytes.isNull())
            Write(Bytes);
    }

    QString FileName() const { return m_folder.filePath(u"settings.ini"_s); }

    void Write(const QByteArray& Bytes) const { mdlFiles::Write(FileName(), Bytes); }

    QByteArray Bytes() const { return mdlFiles::Read(FileName()); }

private:
    QTemporaryDir m_folder;
};

CIniFile Loaded(const CIniFolder& Folder, const QString& Section)
{
    CIniFile ini;
    ini.Load(Folder.FileName());
    ini.SetNowSection(Section);
    return ini;
}

} // namespace

class tst_CIniFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void MissingFile();
    void Reading_data();
    void Reading();
    void SectionNames_data();
    void SectionNames();
    void CaseOfNames();
    void DeleteAndClear();
    void ManyChanges();
    void NothingTearsALine();
    void WhatTheFileCanHold();
    void InitData_data();
    void InitData();
    void Saving_data();
    void Saving();
    void SaveAll();
    void SaveFails();
    void FullDiskKeepsTheFile();
    void SurvivesJunk();
    void HugeFileIsLeftAlone();
};

void tst_CIniFile::MissingFile()
{
    const CIniFolder folder;
    CIniFile ini;
    QVERIFY(ini.Load(folder.FileName()));
    QVERIFY(ini.Sections().isEmpty());
    QVERIFY(ini.NowSection().isEmpty());
    QVERIFY(!ini.Save(QString()));
    QVERIFY(!QFile::exists(folder.FileName()));
    QVERIFY(ini.Save(u"WebSearch"_s));
    QVERIFY(ini.IsExist());
    QCOMPARE(folder.Bytes(), QByteArray("[WebSearch]\r\n"));
}

void tst_CIniFile::Reading_data()
{
    // wanted: "key=value" of [A] in order
    mdlTable::AddRows<QByteArray, QStringList>("ini-file.json", "Reading", {"bytes", "wanted"});
}

void tst_CIniFile::Reading()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, wanted);
    const CIniFolder folder(bytes);
    const CIniFile ini = Loaded(folder, u"A"_s);
    QStringList read;
    for (const QString& key : ini.Keys())
        read.append(key + u'=' + ini.Data(key));
    QCOMPARE(read, wanted);
}

void tst_CIniFile::SectionNames_data()
{
    mdlTable::AddRows<QByteArray, QStringList>("ini-file.json", "SectionNames", {"bytes", "wanted"});
    QTest::newRow("blank names are none") << QByteArray("[]\na=1\n[ ]\n[A]\n") << QStringList(u"A"_s);
    QTest::newRow("one of two") << QByteArray("[A]\n[a]\n") << QStringList(u"A"_s);
    QTest::newRow("letters with a bracket as second byte")
        << QByteArray("[\x83\x5D\x83\x5B]\n") << QStringList(u"ゾゼ"_s);
}

void tst_CIniFile::SectionNames()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, wanted);
    const CIniFolder folder(bytes);
    CIniFile ini;
    QVERIFY(ini.Load(folder.FileName()));
    QCOMPARE(ini.Sections(), wanted);
}

void tst_CIniFile::CaseOfNames()
{
    const CIniFolder folder("[Option]\r\nInterval=45\r\njust text\r\n");
    CIniFile ini = Loaded(folder, u"option"_s);
    QCOMPARE(ini.NowSection(), u"Option"_s);
    QVERIFY(ini.IsExist());
    QCOMPARE(ini.Data(u"INTERVAL"_s), u"45"_s);
    QCOMPARE(ini.Data(u"just text"_s), u"just text"_s);
    QVERIFY(ini.Data(u"missing"_s).isEmpty());
    QVERIFY(ini.Save(u"OPTION"_s));
    QCOMPARE(folder.Bytes(), QByteArray("[Option]\r\nInterval=45\r\n"));

    ini.SetNowSection(u"Other"_s);
    QVERIFY(!ini.IsExist());
    QCOMPARE(ini.Sections(), QStringList({u"Option"_s, u"Other"_s}));
    ini.SetNowSection(u"Option"_s);
    ini.SetNowSection(u"other"_s); // in memory, though not in the file
    QVERIFY(ini.IsExist());
}

void tst_CIniFile::DeleteAndClear()
{
    const CIniFolder folder("[A]\r\na=1\r\nb=2\r\n[B]\r\nc=3\r\n");
    CIniFile ini = Loaded(folder, u"A"_s);
    ini.DeleteData(u"missing"_s);
    ini.DeleteData(u"B"_s);
    QCOMPARE(ini.Keys(), QStringList(u"a"_s));
    ini.Clear();
    QVERIFY(ini.Keys().isEmpty());
    QVERIFY(ini.Data(u"a"_s).isEmpty());
    QVERIFY(ini.Save(u"A"_s));
    QCOMPARE(folder.Bytes(), QByteArray("[A]\r\n[B]\r\nc=3\r\n"));
}

void tst_CIniFile::ManyChanges()
{
    CIniFile ini;
    ini.SetNowSection(u"A"_s);
    QStringList wanted;
    QRandomGenerator random(13);
    for (int round = 0; round < 3000; ++round) {
        const QString key = u"k%1"_s.arg(random.bounded(20));
        wanted.removeAll(key);
        if (random.bounded(3) == 0) {
            ini.DeleteData(key.toUpper());
        } else {
            ini.SetData(key, QString::number(round));
            wanted.append(key);
        }
        QCOMPARE(ini.Keys(), wanted);
    }
}

void tst_CIniFile::NothingTearsALine()
{
    const CIniFolder folder;
    CIniFile ini = Loaded(folder, u"A\r\n[B]"_s);
    ini.SetData(u"a=b"_s, u"1\r\n[C]\nx=2"_s);
    ini.SetData(u"[key]"_s, u"="_s);
    ini.SetData(u";key"_s, QString(u"x\0y"_s));
    QVERIFY(ini.Save(QString()));

    CIniFile again;
    QVERIFY(again.Load(folder.FileName()));
    QCOMPARE(again.Sections(), QStringList(u"A  [B]"_s));
    again.SetNowSection(u"A  [B]"_s);
    QCOMPARE(again.Keys(), QStringList({u"a＝b"_s, u"［key]"_s, u"；key"_s}));
    QCOMPARE(again.Data(u"a=b"_s), u"1  [C] x=2"_s);
    QCOMPARE(again.Data(u"[key]"_s), u"="_s);
    QCOMPARE(again.Data(u";key"_s), u"x y"_s);
}

/// A wave dash as other input methods type it goes into code page 932; a yen sign does not, a backslash is no yen.
void tst_CIniFile::WhatTheFileCanHold()
{
    const CIniFolder plain(QByteArray("[A]\r\n"));
    const CIniFolder marked(QByteArray("\xEF\xBB\xBF[A]\r\n"));
    for (const auto& [text, isHeld] :
         {std::pair(u"表〜①"_s, true), {u"¥"_s, false}, {u"안녕"_s, false}, {u"😀"_s, false}}) {
        QCOMPARE(Loaded(plain, u"A"_s).CanHold(text), isHeld);
        QVERIFY(Loaded(marked, u"A"_s).CanHold(text));
    }
}

void tst_CIniFile::InitData_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("fallback");
    QTest::addColumn<QVariant>("wanted");
    const auto row = [](const char* Name, const QString& Stored, int Type, const QVariant& Default,
                        const QVariant& Wanted) { QTest::newRow(Name) << Stored << Type << Default << Wanted; };
    row("text", u"abc"_s, 0, u"d"_s, u"abc"_s);
    row("blank text", u"   "_s, 0, u"d"_s, u"d"_s);
    row("missing text", QString(), 0, u"d"_s, u"d"_s);
    row("no number", u"abc"_s, 1, 30, 30);
    row("number", u"45"_s, 1, 30, 45);
    row("beyond 16 bits", u"40000"_s, 1, 30, 40000);
    row("beyond 32 bits", u"2147483648"_s, 1, 30, 30);
    row("missing number", QString(), 1, 30, 30);
    row("single", u"1.5"_s, 2, 0.0f, 1.5f);
    row("no single", u"x"_s, 2, 2.0f, 2.0f);
    row("false by word", u"False"_s, 3, true, false);
    row("false by number", u"0"_s, 3, true, false);
    row("true by number", u"-1"_s, 3, false, true);
    row("another word", u"yes"_s, 3, true, true);
    row("other type", u" x "_s, 9, u"d"_s, u" x "_s);
    row("other type, missing", QString(), -1, u"d"_s, QString());
}

void tst_CIniFile::InitData()
{
    QFETCH(QString, stored);
    QFETCH(int, type);
    QFETCH(QVariant, fallback);
    QFETCH(QVariant, wanted);
    CIniFile ini;
    ini.SetNowSection(u"A"_s);
    if (!stored.isNull())
        ini.SetData(u"key"_s, stored);
    QCOMPARE(ini.InitData(u"key"_s, static_cast<qint16>(type), fallback), wanted);
    QCOMPARE(ini.Data(u"key"_s), stored); // never written back
    QCOMPARE(ini.Keys().size(), stored.isNull() ? 0 : 1);
}

/// Section [B] is saved with the one entry "x=9".
void tst_CIniFile::Saving_data()
{
    mdlTable::AddRows<QByteArray, QByteArray>("ini-file.json", "Saving", {"before", "after"});
}

void tst_CIniFile::Saving()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const CIniFolder folder(before);
    CIniFile ini = Loaded(folder, u"B"_s);
    ini.Clear();
    ini.SetData(u"x"_s, u"9"_s);
    QVERIFY(ini.Save(u"B"_s));
    QVERIFY(ini.IsExist());
    QCOMPARE(folder.Bytes().toHex(' '), after.toHex(' '));
}

void tst_CIniFile::SaveAll()
{
    const CIniFolder folder("; head\r\n[A]\r\na=1\r\njunk\r\n[B]\r\nb=1\r\n");
    CIniFile ini = Loaded(folder, u"New"_s);
    ini.SetData(u"文字"_s, u"\u301C表①\U0001F600"_s);
    // Another program's section that came meanwhile stays.
    folder.Write("; head\r\n[A]\r\na=0\r\n[Foreign]\r\nf=1\r\n[B]\r\n");
    QVERIFY(ini.Save(QString()));
    QCOMPARE(folder.Bytes(), QByteArray("; head\r\n[A]\r\na=1\r\n[Foreign]\r\nf=1\r\n[B]\r\nb=1\r\n[New]\r\n"
                                        "\x95\xB6\x8E\x9A=\x81\x60\x95\x5C\x87\x40??\r\n"));
}

void tst_CIniFile::SaveFails()
{
    const CIniFolder folder("[A]\r\na=1\r\n");
    CIniFile ini = Loaded(folder, u"A"_s);
    ini.SetData(u"a"_s, u"2"_s);
    QVERIFY(ini.Load(folder.FileName() + u"/no/such/folder.ini"_s));
    ini.SetNowSection(u"B"_s);
    ini.SetData(u"b"_s, u"1"_s);
    QVERIFY(!ini.Save(QString()));
    QVERIFY(!ini.Save(u"B"_s));
    QVERIFY(!ini.IsExist());
    QCOMPARE(ini.Data(u"b"_s), u"1"_s);
    QCOMPARE(folder.Bytes(), QByteArray("[A]\r\na=1\r\n"));

    CIniFile unnamed;
    QVERIFY(!unnamed.Save(u"A"_s));

    const QTemporaryDir parent;
    QVERIFY(QDir(parent.path()).mkdir(u"a.ini"_s));
    CIniFile directory;
    QVERIFY(directory.Load(parent.filePath(u"a.ini"_s)));
    QVERIFY(directory.Sections().isEmpty());
    QVERIFY(!directory.Save(u"A"_s));
}

void tst_CIniFile::FullDiskKeepsTheFile()
{
    const CIniFolder folder("[A]\r\na=1\r\n");
    CIniFile ini = Loaded(folder, u"A"_s);
    ini.SetData(u"a"_s, u"2"_s);
    bool isSaved = true;
    {
        const CFileSizeLimit fullDisk(4);
        isSaved = ini.Save(u"A"_s);
    }
    QVERIFY(!isSaved);
    QCOMPARE(folder.Bytes(), QByteArray("[A]\r\na=1\r\n"));
    QVERIFY(ini.Save(u"A"_s));
    QCOMPARE(folder.Bytes(), QByteArray("[A]\r\na=2\r\n"));
}

void tst_CIniFile::SurvivesJunk()
{
    QRandomGenerator random(7);
    const QByteArray alphabet("[]=;ab\r\n \0\x82\x83\x5D\xFF\xFE\xEF\xBB\xBF", 18);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes;
        for (int i = random.bounded(120); i > 0; --i)
            bytes += alphabet[random.bounded(static_cast<int>(alphabet.size()))];
        const CIniFolder folder(bytes);
        CIniFile ini = Loaded(folder, u"ours"_s);
        ini.SetData(u"k"_s, u"v"_s);
        const QStringList sections = ini.Sections();
        QVERIFY(ini.Save(QString()));

        CIniFile again = Loaded(folder, u"ours"_s);
        QCOMPARE(again.Data(u"k"_s), u"v"_s);
        QCOMPARE(again.Sections(), sections);
    }
}

void tst_CIniFile::HugeFileIsLeftAlone()
{
    const CIniFolder folder(QByteArray("[A]\r\na=1\r\n") + QByteArray(CIniFile::MaxFileSize, ';'));
    CIniFile ini = Loaded(folder, u"A"_s);
    QVERIFY(ini.Keys().isEmpty());
    QVERIFY(!ini.Save(u"A"_s));
    QVERIFY(folder.Bytes().startsWith("[A]\r\na=1\r\n;"));

    // As many sections and keys as fit: reading and saving stay linear.
    QByteArray many;
    while (many.size() < 1'000'000)
        many += "[s" + QByteArray::number(many.size()) + "]\nk" + QByteArray::number(many.size()) + "=1\nk=2\n";
    folder.Write(many);
    CIniFile large = Loaded(folder, u"s0"_s);
    QVERIFY(large.Sections().size() > 30'000);
    large.SetData(u"new"_s, u"1"_s);
    QVERIFY(large.Save(QString()));
    QVERIFY(folder.Bytes().startsWith("[s0]\nk0=1\r\nk=2\r\nnew=1\r\n[s"));
}

QTEST_GUILESS_MAIN(tst_CIniFile)
#include "tst_CIniFile.moc"
