// store/Recovery.h
// A damaged message database and what can be had of it.

#ifndef STORE_RECOVERY_H
#define STORE_RECOVERY_H

#include "app/Application.h"
#include "platform/dao/Error.h"
#include "store/JobWindow.h"

#include <QString>

namespace mdlStore
{

/// Whether an error says that the file itself is damaged.
bool IsDamage(int ErrorNumber);

/// What the user is told when the engine refuses a command: number, description, and the way out where the file is
/// damaged. Lines end in CR LF.
QString RefusalText(const dao::Error& Refusal);

/// Asks whether everything readable is to be taken out of the damaged file, writes it to "log-recovered.mdb" (with a
/// number where that is taken) and tells how much it was and what is lost. Then asks whether to go on with it: the
/// damaged file is kept as "log.bak" (or with a number) and the recovered one takes its name. True when that was done.
///
/// The damaged file is never written to; nobody may have it open.
bool OfferRecovery(const QString& FileName, Application& App, const JobWindow& Jobs);

} // namespace mdlStore

#endif
