// app/CFile.h
// The path of one file, taken apart and put together again, and what is done with the file behind it.

#ifndef APP_CFILE_H
#define APP_CFILE_H

#include <QDateTime>
#include <QString>

/// Two paths: the edited one, on which every part works, and the one where the file is on disk.
///
/// Both "\" and "/" separate folders. Setters of parts do nothing while the path is empty. A path with a drive letter
/// is only text outside Windows: no such file exists and none is made.
class CFile
{
public:
    CFile() = default;
    explicit CFile(const QString& FullPath) { SetFullPath(FullPath); }

    const QString& FullPath() const { return m_editedPath; }
    /// Sets the edited path and the place on disk.
    void SetFullPath(const QString& FullPath);

    /// First two characters ("C:").
    QString Drive() const;
    /// Replaces the first character by that of NewDrive.
    void SetDrive(const QString& NewDrive);
    /// Up to and with the last separator.
    QString Path() const;
    void SetPath(const QString& NewPath);
    /// Behind the last separator.
    QString Name() const;
    void SetName(const QString& NewName);
    /// Name up to its last point.
    QString NameNotExt() const;
    void SetNameNotExt(const QString& NewName);
    /// From the last point of the name on, the point included; "[DIR]" for an existing folder.
    QString Ext() const;
    /// NewExt comes without the point; empty takes the extension away. Does nothing for an existing folder.
    void SetExt(const QString& NewExt);
    /// The 8.3 form on Windows, elsewhere the path itself.
    QString ShortName() const;

    /// Bytes; 0 when there is no such file.
    qint64 Size() const;
    /// Local time as days since 1899-12-30; 0 when there is no such file. Where the file system keeps no creation time
    /// it is that of the last change.
    double DateCreated() const;
    double DateLastAccessed() const;
    double DateLastModified() const;

    /// Whether a file, not a folder, is there.
    bool IsExist() const;
    /// Whether the folder Path exists.
    bool IsExistDir() const;
    bool Delete() const;
    /// Moves the file from its place on disk to the edited path, over volumes too. Never replaces a file: false, and
    /// nothing moved, when one is there already or the path was not edited.
    [[nodiscard]] bool Move();
    /// Makes the folder Path with every missing parent.
    bool MakeDir() const;

private:
    QString m_editedPath;
    QString m_filePath;
};

#endif // APP_CFILE_H
