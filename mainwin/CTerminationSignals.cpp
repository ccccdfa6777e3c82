// mainwin/CTerminationSignals.cpp
// Turns the system's "please end" into an ordinary event of the user-interface thread.

#include "mainwin/CTerminationSignals.h"

#include <QSocketNotifier>

#ifdef Q_OS_UNIX

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr int Signals[] = {SIGTERM, SIGINT, SIGHUP};

// The handler runs between any two instructions; all that it may do is write a byte into a pipe.
int Pipe[2] = {-1, -1};

extern "C" void OnSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(Pipe[1], &byte, 1);
}

void SetHandler(void (*Handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = Handler;
    action.sa_flags = SA_RESTART;
    for (const int number : Signals)
        ::sigaction(number, &action, nullptr);
}

} // namespace

CTerminationSignals::CTerminationSignals(QObject* Parent)
    : QObject(Parent)
{
    if (::pipe2(Pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(Pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &CTerminationSignals::OnReadable);
    SetHandler(OnSignal);
}

CTerminationSignals::~CTerminationSignals()
{
    if (!m_notifier)
        return;
    SetHandler(SIG_DFL);
    delete m_notifier;
    ::close(Pipe[0]);
    ::close(Pipe[1]);
}

void CTerminationSignals::OnReadable()
{
    char bytes[16];
    while (::read(Pipe[0], bytes, sizeof bytes) > 0) {
    }
    Q_EMIT Requested();
}

#else

CTerminationSignals::CTerminationSignals(QObject* Parent)
    : QObject(Parent)
{}

CTerminationSignals::~CTerminationSignals() = default;

void CTerminationSignals::OnReadable() {}

#endif
