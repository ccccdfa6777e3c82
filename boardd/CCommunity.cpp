// boardd/CCommunity.cpp
// Loading the boards; posting and deleting.

#include "boardd/CCommunity.h"

#include "boardd/Content.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace
{

constexpr int SaltSize = 16;
// Slow enough that the file of posts does not give away short passwords at once, quick enough for a form.
constexpr int ProofRounds = 20000;

QByteArray Digest(const QByteArray& Salt, const QByteArray& Password)
{
    QByteArray digest = Password;
    for (int round = 0; round < ProofRounds; ++round)
        digest = QCryptographicHash::hash(Salt + digest, QCryptographicHash::Sha256);
    return digest;
}

QByteArray MakeProof(const QByteArray& Password)
{
    if (Password.isEmpty())
        return {};
    QByteArray salt(SaltSize, '\0');
    for (char& byte : salt)
        byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
    return salt + Digest(salt, Password);
}

bool Proves(const QByteArray& Password, const QByteArray& Proof)
{
    return Proof.size() > SaltSize && Digest(Proof.left(SaltSize), Password) == Proof.mid(SaltSize);
}

CBoardLog MakeLog(const CBoardInfo& Board, int Messages)
{
    CBoardLog log(Board, Messages > 0 ? 0 : Board.MaxCount);
    if (Messages > 0) {
        for (CBoardMessage& message : mdlContent::MakeUp(Messages))
            log.Append(std::move(message));
        return log;
    }
    CContent content = mdlContent::ForBoard(Board);
    for (CBoardMessage& message : content.Past)
        log.Append(std::move(message));
    log.ClosePastLog();
    for (CBoardMessage& message : content.Served)
        log.Append(std::move(message));
    return log;
}

} // namespace

bool CCommunity::Load(const QString& DataFolder, int Messages)
{
    const std::vector<CBoardInfo>& boards = mdlBoards::All();
    m_proofs.resize(boards.size());
    for (std::size_t index = 0; index < boards.size(); ++index)
        m_logs.push_back(MakeLog(boards[index], index == 0 ? Messages : 0));
    m_persistent = !DataFolder.isEmpty();
    if (m_persistent && !m_store.Open(DataFolder))
        return false;
    for (const CPostEntry& entry : m_store.Entries()) {
        if (const auto index = mdlBoards::FindIdentifier(entry.Board))
            Fill(*index, entry);
    }
    return true;
}

void CCommunity::Fill(std::size_t Index, const CPostEntry& Entry)
{
    const qint32 number = Entry.Message.Number;
    if (Entry.What == CPostEntry::Kind::Deletion) {
        m_logs[Index].Remove(number);
        m_proofs[Index].remove(number);
    } else if (m_logs[Index].Append(Entry.Message) && !Entry.PasswordProof.isEmpty()) {
        m_proofs[Index].insert(number, Entry.PasswordProof);
    }
}

bool CCommunity::Keep(const CPostEntry& Entry)
{
    return !m_persistent || m_store.Append(Entry);
}

PostResult CCommunity::Post(std::size_t Index, CBoardMessage Message, const QByteArray& Password)
{
    const QByteArray proof = MakeProof(Password);
    const std::unique_lock lock(m_mutex);
    CBoardLog& log = m_logs[Index];
    const auto served = log.Messages();
    if (Message.ReplyTo > 0 && !log.Find(Message.ReplyTo))
        return PostResult::UnknownNumber;
    if (!served.empty() && served.back().Author == Message.Author && served.back().Title == Message.Title &&
        served.back().Body == Message.Body)
        return PostResult::SamePost;
    if (log.LastNumber() == std::numeric_limits<qint32>::max())
        return PostResult::NotStored;
    Message.Number = log.LastNumber() + 1;
    const CPostEntry entry{CPostEntry::Kind::Post, log.Info().Identifier, std::move(Message), proof};
    if (!Keep(entry))
        return PostResult::NotStored;
    Fill(Index, entry);
    return PostResult::Done;
}

PostResult CCommunity::Delete(std::size_t Index, qint32 Number, const QByteArray& Password)
{
    const std::unique_lock lock(m_mutex);
    CBoardLog& log = m_logs[Index];
    if (!log.Find(Number))
        return PostResult::UnknownNumber;
    if (!Proves(Password, m_proofs[Index].value(Number)))
        return PostResult::WrongPassword;
    CPostEntry entry{CPostEntry::Kind::Deletion, log.Info().Identifier, {}, {}};
    entry.Message.Number = Number;
    if (!Keep(entry))
        return PostResult::NotStored;
    Fill(Index, entry);
    return PostResult::Done;
}
