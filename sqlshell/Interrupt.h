// sqlshell/Interrupt.h
// Ctrl+C and the pipe that nobody reads any more.

#ifndef SQLSHELL_INTERRUPT_H
#define SQLSHELL_INTERRUPT_H

namespace sqlshell::mdlInterrupt
{

/// From here on Ctrl+C is only noted, so that a statement can end whole, and writing to a closed pipe is an error.
void Install();

/// Whether Ctrl+C came since the last Forget.
bool IsWanted();
void Forget();

/// Ends the process as that signal would have, so that who started it sees why.
[[noreturn]] void EndBy(int Signal);

} // namespace sqlshell::mdlInterrupt

#endif
