// app/AppPath.h
// Where the database, the settings and the data folders live: beside the program or in the user's own folder.

#ifndef APP_APPPATH_H
#define APP_APPPATH_H

#include <QString>

namespace mdlAppPath
{

/// The folder to work in, with a trailing separator.
///
/// It is ProgramFolder when that already holds the database or the INI file of ExecutableName, or when it can be
/// written to and does not belong to the system (an unpacked archive, a memory stick); otherwise UserFolder, which is
/// made if it is missing.
QString Find(const QString& ProgramFolder, const QString& ExecutableName, const QString& UserFolder);

/// The user's data folder for this program, whether it exists or not. Takes a QCoreApplication.
QString UserDataFolder();

/// Full path of FileName in AppPath or, where it is not there, in ProgramFolder; empty when neither has it.
QString FindProgramFile(const QString& FileName, const QString& AppPath, const QString& ProgramFolder);

} // namespace mdlAppPath

#endif // APP_APPPATH_H
