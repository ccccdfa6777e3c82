// tests/support/Files.h
// Whole files in one line.

#ifndef SUPPORT_FILES_H
#define SUPPORT_FILES_H

#include <QByteArray>
#include <QString>

namespace mdlFiles
{

/// The bytes of a file, "(no file)" when there is none.
QByteArray Read(const QString& FileName);

/// Writes Bytes in place of what was there; ends the program where that cannot be.
void Write(const QString& FileName, const QByteArray& Bytes);

} // namespace mdlFiles

#endif
