// app/Application.h
// What lives for the whole run: the database, the settings and their file, the cookies, the way to the user.

#ifndef APP_APPLICATION_H
#define APP_APPLICATION_H

#include "app/CIniFile.h"
#include "app/Settings.h"

#include <QString>

#include <memory>

class CCookieStore;
class Desktop;

namespace dao
{
class Database;
}

/// Made once by the start-up and handed down by reference; a test makes as many as it likes.
class Application
{
public:
    /// Shell stays the caller's and must outlive this object. AppPath gets a trailing separator if it has none.
    /// ExecutableName has neither folder nor extension; it names the INI and the cookie file.
    /// Reads the cookie file (a missing one is empty); opens no database and does not read the INI file.
    Application(Desktop& Shell, const QString& AppPath, const QString& ExecutableName);
    ~Application();

    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    Desktop& Shell;

    /// Folder of the database, the INI file and the data folders, with a trailing separator.
    const QString& AppPath() const { return m_appPath; }
    const QString& ExecutableName() const { return m_executableName; }

    /// "Tavora Ver.0.50": caption of the message boxes, end of the main window's caption.
    QString AppTitle() const;

    QString DatabaseFileName() const;
    QString IniFileName() const;
    QString CookieFileName() const;

    /// The open database; null while none is open.
    dao::Database* LogDB() const { return m_logDB.get(); }
    /// Takes Database over; one that was open before is closed.
    void SetLogDB(std::unique_ptr<dao::Database> Database);
    /// Hands the database to the caller; none is open afterwards.
    std::unique_ptr<dao::Database> ReleaseLogDB();

    CIniFile& SettingsIni() { return m_settingsIni; }
    Settings& Option() { return m_option; }
    const Settings& Option() const { return m_option; }
    CCookieStore& Cookies() { return *m_cookies; }

private:
    QString m_appPath;
    QString m_executableName;
    CIniFile m_settingsIni;
    Settings m_option;
    std::unique_ptr<CCookieStore> m_cookies;
    std::unique_ptr<dao::Database> m_logDB;
};

#endif // APP_APPLICATION_H
