// store/Convert.h
// An older message database becomes today's, with the user's consent.

#ifndef STORE_CONVERT_H
#define STORE_CONVERT_H

#include "app/Application.h"
#include "platform/dao/Database.h"
#include "store/JobWindow.h"

#include <QString>

#include <memory>

namespace mdlStore
{

/// Asks the user, closes Old, converts a copy of its file, and puts that in the file's place when it is complete. Until
/// then the file is as it was, whatever happens; afterwards it is kept beside the new one as "log-Ver.0.12.bak" (with
/// its own version). Rows that the new tables refuse are told. Nothing when the user declined or broke it off, or it
/// failed: the user knows.
std::unique_ptr<dao::Database> ConvertLogDatabase(std::unique_ptr<dao::Database> Old, const QString& Version,
                                                  Application& App, const JobWindow& Jobs);

} // namespace mdlStore

#endif
