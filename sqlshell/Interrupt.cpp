// sqlshell/Interrupt.cpp
// The one flag that a signal sets.

#include "sqlshell/Interrupt.h"

#include <csignal>
#include <unistd.h>

namespace sqlshell::mdlInterrupt
{

namespace
{

volatile std::sig_atomic_t isWanted = 0; // a signal handler has no other way to tell

void Note(int) { isWanted = 1; }

} // namespace

void Install()
{
    struct sigaction note = {};
    note.sa_handler = Note; // without SA_RESTART: waiting for input ends too
    sigaction(SIGINT, &note, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool IsWanted() { return isWanted != 0; }

void Forget() { isWanted = 0; }

void EndBy(int Signal)
{
    std::signal(Signal, SIG_DFL);
    ::raise(Signal);
    ::_exit(128 + Signal); // where the signal was blocked
}

} // namespace sqlshell::mdlInterrupt
