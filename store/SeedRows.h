// store/SeedRows.h
// The boards and marks of a new database, as the statements that insert them.

#ifndef STORE_SEEDROWS_H
#define STORE_SEEDROWS_H

#include <QStringList>

namespace mdlSeedRows
{

/// Sixteen statements, one for each board. The boards' addresses are those of the sample server on this machine.
QStringList BBSStatements();

/// Four statements, one for each mark.
QStringList MarkStatements();

} // namespace mdlSeedRows

#endif
