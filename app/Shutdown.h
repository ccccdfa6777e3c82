// app/Shutdown.h
// Taking the program down once the main window has gone.

#ifndef APP_SHUTDOWN_H
#define APP_SHUTDOWN_H

class Application;

/// Closes the database, writes the settings and saves the INI file, every section of it. Called once, after the main
/// window has put its own sections into the store. False when the INI file could not be written.
bool Shutdown(Application& App);

#endif // APP_SHUTDOWN_H
