// boardd/Content.h
// The sample messages: reading the content files that are compiled in, and making messages up by the thousand.

#ifndef BOARDD_CONTENT_H
#define BOARDD_CONTENT_H

#include "boardd/Boards.h"
#include "boardd/CBoardMessage.h"

#include <QHash>
#include <QStringList>

#include <optional>
#include <vector>

/// Mail address and home page that a handle always posts with.
struct CPoster
{
    QString Mail;
    QString HomePage;
};

/// What one content file holds.
struct CContent
{
    std::vector<CBoardMessage> Past; ///< no longer served: the past log
    std::vector<CBoardMessage> Served;
    QStringList Errors; ///< one sentence for each line that could not be read
};

namespace mdlContent
{

using Posters = QHash<QString, CPoster>;

/// Reads lines "handle | mail | home page". Empty lines and lines that begin with "//" are skipped.
Posters ReadPosters(const QString& Text);

/// Reads messages. Each begins with "@@ number [>answered] yyyy/mm/dd hh:mm handle"; on an ordinary board the next line
/// is the title; the body follows up to the next "@@" line. A line "@@ past" ends the past log.
CContent Read(const QString& Text, const Posters& Known, bool TwoSided);

/// The content that is compiled in for a board.
CContent ForBoard(const CBoardInfo& Board);

/// Count messages numbered from 1, the same ones every time, in threads of different lengths.
std::vector<CBoardMessage> MakeUp(int Count);

} // namespace mdlContent

#endif
