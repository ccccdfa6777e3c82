// mainwin/CTerminationSignals.h
// Turns the system's "please end" into an ordinary event of the user-interface thread.

#ifndef MAINWIN_CTERMINATIONSIGNALS_H
#define MAINWIN_CTERMINATIONSIGNALS_H

#include <QObject>

class QSocketNotifier;

/// While one exists, SIGTERM, SIGINT and SIGHUP no longer kill the program but end in Requested, so that a running
/// receive can be stopped and the settings be saved. At most one at a time. Does nothing on systems without such
/// signals.
class CTerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit CTerminationSignals(QObject* Parent = nullptr);
    ~CTerminationSignals() override;

Q_SIGNALS:
    void Requested();

private:
    void OnReadable();

    QSocketNotifier* m_notifier = nullptr;
};

#endif
