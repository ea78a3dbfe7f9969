#pragma once

#include "ZEKTFrame.h"
#include "ZEKTMailbox.h"
#include "ZEKTRequest.h"

#include "ZEKTUploadJob.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>
#include <set>

class QSslSocket;
class ZEKTChannel;
class ZEKTIncomingFile;
class ZEKTMessage;
struct ZEKTServerContext;

// The agent end of one session, on the server's thread. Provider work runs on the server's
// worker pools and comes back through the session's mailbox.
class ZEKTServerSession : public QObject {
    Q_OBJECT
public:
    static QList<quint32> supportedVersions() { return {1}; }
    // Frames in flight (sent, not yet released by the console) while streaming.
    static constexpr int maximumFramesInFlight = 2;

    ZEKTServerSession(qintptr descriptor, ZEKTServerContext *context, QObject *parent);
    ~ZEKTServerSession() override;

    bool isAuthenticated() const { return m_phase == Phase::open; }
    QString peer() const { return m_peer; }
    // Says goodbye with `reason` (when the channel is up) and closes.
    void close(const QString &reason, bool tellPeer);

private:
    enum class Phase { tls, hello, login, verifying, open, ended };

    void encrypted();
    void onFrame(ZEKTFrame &frame);
    void onHello(const ZEKTRequest &request);
    void onAuthenticate(const ZEKTRequest &request);
    void loginChecked(bool accepted);
    void onCommand(const ZEKTRequest &request);
    void send(const ZEKTMessage &message);
    void result(quint64 requestId, const std::optional<QString> &error);
    void protocolError(const QString &description);

    void captureOnce(quint64 requestId, quint32 displayID);
    void startStream(const ZEKTRequest &request);
    void stopStream();
    void streamTick();
    void sendImage(quint32 displayID, const QByteArray &jpeg, quint32 width, quint32 height,
                   float quality);
    void pushStats();
    void input(const ZEKTRequest &request);

    void fileBegin(const ZEKTRequest &request);
    void fileChunk(const ZEKTRequest &request);
    void fileEnd(const ZEKTRequest &request);
    void fileReply(quint64 id, bool accepted, const QString &reason);
    void dropUpload();

    ZEKTServerContext *m_context;
    std::shared_ptr<ZEKTMailbox> m_mailbox;
    QSslSocket *m_socket = nullptr;
    ZEKTChannel *m_channel = nullptr;
    QString m_peer;
    QString m_source;
    QString m_username;
    Phase m_phase = Phase::tls;
    QTimer m_authTimer;
    QTimer m_statsTimer;
    bool m_collectingStats = false;
    quint64 m_frameNumber = 0;

    struct Stream {
        bool active = false;
        quint32 displayID = 0;
        float quality = 0.5f;
        double frameRate = 1.0;
        bool capturing = false;
        QElapsedTimer lastCapture;
        std::set<quint64> inFlight;
        quint32 sequence = 0;
    } m_stream;
    QTimer m_streamTimer;

    // Chunks are hashed and written on the server's file worker, so a slow disk never
    // stalls this thread; reading pauses while too much waits for the disk.
    static constexpr qint64 pauseReadingAbove = 4 * 1024 * 1024;
    struct Upload {
        enum class Step { none, deciding, receiving } step = Step::none;
        quint64 id = 0;
        QString name;
        qint64 size = 0;
        qint64 received = 0;
        qint64 queued = 0;                  // handed to the worker, not yet written
        std::shared_ptr<ZEKTUploadJob> job; // while receiving
        QString failure;                    // set once something went wrong; reported at the end
    } m_upload;
};
