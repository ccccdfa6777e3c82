// bench/support/CServerProcess.cpp
// The sample boards, served by a process of their own as the reader meets them.

#include "bench/support/CServerProcess.h"

#include <QTcpServer>

using namespace Qt::StringLiterals;

CServerProcess::CServerProcess(const QString& Program, int MessageCount)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    m_port = probe.serverPort();
    probe.close();
    m_process.start(Program, {u"--port"_s, QString::number(m_port), u"--data"_s, m_folder.path(), u"--messages"_s,
                              QString::number(MessageCount)});
    m_process.waitForStarted();
    while (QProcess::execute(u"curl"_s, {u"-s"_s, u"-o"_s, u"/dev/null"_s, BoardUrl()}) != 0 &&
           m_process.state() == QProcess::Running) {
    }
}

CServerProcess::~CServerProcess()
{
    m_process.terminate();
    m_process.waitForFinished();
}

QString CServerProcess::BoardUrl() const { return u"http://localhost:%1/cgi-bin/keyaki.cgi"_s.arg(m_port); }
