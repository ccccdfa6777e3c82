// app/Main.cpp
// Brings the program up: single instance, splash, database, settings, main window.

#include "app/AppPath.h"
#include "app/Application.h"
#include "app/Settings.h"
#include "app/Version.h"
#include "controls/JobWindow.h"
#include "mainwin/CIconSet.h"
#include "mainwin/CTerminationSignals.h"
#include "mainwin/frmSplash.h"
#include "mainwin/frmView.h"
#include "platform/desktop/CDesktopQt.h"
#include "platform/desktop/CSingleInstance.h"
#include "store/Store.h"

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QSessionManager>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace
{

// The toolkit's own texts (buttons of boxes, menus of entry fields) in Japanese, whatever language the session has.
void LoadTranslations(QApplication& App)
{
    QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan));
    auto* translator = new QTranslator(&App);
    if (translator->load(u"qtbase_ja"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        App.installTranslator(translator);
}

// Without a Japanese session the system may fill in Han characters from a Chinese face, which are drawn differently.
void PreferJapaneseFaces()
{
    QFont font = QApplication::font();
    font.setFamilies({font.family(), u"Noto Sans CJK JP"_s, u"IPAexGothic"_s, u"IPAPGothic"_s, u"Yu Gothic UI"_s,
                      u"Hiragino Sans"_s});
    QApplication::setFont(font);
}

void SetUpToolkit(QApplication& App)
{
    QCoreApplication::setApplicationName(mdlVersion::ProductName());
    QCoreApplication::setApplicationVersion(VersionString(true));
    QGuiApplication::setDesktopFileName(u"tavora"_s);
    QGuiApplication::setWindowIcon(CIconSet::Picture(u"MAINICON"_s));
    QApplication::setQuitOnLastWindowClosed(false); // hidden windows and a receive on its way out still count
    LoadTranslations(App);
    PreferJapaneseFaces();
}

// False: there is no usable database; the user knows why.
bool OpenDatabase(Application& App, QWidget& Owner)
{
    const auto jobs = [&Owner](const QString& Text) { return mdlJobWindow::Open(&Owner, Text); };
    App.SetLogDB(mdlStore::OpenLogDatabase(App.DatabaseFileName(), App, jobs));
    if (App.LogDB())
        return true;
    App.Shell.MessageBox(u"プログラムを終了します。"_s, App.AppTitle(), Desktop::Icon::Information);
    return false;
}

void LoadSettings(Application& App)
{
    App.SettingsIni().Load(App.IniFileName());
    mdlSettings::ReadSettings(App);
    mdlSettings::InitWebSearchList(App);
    mdlSettings::CheckFolders(App);
}

int RunWindow(QApplication& Toolkit, CSingleInstance& Instance, CDesktopQt& Shell, Application& App, frmSplash& Splash)
{
    frmView window(App);
    CTerminationSignals signalsOfSystem;
    Shell.SetParent(&window);
    QObject::connect(&window, &frmView::Closed, &Toolkit, &QCoreApplication::quit, Qt::QueuedConnection);
    QObject::connect(&Instance, &CSingleInstance::ActivateRequested, &window, &frmView::ShowMainWindow);
    QObject::connect(&signalsOfSystem, &CTerminationSignals::Requested, &window, &frmView::Quit);
    QObject::connect(&Toolkit, &QGuiApplication::commitDataRequest, &window, [&window] { window.Quit(); });
    const bool isOpen = window.Open();
    Splash.close();
    return isOpen ? QApplication::exec() : 0;
}

int Main(QApplication& Toolkit)
{
    const QFileInfo program(QCoreApplication::applicationFilePath());
    CSingleInstance instance(program.filePath());
    if (instance.ActivatePrevInstance())
        return 0;
    frmSplash splash;
    splash.show();
    QCoreApplication::processEvents();
    CDesktopQt shell;
    const QString name = program.completeBaseName();
    Application app(shell, mdlAppPath::Find(program.path(), name, mdlAppPath::UserDataFolder()), name);
    shell.SetCaption(app.AppTitle());
    shell.SetParent(&splash);
    if (!OpenDatabase(app, splash))
        return 0;
    LoadSettings(app);
    return RunWindow(Toolkit, instance, shell, app, splash);
}

} // namespace

int main(int Count, char* Arguments[])
{
    QApplication toolkit(Count, Arguments);
    SetUpToolkit(toolkit);
    return Main(toolkit);
}
