// platform/desktop/CSingleInstance.h
// One running program per program file and user; a second start wakes the first.

#ifndef DESKTOP_CSINGLEINSTANCE_H
#define DESKTOP_CSINGLEINSTANCE_H

#include <QObject>
#include <QString>

#include <memory>

class QLocalServer;

/// Finds a running instance of the same program file, or becomes the one that others find.
///
/// The two meet at a local socket in the user's own runtime folder, named after the program's path, so another user's
/// copy or another folder's copy does not matter. What a crashed program left behind does not stand in the way.
class CSingleInstance : public QObject
{
    Q_OBJECT

public:
    /// ProgramPath names the program file; links are followed.
    explicit CSingleInstance(const QString& ProgramPath);
    ~CSingleInstance() override;

    /// True: another one runs and was told to show itself, this one should end. False: this one now answers.
    ///
    /// Waits at most HandOverMs. One that listens but does not answer in that time still counts as running: two
    /// programs on one database are worse than none in front.
    bool ActivatePrevInstance();

    /// Milliseconds that a busy first instance gets to answer.
    static constexpr int HandOverMs = 3000;

Q_SIGNALS:
    /// A second start asks this one to come to the front.
    void ActivateRequested();

private:
    bool TellRunningOne() const;
    void Listen();
    void OnConnection();

    QString m_socketPath;
    std::unique_ptr<QLocalServer> m_server;
};

#endif
