// tests/support/Files.cpp
// Reads and writes whole files.

#include "tests/support/Files.h"

#include <QFile>

namespace mdlFiles
{

QByteArray Read(const QString& FileName)
{
    QFile file(FileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

void Write(const QString& FileName, const QByteArray& Bytes)
{
    QFile file(FileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(Bytes) != Bytes.size() || !file.flush())
        qFatal("the sample file %s cannot be written", qPrintable(FileName));
}

} // namespace mdlFiles
