// load/ImportChoice.h
// What the user is asked before log files are imported: which files, and whether they are meant for this board.

#ifndef LOAD_IMPORTCHOICE_H
#define LOAD_IMPORTCHOICE_H

#include "platform/desktop/desktop.h"

#include <QString>
#include <QStringList>

class CBBSProperty;

namespace dao
{
class Database;
}

namespace mdlImportChoice
{
/// So many paths stand in the question, so that its buttons stay on the screen; the rest is a number.
inline constexpr qsizetype MaxListedPaths = 20;

/// File types of the file dialog, descriptions and patterns separated by "|". A Board with a pattern for its log files
/// has that first.
QString Filter(const CBBSProperty& Board);

struct Question
{
    QString Text;
    Desktop::Answer Default = Desktop::Answer::Yes;
};

/// The question before Paths are imported into Board. When the name of one of them fits the pattern of another board,
/// the text says so and No is the default. A board whose pattern cannot be read fits no file. Throws dao::Error.
Question Ask(dao::Database& Database, const CBBSProperty& Board, const QStringList& Paths);
} // namespace mdlImportChoice

#endif // LOAD_IMPORTCHOICE_H
