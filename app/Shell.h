// app/Shell.h
// Small services of the system for the rest of the program.

#ifndef APP_SHELL_H
#define APP_SHELL_H

#include <QString>

#include <optional>

namespace mdlShellServices
{

/// A new name in Folder (the system's temporary folder when that is empty or missing) that begins with at most three
/// characters of Prefix and ends in ".tmp".
///
/// Without Data the name is only reserved: no file stays behind. With it the file holds that one byte.
/// Empty when no file can be made there.
QString TempFileName(const QString& Folder, const QString& Prefix, std::optional<quint8> Data = std::nullopt);

} // namespace mdlShellServices

#endif // APP_SHELL_H
