// boardd/SitePages.h
// The community's pages around the boards: entrance, usage, past logs, the reader's own page.

#ifndef BOARDD_SITEPAGES_H
#define BOARDD_SITEPAGES_H

#include "boardd/CCommunity.h"

namespace mdlSitePages
{

/// The entrance with links to all boards and their counts.
QByteArray Index(const CCommunity& Community);
/// The page /howto/<Name>.html; empty when there is no such page.
QByteArray HowTo(QStringView Name);
/// The list of past-log files.
QByteArray PastLogs(const CCommunity& Community);
/// The page about the reader program.
QByteArray Program();
/// The page of a wrong address.
QByteArray NotFound();

/// "keyaki_kako": name of the files that hold a board's past log, a text (.txt) and an archive with that text (.lzh).
QString PastLogName(const CBoardInfo& Board);

} // namespace mdlSitePages

#endif
