// tests/load/CRecordingReceiveHost.h
// A main window that writes down what the drivers ask of it.

#ifndef TESTS_LOAD_CRECORDINGRECEIVEHOST_H
#define TESTS_LOAD_CRECORDINGRECEIVEHOST_H

#include "load/receive_host.h"

#include <QStringList>

class CRecordingReceiveHost : public ReceiveHost
{
public:
    QStringList Events;
    bool Closing = false;
    qint32 Current = 3;
    std::optional<CMessage> Selected;

    void RunStarted(RunKind Kind) override
    {
        Events << (Kind == RunKind::Receive ? QStringLiteral("receive") : QStringLiteral("import"));
    }
    void SetStatus(const QString& Text) override { Events << Text; }
    void RunEnded() override { Events << QStringLiteral("ended"); }
    bool IsClosing() const override { return Closing; }
    qint32 CurrentBoard() const override { return Current; }
    std::optional<CMessage> SelectedMessage() const override { return Selected; }
    void CloseWindow() override { Events << QStringLiteral("close"); }
    QWidget* DialogOwner() override { return nullptr; }
};

#endif // TESTS_LOAD_CRECORDINGRECEIVEHOST_H
