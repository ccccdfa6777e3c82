// bench/support/CServerProcess.h
// The sample boards, served by a process of their own as the reader meets them.

#ifndef BENCH_SUPPORT_CSERVERPROCESS_H
#define BENCH_SUPPORT_CSERVERPROCESS_H

#include <QProcess>
#include <QTemporaryDir>

/// Listens on a free port of the loopback from the constructor's end until it is destroyed.
class CServerProcess
{
public:
    /// Program is the server; its first board holds MessageCount messages.
    CServerProcess(const QString& Program, int MessageCount);
    ~CServerProcess();

    /// Of the first board.
    QString BoardUrl() const;

private:
    QTemporaryDir m_folder; // of the posts, which nobody makes
    QProcess m_process;
    quint16 m_port = 0;
};

#endif
