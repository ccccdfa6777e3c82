// load/PageCache.h
// The file that keeps a board's page, so that a run within a day need not fetch it again.

#ifndef LOAD_PAGECACHE_H
#define LOAD_PAGECACHE_H

#include <QByteArray>
#include <QString>

#include <optional>

namespace mdlPageCache
{

/// The page in FileName when it was written less than a day ago; nothing otherwise.
std::optional<QByteArray> Read(const QString& FileName);

/// Replaces FileName by Page as code page 932, whole or not at all. False when the folder is missing or cannot be
/// written.
bool Write(const QString& FileName, const QByteArray& Page);

} // namespace mdlPageCache

#endif // LOAD_PAGECACHE_H
