// platform/dao/FileSync.cpp
// fsync and rename as the system offers them; the toolkit has neither.

#include "platform/dao/FileSync.h"

#include "platform/dao/Error.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace dao::mdlFileSync
{

namespace
{

[[noreturn]] void Throw(int SystemError, const QString& FileName)
{
    if (SystemError == ENOSPC || SystemError == EDQUOT || SystemError == EFBIG)
        throw jetsql::MakeError(3026);
    if (SystemError == EACCES || SystemError == EPERM || SystemError == EROFS)
        throw jetsql::MakeError(3051, {FileName});
    throw jetsql::MakeError(3043);
}

} // namespace

void SyncFile(const QString& FileName)
{
    const int file = ::open(QFile::encodeName(FileName).constData(), O_RDWR | O_CLOEXEC);
    if (file < 0)
        Throw(errno, FileName);
    const int error = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    if (error != 0)
        Throw(error, FileName);
}

void SyncFolderOf(const QString& FileName)
{
    const QString path = QFileInfo(FileName).absolutePath();
    const int folder = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

void Rename(const QString& From, const QString& To)
{
    if (std::rename(QFile::encodeName(From).constData(), QFile::encodeName(To).constData()) != 0)
        Throw(errno, To);
}

bool AddName(const QString& FileName, const QString& SecondName)
{
    return ::link(QFile::encodeName(FileName).constData(), QFile::encodeName(SecondName).constData()) == 0;
}

} // namespace dao::mdlFileSync
