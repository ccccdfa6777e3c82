// boardd/CPostStore.h
// The file that keeps what visitors posted: append-only, so that a crash can only cut off its end.

#ifndef BOARDD_CPOSTSTORE_H
#define BOARDD_CPOSTSTORE_H

#include "boardd/CBoardMessage.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <vector>

/// One thing that happened: a message was posted, or one was deleted again.
struct CPostEntry
{
    enum class Kind : quint8 { Post = 1, Deletion = 2 };

    Kind What = Kind::Post;
    QString Board;            ///< identifier of the board side
    CBoardMessage Message;    ///< of a deletion only the number
    QByteArray PasswordProof; ///< what a deletion has to match; empty: the message cannot be deleted

    bool operator==(const CPostEntry&) const = default;
};

/// The file is a row of records, each a mark, the length and the SHA-256 of what follows, and that. An entry is on the disk
/// (fsync) before Append() says so. One store at a time holds the file; the system frees it when the program dies.
class CPostStore
{
public:
    /// Longest entry that is written or believed, in bytes; far above the longest message a form takes.
    static constexpr quint32 MaxEntry = 1024 * 1024;

    CPostStore() = default;
    CPostStore(const CPostStore&) = delete;
    CPostStore& operator=(const CPostStore&) = delete;
    ~CPostStore();

    /// Opens or makes Folder/posts.dat and reads it. False with Error() set when the folder cannot be used or another
    /// server holds the file. An end that is no whole record is moved to posts.torn; damage further up is stepped over
    /// and left in place. Either is told in Warnings().
    [[nodiscard]] bool Open(const QString& Folder);
    /// Gives up the file.
    void Close();

    /// What Open() found, oldest first.
    const std::vector<CPostEntry>& Entries() const { return m_entries; }
    /// Adds Entry behind the others. False when it is not safely on the disk; the file is then as it was before.
    [[nodiscard]] bool Append(const CPostEntry& Entry);

    QString Error() const { return m_error; }
    QStringList Warnings() const { return m_warnings; }

private:
    bool OpenFile(const QString& FileName);
    void Read(const QByteArray& Bytes);
    bool DropEnd(const QByteArray& Bytes, qsizetype Good);
    bool WriteAll(const QByteArray& Bytes);

    int m_file = -1;
    qint64 m_length = 0; // bytes up to the end of the last whole record
    QString m_folder;
    std::vector<CPostEntry> m_entries;
    QString m_error;
    QStringList m_warnings;
};

#endif
