// viewer/mdlBodyLines.h
// A message's text as lines with their kinds.

#ifndef VIEWER_MDLBODYLINES_H
#define VIEWER_MDLBODYLINES_H

#include "viewer/viewer_host.h"

#include <QStringView>

namespace mdlBodyLines
{

/// A quotation begins with "|", ">" or "＞", a comment with "#" or "＃", after any half- or full-width blanks.
ViewerHost::LineKind KindOf(QStringView Line);

/// The pieces of Body between its CR LF; an empty body is one empty line.
std::vector<ViewerHost::BodyLine> Split(const QString& Body);

} // namespace mdlBodyLines

#endif // VIEWER_MDLBODYLINES_H
