// store/JobWindow.h
// How a long job of the store comes before the user's eyes.

#ifndef STORE_JOBWINDOW_H
#define STORE_JOBWINDOW_H

#include "platform/dao/Progress.h"

#include <QString>

#include <functional>

namespace mdlStore
{

/// Opens a window that says what is being done; the function that it gives shows how far that is and tells whether the
/// user wants to go on. The window lives as long as that function. Empty: the job runs unseen.
using JobWindow = std::function<dao::Progress(const QString& Text)>;

} // namespace mdlStore

#endif
