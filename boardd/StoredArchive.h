// boardd/StoredArchive.h
// An LZH archive whose one member is stored as it is, for the past logs.

#ifndef BOARDD_STOREDARCHIVE_H
#define BOARDD_STOREDARCHIVE_H

#include <QByteArray>
#include <QDateTime>

namespace mdlStoredArchive
{
/// The archive with a member Name (at most 200 bytes) that holds Bytes (less than 4 GiB) and was written at Time (1980
/// to 2107).
QByteArray Make(const QByteArray& Name, const QByteArray& Bytes, const QDateTime& Time);
} // namespace mdlStoredArchive

#endif
