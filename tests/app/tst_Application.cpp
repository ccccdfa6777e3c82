// tests/app/tst_Application.cpp
// What lives for the whole run: names of files, versions, the database, and taking it all down.

#include "app/Application.h"
#include "app/Result.h"
#include "app/Shutdown.h"
#include "platform/dao/Database.h"
#include "platform/net/CCookieStore.h"
#include "tests/support/CScriptedDesktop.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Application : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Names();
    void CookiesAreKept();
    void ShutdownWritesEverySection();
    void ShutdownWithoutAFile();
    void Results();
};

void tst_Application::Names()
{
    const QTemporaryDir folder;
    CScriptedDesktop desktop;
    const Application app(desktop, folder.path(), u"Reader 2"_s);
    QCOMPARE(app.AppPath(), folder.path() + u'/');
    QCOMPARE(app.IniFileName(), folder.filePath(u"Reader 2.ini"_s));
    QCOMPARE(app.CookieFileName(), folder.filePath(u"Reader 2.cookies"_s));
    QCOMPARE(app.DatabaseFileName(), folder.filePath(u"log.mdb"_s));
    QCOMPARE(&app.Shell, &desktop);

    const Application root(desktop, folder.path() + u'/', u"tavora"_s);
    QCOMPARE(root.AppPath(), folder.path() + u'/');
}

void tst_Application::CookiesAreKept()
{
    const QTemporaryDir folder;
    CScriptedDesktop desktop;
    const QUrl url(u"http://localhost/cgi-bin/a.cgi"_s);
    {
        Application app(desktop, folder.path(), u"tavora"_s);
        QVERIFY(app.Cookies().Set(url, "name", "value; expires=Wed, 01-Jan-2098 00:00:00 GMT"));
    }
    Application again(desktop, folder.path(), u"tavora"_s);
    QCOMPARE(again.Cookies().Value(url, "name"), std::optional<QByteArray>("value"));
    Application other(desktop, folder.path(), u"other"_s);
    QVERIFY(!other.Cookies().Value(url, "name"));
}

void tst_Application::ShutdownWritesEverySection()
{
    const QTemporaryDir folder;
    CScriptedDesktop desktop;
    Application app(desktop, folder.path(), u"tavora"_s);
    app.SetLogDB(dao::Database::Create(app.DatabaseFileName()));
    app.SettingsIni().Load(app.IniFileName());
    mdlSettings::ReadSettings(app);
    app.Option().BBS_ID = 12;
    app.SettingsIni().SetNowSection(u"Position"_s);
    app.SettingsIni().SetData(u"Left"_s, u"150"_s);

    QVERIFY(Shutdown(app));
    QVERIFY(app.LogDB() == nullptr);
    QFile::remove(folder.filePath(u"log.mdb"_s)); // nothing holds it any more
    CIniFile ini;
    ini.Load(app.IniFileName());
    QCOMPARE(ini.Sections(), QStringList({u"Option"_s, u"Position"_s}));
    ini.SetNowSection(u"Option"_s);
    QCOMPARE(ini.Data(u"BBS_ID"_s), u"12"_s);
    ini.SetNowSection(u"Position"_s);
    QCOMPARE(ini.Data(u"Left"_s), u"150"_s);
}

void tst_Application::ShutdownWithoutAFile()
{
    const QTemporaryDir folder;
    CScriptedDesktop desktop;
    Application app(desktop, folder.path(), u"tavora"_s);
    app.SettingsIni().Load(folder.filePath(u"missing/tavora.ini"_s));
    QVERIFY(!Shutdown(app)); // says so, and does not ask or crash
    QVERIFY(!Shutdown(app));
}

void tst_Application::Results()
{
    QVERIFY(CResult::Ok());
    QVERIFY(CResult::Ok().While(u"移動中"_s));
    const CResult failed = CResult::Failed(u"ファイルがありません。"_s).While(u"移動できません。"_s);
    QVERIFY(!failed);
    QCOMPARE(failed.Message(), u"移動できません。\nファイルがありません。"_s);
}

QTEST_GUILESS_MAIN(tst_Application)
#include "tst_Application.moc"
