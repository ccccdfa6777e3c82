// boardd/main.cpp
// The board server as a program: starts, says where, and waits for the signal to end.

#include "boardd/Arguments.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

void Say(FILE* Where, const QString& Text)
{
    std::fputs((Text + u'\n').toUtf8().constData(), Where);
    std::fflush(Where);
}

/// Keeps the ending signals from every thread, so that the one waiting below gets them.
sigset_t BlockEndingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, number);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

int Serve(const CBoardServerOptions& Options)
{
    const sigset_t signals = BlockEndingSignals();
    CBoardServer server(Options);
    const bool started = server.Start();
    for (const QString& warning : server.Warnings())
        Say(stderr, u"注意: "_s + warning);
    if (!started) {
        Say(stderr, u"tavora-boardd: "_s + server.ErrorText());
        return 1;
    }
    const QString host = Options.BindAddress == u"127.0.0.1" ? u"localhost"_s : Options.BindAddress;
    Say(stdout, u"入門者ひろばを http://%1:%2/ で公開しています。"_s.arg(host).arg(server.Port()));
    int received = 0;
    sigwait(&signals, &received);
    server.Stop();
    Say(stdout, u"終了しました。"_s);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const CArguments arguments = mdlArguments::Parse(QCoreApplication::arguments().mid(1));
    if (!arguments.Error.isEmpty()) {
        Say(stderr, u"tavora-boardd: "_s + arguments.Error + u"\n--help で使い方を表示します。"_s);
        return 2;
    }
    if (arguments.Help) {
        Say(stdout, mdlArguments::HelpText());
        return 0;
    }
    return Serve(arguments.Options);
}
