// mainwin/mdlErrorLog.h
// Keeps the records that could not be read: each board has a file for them.

#ifndef MAINWIN_MDLERRORLOG_H
#define MAINWIN_MDLERRORLOG_H

#include "app/Result.h"

class Application;

namespace mdlErrorLog
{

/// Appends LogText and the line that separates records to the error-log file of board BBS_ID, in code page 932.
/// Fails with the text for the user when the board is unknown or the file cannot be written.
CResult Append(Application& App, qint32 BBS_ID, const QString& LogText);

} // namespace mdlErrorLog

#endif
