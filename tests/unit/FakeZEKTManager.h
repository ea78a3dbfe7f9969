#pragma once

#include "session/ZEKTManager.h"

#include <QStringList>

// Records the commands it gets. Like the real manager it marks a computer connecting
// as soon as a connection attempt starts; the outcome is up to the test.
class FakeZEKTManager : public ZEKTManager {
public:
    QStringList calls;

    void connectToComputer(const RemoteComputer &computer) override
    {
        calls << "connect " + computer.displayName();
        store().updateConnectingStatus(computer.id, true);
    }
    void disconnectFromComputer(const RemoteComputer &computer) override
    {
        calls << "disconnect " + computer.displayName();
    }
    void startRemoteControlStreaming(const RemoteComputer &computer, double frameRate) override
    {
        calls << QStringLiteral("stream %1 at %2").arg(computer.displayName()).arg(frameRate);
    }
    void stopRemoteControlStreaming(const RemoteComputer &computer) override
    {
        calls << "stop " + computer.displayName();
    }
    void sendFileTransfer(const RemoteComputer &computer, const QString &filePath,
                          const std::optional<QString> &remoteFileName,
                          bool deleteAfterTransfer) override
    {
        calls << QStringLiteral("send %1 %2 as %3 delete=%4")
                     .arg(computer.displayName(), filePath, remoteFileName.value_or("-"))
                     .arg(deleteAfterTransfer);
    }
};
