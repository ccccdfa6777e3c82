// boardd/CCommunity.h
// All boards together: what they hold, and the one place where a message is added or taken away.

#ifndef BOARDD_CCOMMUNITY_H
#define BOARDD_CCOMMUNITY_H

#include "boardd/CBoardLog.h"
#include "boardd/CPostStore.h"

#include <mutex>
#include <shared_mutex>

/// What came of a post or a deletion.
enum class PostResult { Done, SamePost, UnknownNumber, WrongPassword, NotStored };

/// Safe to use from many threads: readers share, a writer is alone.
class CCommunity
{
public:
    /// Fills the boards from the compiled-in content and from the posts in DataFolder (empty: posts live in memory
    /// only). Messages above 0 fills the first board with that many made-up messages instead, all of them served.
    /// False with Error() set when the folder cannot be used. To be called once, before anything else.
    [[nodiscard]] bool Load(const QString& DataFolder, int Messages);

    QString Error() const { return m_store.Error(); }
    QStringList Warnings() const { return m_store.Warnings(); }

    /// Calls Reader with the log of board Index (position in mdlBoards::All()) while nobody may change it. What Reader
    /// returns must not point into the log.
    template<typename Reader>
    auto Read(std::size_t Index, Reader&& Call) const
    {
        const std::shared_lock lock(m_mutex);
        return Call(static_cast<const CBoardLog&>(m_logs[Index]));
    }

    /// Gives Message the next number and keeps it; Password may be empty. A second message with the same author, title
    /// and body as the board's newest is taken for an impatient second click.
    [[nodiscard]] PostResult Post(std::size_t Index, CBoardMessage Message, const QByteArray& Password);
    /// Takes a posted message away again. Only messages posted with a password can be.
    [[nodiscard]] PostResult Delete(std::size_t Index, qint32 Number, const QByteArray& Password);

private:
    void Fill(std::size_t Index, const CPostEntry& Entry);
    bool Keep(const CPostEntry& Entry);

    mutable std::shared_mutex m_mutex;
    std::vector<CBoardLog> m_logs;
    std::vector<QHash<qint32, QByteArray>> m_proofs; // per board: number → proof of the password
    CPostStore m_store;
    bool m_persistent = false;
};

#endif
