// app/Application.cpp
// Names of the files beside the program, and the one database connection.

#include "app/Application.h"

#include "app/Path.h"
#include "app/Version.h"
#include "platform/dao/Database.h"
#include "platform/net/CCookieStore.h"

using namespace Qt::StringLiterals;

Application::Application(Desktop& Shell, const QString& AppPath, const QString& ExecutableName)
    : Shell(Shell)
    , m_appPath(mdlPath::AddBackslash(AppPath))
    , m_executableName(ExecutableName)
    , m_cookies(std::make_unique<CCookieStore>(CookieFileName()))
{
    m_cookies->Load();
}

Application::~Application() = default;

QString Application::AppTitle() const { return mdlVersion::ProductName() + u' ' + VersionString(false); }

QString Application::DatabaseFileName() const { return m_appPath + u"log.mdb"_s; }

QString Application::IniFileName() const { return m_appPath + m_executableName + u".ini"_s; }

QString Application::CookieFileName() const { return m_appPath + m_executableName + u".cookies"_s; }

void Application::SetLogDB(std::unique_ptr<dao::Database> Database) { m_logDB = std::move(Database); }

std::unique_ptr<dao::Database> Application::ReleaseLogDB() { return std::move(m_logDB); }
