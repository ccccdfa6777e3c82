// platform/dao/CReplacement.h
// A database file in a new version, made beside the old one and put in its place when it is complete.

#ifndef DAO_CREPLACEMENT_H
#define DAO_CREPLACEMENT_H

#include "platform/dao/CConnection.h"
#include "platform/dao/Progress.h"

#include <QString>

#include <memory>

namespace dao
{

/// While it lives nobody else gets at the old file, which stays complete under its own name until PutInPlace: a crash,
/// a full disk or an error at any point leaves the old file or the new one, never half of either.
///
/// All members throw Error. The old file must not be open in this process, also not as a plain file: closing it would
/// take the lock away.
class CReplacement
{
public:
    /// Takes the old file for itself and makes an empty NewName (in the same folder) with the same rights. 3260 when
    /// somebody else has the file open, 3027 when it is read-only, 3204 when there is something of the new name, and
    /// what Database::Open throws. Pages that wait in the log are moved into the old file.
    CReplacement(const QString& FileName, const QString& NewName);
    /// Removes the new file unless it was put in place.
    ~CReplacement();
    CReplacement(const CReplacement&) = delete;
    CReplacement& operator=(const CReplacement&) = delete;

    /// Makes the new file a copy, page by page.
    void Copy(const Progress& Report);
    /// Writes the new file without the room that removed rows left, and checks it: 3049 when the old file turns out to
    /// be damaged. 3026 full disk, 3059 broken off.
    void Compact(const Progress& Report);
    /// Leaves the old file under a second name too, which must be free. Throws like Copy.
    void KeepAs(const QString& BackupName);
    /// Brings the new file, which nobody may have open, onto the disk and renames it over the old one.
    void PutInPlace();

private:
    void CopyTo(const QString& Destination, const Progress& Report);

    QString m_fileName;
    QString m_newName;
    std::unique_ptr<CConnection> m_old;
    bool m_isDone = false;
};

/// Writes a compacted, checked copy of Source as Destination, which must not exist. Throws like the members above;
/// Source is unchanged but for its log, and nothing of Destination is left after an error.
void CompactDatabase(const QString& Source, const QString& Destination, const Progress& Report = {});

} // namespace dao

#endif
