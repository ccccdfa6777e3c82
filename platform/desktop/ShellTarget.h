// platform/desktop/ShellTarget.h
// Which text out of a message may be handed to the desktop, and in which form.

#ifndef DESKTOP_SHELLTARGET_H
#define DESKTOP_SHELLTARGET_H

#include <QString>

#include <optional>

namespace mdlShell
{
/// Longest address that is handed on, in UTF-16 units; browsers take no more than about this.
inline constexpr qsizetype MaxTargetLength = 4096;

/// The address to open for a text that came from outside, or nothing when it must not be opened.
///
/// Taken are http, https and ftp with a host, and mailto with an address; a bare "www.…" becomes "http://www.…".
/// Blanks around it are dropped. Refused are all other schemes, paths of files, control characters, and mail links
/// that would attach a file of the reader's own.
std::optional<QString> AcceptTarget(const QString& Target);
} // namespace mdlShell

#endif
