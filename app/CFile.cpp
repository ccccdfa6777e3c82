// app/CFile.cpp
// The parts of a path by its last separator and the last point of its name; the file through Qt.

#include "app/CFile.h"

#include "app/Path.h"
#include "platform/text/DateTime.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

using namespace Qt::StringLiterals;

namespace
{

/// The file or folder at Path; one that does not exist when Path is no path of this machine.
QFileInfo InfoOf(const QString& Path)
{
    const QString disk = mdlPath::DiskPath(Path);
    return disk.isEmpty() ? QFileInfo() : QFileInfo(disk);
}

bool IsFile(const QFileInfo& Info) { return Info.exists() && !Info.isDir(); }

double Serial(const QFileInfo& Info, QFileDevice::FileTime Which)
{
    if (!IsFile(Info))
        return 0;
    const QDateTime time = Info.fileTime(Which);
    return text::ToSerial((time.isValid() ? time : Info.lastModified()).toLocalTime());
}

} // namespace

void CFile::SetFullPath(const QString& FullPath)
{
    m_editedPath = FullPath;
    m_filePath = FullPath;
}

QString CFile::Drive() const { return m_editedPath.left(2); }

void CFile::SetDrive(const QString& NewDrive)
{
    if (!m_editedPath.isEmpty() && !NewDrive.isEmpty())
        m_editedPath[0] = NewDrive[0];
}

QString CFile::Path() const { return m_editedPath.left(mdlPath::LastSeparator(m_editedPath) + 1); }

void CFile::SetPath(const QString& NewPath)
{
    if (!m_editedPath.isEmpty())
        m_editedPath = mdlPath::AddBackslash(NewPath) + Name();
}

QString CFile::Name() const { return m_editedPath.mid(mdlPath::LastSeparator(m_editedPath) + 1); }

void CFile::SetName(const QString& NewName)
{
    if (!m_editedPath.isEmpty())
        m_editedPath = Path() + NewName;
}

QString CFile::NameNotExt() const
{
    const QString name = Name();
    return name.left(name.lastIndexOf(u'.')); // -1, no point, takes all of it
}

void CFile::SetNameNotExt(const QString& NewName)
{
    if (!m_editedPath.isEmpty())
        m_editedPath = Path() + NewName + Ext();
}

QString CFile::Ext() const
{
    if (InfoOf(m_editedPath).isDir())
        return u"[DIR]"_s;
    const QString name = Name();
    const qsizetype point = name.lastIndexOf(u'.');
    return point < 0 ? QString() : name.mid(point);
}

void CFile::SetExt(const QString& NewExt)
{
    if (m_editedPath.isEmpty() || InfoOf(m_editedPath).isDir())
        return;
    const QString ext = NewExt.isEmpty() ? QString() : u'.' + NewExt;
    m_editedPath = Path() + NameNotExt() + ext;
}

QString CFile::ShortName() const
{
#ifdef Q_OS_WIN
    wchar_t name[MAX_PATH];
    const DWORD length = GetShortPathNameW(reinterpret_cast<const wchar_t*>(m_editedPath.utf16()), name, MAX_PATH);
    if (length > 0 && length < MAX_PATH)
        return QString::fromWCharArray(name, static_cast<qsizetype>(length));
#endif
    return m_editedPath;
}

qint64 CFile::Size() const
{
    const QFileInfo info = InfoOf(m_editedPath);
    return IsFile(info) ? info.size() : 0;
}

double CFile::DateCreated() const { return Serial(InfoOf(m_editedPath), QFileDevice::FileBirthTime); }

double CFile::DateLastAccessed() const { return Serial(InfoOf(m_editedPath), QFileDevice::FileAccessTime); }

double CFile::DateLastModified() const { return Serial(InfoOf(m_editedPath), QFileDevice::FileModificationTime); }

bool CFile::IsExist() const { return IsFile(InfoOf(m_editedPath)); }

bool CFile::IsExistDir() const { return InfoOf(Path()).isDir(); }

bool CFile::Delete() const { return QFile::remove(mdlPath::DiskPath(m_editedPath)); }

bool CFile::Move()
{
    const QString from = mdlPath::DiskPath(m_filePath);
    const QString to = mdlPath::DiskPath(m_editedPath);
    if (m_editedPath == m_filePath || from.isEmpty() || to.isEmpty() || !QFile::rename(from, to))
        return false;
    m_filePath = m_editedPath;
    return true;
}

bool CFile::MakeDir() const
{
    const QString folder = mdlPath::DiskPath(Path());
    return !folder.isEmpty() && QDir().mkpath(folder);
}
