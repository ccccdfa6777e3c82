// boardd/CPostStore.cpp
// Reading, mending and extending the file of posts.

#include "boardd/CPostStore.h"

#include "boardd/Record.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QtEndian>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr QByteArrayView RecordMark = "TVP1";
constexpr qsizetype HashSize = 32;
constexpr qsizetype HeadSize = 4 + 4 + HashSize;

QByteArray Pack(const CPostEntry& Entry)
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_0);
    const CBoardMessage& message = Entry.Message;
    stream << static_cast<quint8>(Entry.What) << Entry.Board << message.Number << message.ReplyTo
           << message.Posted.toString(u"yyyy/MM/dd HH:mm"_s) << message.Title << message.HomePage << message.Mail
           << message.Author << message.Body << Entry.PasswordProof;
    return payload;
}

std::optional<CPostEntry> Unpack(const QByteArray& Payload)
{
    QDataStream stream(Payload);
    stream.setVersion(QDataStream::Qt_6_0);
    CPostEntry entry;
    CBoardMessage& message = entry.Message;
    quint8 kind = 0;
    QString posted;
    stream >> kind >> entry.Board >> message.Number >> message.ReplyTo >> posted >> message.Title >> message.HomePage >>
        message.Mail >> message.Author >> message.Body >> entry.PasswordProof;
    if (stream.status() != QDataStream::Ok || kind < 1 || kind > 2)
        return std::nullopt;
    entry.What = static_cast<CPostEntry::Kind>(kind);
    message.Posted = mdlRecord::ReadWallClock(posted);
    if (message.Number < 1 || (entry.What == CPostEntry::Kind::Post && !message.Posted.isValid()))
        return std::nullopt;
    return entry;
}

QByteArray Frame(const QByteArray& Payload)
{
    QByteArray length(4, '\0');
    qToLittleEndian(static_cast<quint32>(Payload.size()), length.data());
    return RecordMark.toByteArray() + length + QCryptographicHash::hash(Payload, QCryptographicHash::Sha256) + Payload;
}

/// The payload of the whole, unharmed record at From; nullopt when there is none.
std::optional<QByteArray> PayloadAt(const QByteArray& Bytes, qsizetype From)
{
    const QByteArrayView rest = QByteArrayView(Bytes).sliced(From);
    if (rest.size() < HeadSize || !rest.startsWith(RecordMark))
        return std::nullopt;
    const auto length = qFromLittleEndian<quint32>(rest.data() + 4);
    if (length > CPostStore::MaxEntry || static_cast<qsizetype>(length) > rest.size() - HeadSize)
        return std::nullopt;
    QByteArray payload = rest.sliced(HeadSize, static_cast<qsizetype>(length)).toByteArray();
    if (QCryptographicHash::hash(payload, QCryptographicHash::Sha256) != rest.sliced(8, HashSize))
        return std::nullopt;
    return payload;
}

QString SystemText(int ErrorNumber)
{
    return QString::fromLocal8Bit(std::strerror(ErrorNumber));
}

} // namespace

CPostStore::~CPostStore()
{
    Close();
}

void CPostStore::Close()
{
    if (m_file >= 0)
        ::close(m_file);
    m_file = -1;
}

bool CPostStore::OpenFile(const QString& FileName)
{
    m_file = ::open(QFile::encodeName(FileName).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_file < 0) {
        m_error = u"投稿ファイル %1 を開けません（%2）。"_s.arg(FileName, SystemText(errno));
        return false;
    }
    if (::flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        m_error = u"データフォルダー %1 は、動作中の別の tavora-boardd が使っています。"_s.arg(m_folder);
        Close();
        return false;
    }
    // A file that was just made must not vanish with the folder's old listing.
    if (const int folder = ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_CLOEXEC); folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return true;
}

bool CPostStore::Open(const QString& Folder)
{
    Close();
    m_entries.clear();
    m_warnings.clear();
    m_error.clear();
    m_folder = Folder;
    if (!QDir().mkpath(Folder)) {
        m_error = u"データフォルダー %1 を作れません。"_s.arg(Folder);
        return false;
    }
    const QString fileName = QDir(Folder).filePath(u"posts.dat"_s);
    if (!OpenFile(fileName))
        return false;
    QFile reader;
    if (!reader.open(m_file, QIODevice::ReadOnly)) {
        m_error = u"投稿ファイル %1 を読めません。"_s.arg(fileName);
        Close();
        return false;
    }
    Read(reader.readAll());
    return m_error.isEmpty();
}

void CPostStore::Read(const QByteArray& Bytes)
{
    qsizetype at = 0;
    while (at < Bytes.size()) {
        if (const auto payload = PayloadAt(Bytes, at)) {
            at += HeadSize + payload->size();
            if (auto entry = Unpack(*payload))
                m_entries.push_back(std::move(*entry));
            else
                m_warnings += u"投稿ファイルに読めない記録があったので、飛ばしました。"_s;
            continue;
        }
        qsizetype next = Bytes.indexOf(RecordMark, at + 1);
        while (next >= 0 && !PayloadAt(Bytes, next))
            next = Bytes.indexOf(RecordMark, next + 1);
        if (next < 0)
            break;
        m_warnings += u"投稿ファイルの途中の %1 バイトが壊れていたので、飛ばしました。"_s.arg(next - at);
        at = next;
    }
    m_length = at;
    if (at < Bytes.size() && !DropEnd(Bytes, at)) {
        m_error = u"投稿ファイルの壊れた末尾を切り離せません。"_s;
        Close();
    }
}

bool CPostStore::DropEnd(const QByteArray& Bytes, qsizetype Good)
{
    QFile torn(QDir(m_folder).filePath(u"posts.torn"_s));
    const QByteArray end = Bytes.sliced(Good);
    if (!torn.open(QIODevice::WriteOnly | QIODevice::Append) || torn.write(end) != end.size() || !torn.flush())
        return false;
    if (::ftruncate(m_file, Good) != 0 || ::fsync(m_file) != 0)
        return false;
    m_warnings += u"投稿ファイルの末尾の書きかけ %1 バイトを posts.torn に移しました。"_s.arg(end.size());
    return true;
}

bool CPostStore::WriteAll(const QByteArray& Bytes)
{
    qsizetype done = 0;
    while (done < Bytes.size()) {
        const auto written = ::pwrite(m_file, Bytes.constData() + done, static_cast<size_t>(Bytes.size() - done),
                                      m_length + done);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        done += written;
    }
    return ::fsync(m_file) == 0;
}

bool CPostStore::Append(const CPostEntry& Entry)
{
    const QByteArray record = Frame(Pack(Entry));
    if (m_file < 0 || record.size() > HeadSize + static_cast<qsizetype>(MaxEntry))
        return false;
    if (WriteAll(record)) {
        m_length += record.size();
        return true;
    }
    // Half a record at the end would be cut off at the next start anyway; what matters is that the next one does not follow it.
    if (::ftruncate(m_file, m_length) != 0)
        Close();
    return false;
}
