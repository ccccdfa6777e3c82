// app/Shell.cpp
// Temporary names through Qt, which makes the file and the name in one step.

#include "app/Shell.h"

#include "app/Path.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

QString mdlShellServices::TempFileName(const QString& Folder, const QString& Prefix, std::optional<quint8> Data)
{
    const QString asked = mdlPath::DiskPath(Folder);
    const QString folder = !asked.isEmpty() && QFileInfo(asked).isDir() ? asked : QDir::tempPath();
    QTemporaryFile file(mdlPath::AddBackslash(folder) + Prefix.left(3) + u"XXXXXX.tmp"_s);
    file.setAutoRemove(!Data);
    if (!file.open())
        return {};
    const char byte = static_cast<char>(Data.value_or(0));
    if (Data && (file.write(&byte, 1) != 1 || !file.flush())) {
        file.remove();
        return {};
    }
    return file.fileName();
}
