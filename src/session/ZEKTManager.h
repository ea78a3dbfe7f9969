#pragma once

#include "model/Error.h"
#include "model/RemoteComputer.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

class AppState;
class ZEKTClient;

// The session manager: at most one protocol client per computer; connecting,
// message dispatch, screen images, identity trust and commands. Main thread only.
// The commands are virtual so that tests of the layers above can stand in for it.
class ZEKTManager : public QObject {
    Q_OBJECT

public:
    using ClientFactory =
        std::function<std::shared_ptr<ZEKTClient>(const QString &host, quint16 port)>;

    // `clientFactory` makes the client of each attempt; by default the real one.
    explicit ZEKTManager(ClientFactory clientFactory = {}, QObject *parent = nullptr);
    ~ZEKTManager() override;

    // Non-owning back reference, set by AppState right after it creates the manager.
    void setAppState(AppState *appState);
    AppState *appState() const { return m_appState.data(); }

    virtual void connectToComputer(const RemoteComputer &computer);
    virtual void disconnectFromComputer(const RemoteComputer &computer);
    virtual void startRemoteControlStreaming(const RemoteComputer &computer, double frameRate);
    virtual void stopRemoteControlStreaming(const RemoteComputer &computer);
    virtual std::optional<Error> stopRemoteControlStreamingSync(const RemoteComputer &computer);
    virtual void requestManualPreview(const RemoteComputer &computer);
    virtual void sendFileTransfer(const RemoteComputer &computer, const QString &filePath,
                                  const std::optional<QString> &remoteFileName,
                                  bool deleteAfterTransfer);

private:
    ClientFactory m_clientFactory;
    QPointer<AppState> m_appState;
};
