// tests/app/tst_Settings.cpp
// Reading, mending and writing the settings, the first web-search menu, the question about missing folders.

#include "app/Application.h"
#include "app/Settings.h"
#include "app/Shutdown.h"
#include "platform/dao/Database.h"
#include "tests/support/CScriptedDesktop.h"
#include "tests/support/Files.h"
#include "tests/support/Table.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

/// A program folder of its own with an INI file, and the application that works in it.
class CProgram
{
public:
    explicit CProgram(const QByteArray& Ini = QByteArray())
        : App(Desktop, m_folder.path(), u"tavora"_s)
    {
        if (!Ini.isEmpty())
            mdlFiles::Write(App.IniFileName(), Ini);
        App.SettingsIni().Load(App.IniFileName());
    }

    QString Path(const QString& Name) const { return m_folder.filePath(Name); }

    QByteArray Ini() const { return mdlFiles::Read(App.IniFileName()); }

    /// Opens a database whose boards are pairs of number and place in the menu, -1 being hidden.
    void OpenBoards(const QList<int>& Pairs)
    {
        App.SetLogDB(dao::Database::Create(App.DatabaseFileName()));
        App.LogDB()->Execute(u"CREATE TABLE BBS (BBS_ID LONG, ListOrder LONG)"_s);
        for (qsizetype i = 0; i < Pairs.size(); i += 2)
            App.LogDB()->Execute(u"INSERT INTO BBS VALUES (%1, %2)"_s.arg(Pairs[i]).arg(Pairs[i + 1]));
    }

    CScriptedDesktop Desktop;

private:
    QTemporaryDir m_folder;

public:
    Application App;
};

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Numbers_data();
    void Numbers();
    void TextsAndFlags();
    void StartBoard_data();
    void StartBoard();
    void BoardsThatCannotBeRead();
    void WrittenInOrder();
    void WrittenAndReadAgain();
    void WebSearchOfANewFile();
    void WebSearchEmptied();
    void FoldersThere();
    void FoldersAsked();
    void FoldersRefused();
    void FolderOnADrive();
};

void tst_Settings::Numbers_data()
{
    // wanted: Interval, AddMax, ReadTiming, Timeout
    mdlTable::AddRows<QByteArray, QList<qint32>>("settings.json", "Numbers", {"line", "wanted"});
}

void tst_Settings::Numbers()
{
    QFETCH(QByteArray, line);
    QFETCH(QList<qint32>, wanted);
    CProgram program("[option]\r\n" + line + "\r\n");
    mdlSettings::ReadSettings(program.App);
    const Settings& option = program.App.Option();
    QCOMPARE(QList<qint32>({option.Interval, option.AddMax, option.ReadTiming, option.Timeout}), wanted);
}

void tst_Settings::TextsAndFlags()
{
    CProgram program("[Option]\r\nTimer=True\r\nReplyHeader=   \r\nDateFormat=yy.mm\r\nUseRegExp=0\r\n"
                     "IgnoreCase=maybe\r\nExitIfMessageFound=TRUE\r\nCacheFilePath=D:\\\x95\x5C\r\n");
    mdlSettings::ReadSettings(program.App);
    const Settings& option = program.App.Option();
    QVERIFY(!option.Timer); // whatever the file says
    QCOMPARE(option.ReplyHeader, mdlSettings::DefaultReplyHeader());
    QCOMPARE(option.DateFormat, u"yy.mm"_s);
    QVERIFY(!option.UseRegExp);
    QVERIFY(option.IgnoreCase);
    QVERIFY(option.ExitIfMessageFound);
    QCOMPARE(option.CacheFilePath, u"D:\\表"_s);
}

void tst_Settings::StartBoard_data()
{
    // boards: their numbers and places, -1: hidden
    mdlTable::AddRows<QByteArray, QList<int>, int>("settings.json", "StartBoard", {"line", "boards", "wanted"});
}

void tst_Settings::StartBoard()
{
    QFETCH(QByteArray, line);
    QFETCH(QList<int>, boards);
    CProgram program("[Option]\r\n" + line + "\r\n");
    program.OpenBoards(boards);
    mdlSettings::ReadSettings(program.App);
    QTEST(program.App.Option().BBS_ID, "wanted");
}

void tst_Settings::BoardsThatCannotBeRead()
{
    CProgram program("[Option]\r\nBBS_ID=3\r\nTimeout=5\r\n");
    program.App.SetLogDB(dao::Database::Create(program.App.DatabaseFileName())); // without any table
    mdlSettings::ReadSettings(program.App);
    QCOMPARE(program.App.Option().BBS_ID, 0);
    QCOMPARE(program.App.Option().Timeout, 5);
}

void tst_Settings::WrittenInOrder()
{
    CProgram program("; mine\r\n[Option]\r\nInterval=45\r\nOld=1\r\n[Position]\r\nLeft=10\r\n");
    program.OpenBoards({2, 0});
    mdlSettings::ReadSettings(program.App);
    Settings& option = program.App.Option();
    option.ErrorLogFilePath = u"D:\\log\\"_s;
    option.CacheFilePath = u"/c/"_s;
    option.IconFilePath = u"/i/"_s;
    QVERIFY(mdlSettings::WriteSettings(program.App));
    QCOMPARE(program.Ini(), QByteArray("; mine\r\n[Option]\r\nOld=1\r\nBBS_ID=2\r\nTimer=False\r\nInterval=45\r\n"
                                       "AddMax=100\r\nReadTiming=1500\r\n"
                                       "ReplyHeader=%s#%I %S \x82\xE6\x82\xE8\x88\xF8\x97\x70\\n%B\r\n"
                                       "DateFormat=yyyy/mm/dd hh:nn\r\nTimeout=60\r\nSaveSQLDialogPosition=True\r\n"
                                       "SaveLoadDialogPosition=True\r\nAutoCloseImportDialog=False\r\n"
                                       "UseRegExp=True\r\nIgnoreCase=True\r\nImportReadMode=False\r\n"
                                       "ErrorLogFilePath=D:\\log\\\r\nCacheFilePath=/c/\r\nIconFilePath=/i/\r\n"
                                       "AddTaskTray=True\r\nHideAtMinimazed=False\r\nBlinkIcon=True\r\n"
                                       "NoReadBold=True\r\nExitIfMessageFound=False\r\n[Position]\r\nLeft=10\r\n"));
}

void tst_Settings::WrittenAndReadAgain()
{
    CProgram program("[Option]\r\nTimer=True\r\n");
    mdlSettings::ReadSettings(program.App);
    program.App.Option().Timer = true; // switched on during the run
    program.App.Option().ReplyHeader = u">%B\n①"_s;
    QVERIFY(mdlSettings::WriteSettings(program.App));
    QVERIFY(program.Ini().contains("\r\nTimer=True\r\n"));
    program.App.SettingsIni().Load(program.App.IniFileName());
    mdlSettings::ReadSettings(program.App);
    QVERIFY(!program.App.Option().Timer);
    QCOMPARE(program.App.Option().ReplyHeader, u">%B ①"_s); // a line break cannot stand in the file
}

void tst_Settings::WebSearchOfANewFile()
{
    CProgram program("[Option]\r\n");
    QVERIFY(mdlSettings::InitWebSearchList(program.App));
    const CIniFile& ini = program.App.SettingsIni();
    QCOMPARE(ini.NowSection(), u"WebSearch"_s);
    QCOMPARE(ini.Keys(), QStringList({u"Googleで検索(&G)..."_s, u"マイクロソフトサイト検索(&J)..."_s,
                                      u"Microsoft Web Search(&U)..."_s}));
    QVERIFY(ini.Data(ini.Keys()[0]).endsWith(u"/search?q=%s&num=100"));
    QVERIFY(ini.Data(ini.Keys()[1]).endsWith(u"/japan/SearchMS25.asp?qu=%s&IntCat=0&IntCat=2&Nq=NEW&boolean=ALL"));
    QVERIFY(ini.Data(ini.Keys()[2]).endsWith(u"/us/SearchMS25.asp?qu=%s&IntCat=0&IntCat=2&Nq=NEW&boolean=ALL"));
    QVERIFY(program.Ini().startsWith("[Option]\r\n[WebSearch]\r\nGoogle\x82\xC5"));
}

void tst_Settings::WebSearchEmptied()
{
    CProgram program("[WebSearch]\r\n[Option]\r\n");
    QVERIFY(mdlSettings::InitWebSearchList(program.App));
    QVERIFY(program.App.SettingsIni().Keys().isEmpty());
    QCOMPARE(program.Ini(), QByteArray("[WebSearch]\r\n[Option]\r\n"));
}

void tst_Settings::FoldersThere()
{
    CProgram program;
    mdlSettings::ReadSettings(program.App);
    QVERIFY(QDir().mkpath(program.Path(u"cache"_s)) && QDir().mkpath(program.Path(u"image"_s)));
    program.App.Option().CacheFilePath = program.Path(u"cache"_s);
    QVERIFY(mdlSettings::CheckFolders(program.App)); // no question
    QCOMPARE(program.App.Option().CacheFilePath, program.Path(u"cache/"_s));
}

void tst_Settings::FoldersAsked()
{
    CProgram program;
    mdlSettings::ReadSettings(program.App);
    program.App.Option().ErrorLogFilePath = program.Path(u"a/b/log"_s);
    program.Desktop.Expect(u"アイコンフォルダ"_s, Desktop::Answer::Yes);
    program.Desktop.Expect(u"キャッシュフォルダ"_s, Desktop::Answer::Yes);
    program.Desktop.Expect(u"エラーログフォルダ"_s, Desktop::Answer::Yes);
    QVERIFY(mdlSettings::CheckFolders(program.App));
    QVERIFY(program.Desktop.Verify());
    for (const QString& name : {u"image"_s, u"cache"_s, u"a/b/log"_s})
        QVERIFY2(QDir(program.Path(name)).exists(), qPrintable(name));

    const CShownBox& box = program.Desktop.Boxes.back();
    QCOMPARE(box.Text, u"エラーログフォルダ\"%1\"は存在しません。\n作成しますか？"_s.arg(program.Path(u"a/b/log/"_s)));
    QCOMPARE(box.Caption, u"Tavora Ver.0.50"_s);
    QCOMPARE(box.Icon, Desktop::Icon::Information);
    QCOMPARE(box.Buttons, Desktop::Buttons::YesNo);
}

void tst_Settings::FoldersRefused()
{
    CProgram program;
    mdlSettings::ReadSettings(program.App);
    program.Desktop.Expect(u"アイコンフォルダ"_s, Desktop::Answer::No);
    program.Desktop.Expect(u"キャッシュフォルダ"_s, Desktop::Answer::Yes); // asked all the same
    QVERIFY(!mdlSettings::CheckFolders(program.App));
    QVERIFY(program.Desktop.Verify());
    QVERIFY(!QDir(program.Path(u"image"_s)).exists());
    QCOMPARE(program.App.Option().IconFilePath, program.Path(u"image/"_s));
}

void tst_Settings::FolderOnADrive()
{
#ifdef Q_OS_WIN
    QSKIP("Drives exist here.");
#endif
    CProgram program("[Option]\r\nCacheFilePath=D:\\data\r\n");
    mdlSettings::ReadSettings(program.App);
    program.App.Option().IconFilePath = program.App.AppPath();
    program.Desktop.Expect(u"\"D:\\data\\\""_s, Desktop::Answer::Yes);
    QVERIFY(mdlSettings::CheckFolders(program.App)); // that it cannot be made is not reported
    QVERIFY(program.Desktop.Verify());
    QCOMPARE(program.App.Option().CacheFilePath, u"D:\\data\\"_s);
    QVERIFY(mdlSettings::WriteSettings(program.App));
    QVERIFY(program.Ini().contains("\r\nCacheFilePath=D:\\data\\\r\n"));
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_Settings.moc"
