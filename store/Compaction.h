// store/Compaction.h
// Writing the message database anew without the room that removed rows left.

#ifndef STORE_COMPACTION_H
#define STORE_COMPACTION_H

#include "platform/dao/Database.h"
#include "platform/dao/Progress.h"

#include <memory>
#include <optional>

namespace mdlStore
{

/// Closes Db, writes its file anew beside it, checks the new one, puts it in the old one's place and opens it again.
/// Nothing when that is done, otherwise the reason: the file is then as it was. Db is opened again in both cases, and
/// empty only when that fails too. 3059 when Report broke the work off, 3260 when another program has the file open,
/// 3027 when it is read-only, 3026 full disk, 3049 when it is damaged.
std::optional<dao::Error> CompactLogDatabase(std::unique_ptr<dao::Database>& Db, const dao::Progress& Report);

} // namespace mdlStore

#endif
