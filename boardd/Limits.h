// boardd/Limits.h
// How much the server takes from a visitor.

#ifndef BOARDD_LIMITS_H
#define BOARDD_LIMITS_H

#include <QtGlobal>

/// Lengths of texts are in UTF-16 units, as the forms count them.
namespace Limits
{

inline constexpr int Name = 40;
inline constexpr int Mail = 100;
inline constexpr int HomePage = 200;
inline constexpr int Password = 20;
inline constexpr int Title = 100;
inline constexpr int Body = 20000;
/// One-liners of the two-sided board.
inline constexpr int ShortBody = 400;

/// Bytes of a posted form; the longest body in a form with every character as an entity fits.
inline constexpr qint64 FormBytes = 256 * 1024;
/// Bytes of a request line with all its header lines; sixteen boards' cookies need a tenth of it.
inline constexpr qint64 HeaderBytes = 64 * 1024;

/// Seconds for a request to come in whole, so that a dripping one does not hold a thread.
inline constexpr int RequestSeconds = 20;
/// Seconds that an idle connection is kept open for the next request.
inline constexpr int IdleSeconds = 30;
/// Requests on one connection before it is closed: a receive of any size stays on one.
inline constexpr int RequestsPerConnection = 100000;
/// Connections served at the same time; each idle one holds a thread.
inline constexpr int Connections = 64;

} // namespace Limits

#endif
