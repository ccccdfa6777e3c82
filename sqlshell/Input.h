// sqlshell/Input.h
// Where the shell's statements come from.

#ifndef SQLSHELL_INPUT_H
#define SQLSHELL_INPUT_H

#include "sqlshell/CShell.h"

namespace sqlshell::mdlInput
{

/// Runs the words of the command line, each a script of its own.
void RunWords(CShell& Shell, CSink& Out, const QByteArrayList& Words);

/// Runs what comes from an open file, each statement as soon as it is complete. On a terminal it prompts, and Ctrl+C
/// gives up the statement; otherwise Ctrl+C ends the reading. False where the file cannot be read.
bool RunFile(CShell& Shell, CSink& Out, int Descriptor);

} // namespace sqlshell::mdlInput

#endif
