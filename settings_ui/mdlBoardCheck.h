// settings_ui/mdlBoardCheck.h
// What a board's address and identifier must be like so that the program can work with them.

#ifndef SETTINGS_UI_MDLBOARDCHECK_H
#define SETTINGS_UI_MDLBOARDCHECK_H

#include <QString>

namespace mdlBoardCheck
{

/// Why Address cannot be a board's address, as a sentence for the user; empty when it can.
///
/// Queries are put behind it, so it has none of its own, and it is the name of a cookie, so there is no "=" or ";" in
/// it.
QString AddressProblem(const QString& Address);

/// Why Identifier cannot be the beginning of a board's file names, as a sentence for the user; empty when it can. An
/// empty one can. The same on every system: the data folder may lie on a stick that goes from one to the other.
QString IdentifierProblem(const QString& Identifier);

} // namespace mdlBoardCheck

#endif
