// app/Shutdown.cpp
// The database first, so that nothing is still open should the settings fail.

#include "app/Shutdown.h"

#include "app/Application.h"
#include "platform/dao/Database.h"

bool Shutdown(Application& App)
{
    App.SetLogDB(nullptr);
    const bool isOptionSaved = mdlSettings::WriteSettings(App);
    return App.SettingsIni().Save(QString()) && isOptionSaved;
}
