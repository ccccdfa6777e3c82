// boardd/Boards.h
// The boards of the sample community: names, scripts and sizes.

#ifndef BOARDD_BOARDS_H
#define BOARDD_BOARDS_H

#include <QString>

#include <optional>
#include <vector>

/// One board, or one side of the two-sided board. A side has its own messages and numbers.
struct CBoardInfo
{
    QString Identifier;  ///< names the content file, the icon and the past-log file
    QString Script;      ///< "keyaki" of /cgi-bin/keyaki.cgi; the two sides share one
    QString HowTo;       ///< "keyaki" of /howto/keyaki.html
    QString Name;
    QString Topic;       ///< one line on what the board is for
    int MaxCount = 0;    ///< how many messages stay in the log; older ones move to the past log
    int Side = -1;       ///< -1 ordinary board, 0 left, 1 right

    bool IsTwoSided() const { return Side >= 0; }
};

namespace mdlBoards
{

/// All boards in the order of the community's index page. The two sides stand next to each other, left first.
const std::vector<CBoardInfo>& All();

/// Position in All() of the board behind /cgi-bin/<Script>.cgi; Side picks one of two sides and is otherwise ignored.
std::optional<std::size_t> FindScript(QStringView Script, int Side);
/// Position in All() by identifier.
std::optional<std::size_t> FindIdentifier(QStringView Identifier);

} // namespace mdlBoards

#endif
