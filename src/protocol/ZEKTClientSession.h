#pragma once

#include "ZEKTClient.h"
#include "ZEKTClientCallbacks.h"
#include "ZEKTFrame.h"
#include "ZEKTMailbox.h"
#include "ZEKTRequest.h"

#include "ZEKTSha256.h"

#include <QFile>
#include <QHostAddress>
#include <QObject>
#include <QPromise>
#include <QTimer>
#include <deque>
#include <map>
#include <memory>

class QSocketNotifier;
class QThreadPool;
class QSslSocket;
class ZEKTChannel;

// The console end of one session; lives on a library I/O thread and is driven only through
// its mailbox (ZEKTTlsClient posts every call). Every promise it settles finishes on that
// thread.
class ZEKTClientSession : public QObject {
    Q_OBJECT
public:
    using Promise = std::shared_ptr<QPromise<void>>;
    static Promise makePromise();
    static void fail(const Promise &promise, const QString &description, int code = -1);

    // Protocol versions this client speaks, best first.
    static QList<quint32> supportedVersions() { return {1}; }

    ZEKTClientSession(const QString &host, quint16 port,
                      std::shared_ptr<ZEKTClientCallbacks> callbacks);
    ~ZEKTClientSession() override;

    std::shared_ptr<ZEKTMailbox> mailbox() const { return m_mailbox; }

    void connectToAgent(const Promise &promise);
    void authenticate(const QString &username, const QString &password, const Promise &promise);
    void sendCommand(ZEKTRequest request, const Promise &promise);
    void sendFile(const QString &path, const std::optional<QString> &remoteName,
                  ZEKTClient::ProgressFunction progress, const Promise &promise);
    // disconnect(): tells the agent, closes quietly and deletes the session.
    void shutdown();

private:
    enum class Phase { idle, resolving, connecting, tls, identity, handshake, open, ended };

    struct Upload {
        quint64 id = 0;
        QString name;
        std::unique_ptr<QFile> file;
        qint64 size = 0;
        qint64 sent = 0;
        std::shared_ptr<ZEKTSha256> hash = std::make_shared<ZEKTSha256>();
        Promise promise;
        ZEKTClient::ProgressFunction progress;
        enum class Step {
            queued,
            awaitingReady,
            hashing,
            sending,
            flushing,
            awaitingVerdict
        } step = Step::queued;
    };

    void startResolved(const QList<QHostAddress> &addresses);
    void attemptConnect();
    void connectFinished(int fd, int error);
    void connectError(int error);
    void tcpConnected(int fd);
    void encrypted();
    void askIdentity(const QString &previous, const QString &current);
    void identityAnswered(int token, bool trusted, const QString &current);
    void beginHandshake();
    void onFrame(ZEKTFrame &frame);
    void acknowledge(quint64 frameNumber);
    bool send(const ZEKTRequest &request);
    void end(const QString &description, int code, bool cancelled = false);
    void failPending(const QString &description);
    void closeSocket(bool tellAgent);
    void log(const QString &text, const QString &category);
    void setState(ZEKT::ConnectionState state);

    void startNextUpload();
    void pumpUpload();
    void uploadReady(quint64 id, bool accepted, const QString &reason);
    void uploadProgress(Upload &upload, double fraction);
    void uploadHashed(quint64 id, const QByteArray &digest);
    static QThreadPool *hashPool();

    QString m_host;
    quint16 m_port;
    QString m_endpoint;
    std::shared_ptr<ZEKTClientCallbacks> m_callbacks;
    std::shared_ptr<ZEKTMailbox> m_mailbox;

    Phase m_phase = Phase::idle;
    QList<QHostAddress> m_addresses;
    int m_addressIndex = 0;
    int m_fd = -1;
    int m_lastError = 0;
    bool m_reportedWaiting = false;
    QSocketNotifier *m_notifier = nullptr;
    QSslSocket *m_socket = nullptr;
    ZEKTChannel *m_channel = nullptr;
    QTimer m_connectTimer;
    QTimer m_retryTimer;
    QTimer m_handshakeTimer;
    QTimer m_identityTimer;
    QTimer m_authTimer;
    int m_handshakeRemainingMs = 0;
    int m_identityToken = 0;

    Promise m_connectPromise;
    Promise m_authPromise;
    std::map<quint64, Promise> m_commands;
    std::deque<std::unique_ptr<Upload>> m_uploads;
    quint64 m_nextRequestId = 1;
};
