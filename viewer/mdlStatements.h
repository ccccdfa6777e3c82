// viewer/mdlStatements.h
// The statements that the query dialog begins with.

#ifndef VIEWER_MDLSTATEMENTS_H
#define VIEWER_MDLSTATEMENTS_H

#include <QString>

namespace mdlStatements
{

/// All messages of a board, to be narrowed down by the user. Lines end in CR LF.
QString AllMessages(qint32 BBS_ID);
/// The messages of a board whose body holds Text, whatever letters that is made of.
QString MessagesWith(qint32 BBS_ID, const QString& Text);

} // namespace mdlStatements

#endif // VIEWER_MDLSTATEMENTS_H
