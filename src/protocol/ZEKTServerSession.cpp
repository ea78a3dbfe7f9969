#include "ZEKTServerSession.h"

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "HandshakeResponseMessage.h"
#include "ScreenCaptureMessage.h"
#include "ZEKT.h"
#include "ZEKTChannel.h"
#include "ZEKTCommandResultMessage.h"
#include "ZEKTCredentialVerifier.h"
#include "ZEKTFileReadyMessage.h"
#include "ZEKTFileReceiver.h"
#include "ZEKTInputProvider.h"
#include "ZEKTMessageCodec.h"
#include "ZEKTScreenProvider.h"
#include "ZEKTServerContext.h"
#include "ZEKTStatsProvider.h"

#include <QDateTime>
#include <QSslConfiguration>
#include <QSslSocket>

namespace {
int toMs(double seconds)
{
    return qMax(1, static_cast<int>(seconds * 1000.0));
}

// Runs `work` on a pool and hands its result to `done` on the session's thread, unless the
// session ended meanwhile.
template <typename Work, typename Done>
void runOn(QThreadPool &pool, const std::shared_ptr<ZEKTMailbox> &mailbox, Work work, Done done)
{
    pool.start([mailbox, work = std::move(work), done = std::move(done)]() mutable {
        auto value = work();
        mailbox->post([done = std::move(done), value = std::move(value)]() mutable {
            done(std::move(value));
        });
    });
}

std::optional<QString> badFileName(const QString &name)
{
    // The file receiver reduces the name to a safe last component; the library only
    // refuses what cannot name a file at all and bounds what it hands over.
    if (name.trimmed().isEmpty())
        return QStringLiteral("The file name is empty");
    if (name.toUtf8().size() > 4096)
        return QStringLiteral("The file name is longer than 4096 bytes");
    return std::nullopt;
}
} // namespace

ZEKTServerSession::ZEKTServerSession(qintptr descriptor, ZEKTServerContext *context,
                                     QObject *parent)
    : QObject(parent), m_context(context), m_mailbox(std::make_shared<ZEKTMailbox>(this)),
      m_authTimer(this), m_statsTimer(this), m_streamTimer(this)
{
    m_authTimer.setSingleShot(true);
    m_streamTimer.setSingleShot(true);
    connect(&m_authTimer, &QTimer::timeout, this, [this] {
        m_context->log(tr("%1 did not authenticate in time").arg(m_peer), QStringLiteral("AUTH"));
        close(tr("Authentication timed out"), true);
    });
    connect(&m_statsTimer, &QTimer::timeout, this, &ZEKTServerSession::pushStats);
    connect(&m_streamTimer, &QTimer::timeout, this, &ZEKTServerSession::streamTick);

    m_socket = new QSslSocket(this);
    m_socket->setSocketDescriptor(descriptor);
    m_source = m_socket->peerAddress().toString();
    m_peer = QStringLiteral("%1:%2").arg(m_source).arg(m_socket->peerPort());

    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_3);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    tls.setCaCertificates({});
    tls.setLocalCertificate(m_context->config.identity.certificate());
    tls.setPrivateKey(m_context->config.identity.privateKey());
    m_socket->setSslConfiguration(tls);

    connect(m_socket, &QSslSocket::encrypted, this, &ZEKTServerSession::encrypted);
    connect(m_socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError) {
        close(tr("Connection error: %1").arg(m_socket->errorString()), false);
    });
    connect(m_socket, &QSslSocket::disconnected, this,
            [this] { close(tr("The console closed the connection"), false); });

    // The authentication clock runs from accept, TLS handshake included.
    m_authTimer.start(toMs(ZEKT::protocolTimings().authenticationTimeout));
    m_socket->startServerEncryption();
}

ZEKTServerSession::~ZEKTServerSession()
{
    m_mailbox->close();
}

void ZEKTServerSession::encrypted()
{
    if (m_phase != Phase::tls)
        return;
    m_phase = Phase::hello;
    m_channel = new ZEKTChannel(m_socket, this);
    m_channel->setMaximumFrameSize(ZEKTFrame::maximumSizeBeforeAuthentication);
    connect(m_channel, &ZEKTChannel::frameReceived, this, &ZEKTServerSession::onFrame);
    connect(m_channel, &ZEKTChannel::failed, this,
            [this](const QString &description, int) { protocolError(description); });
    m_channel->pump();
}

void ZEKTServerSession::send(const ZEKTMessage &message)
{
    if (m_channel)
        m_channel->send(ZEKTMessageCodec::encodeMessage(message));
}

void ZEKTServerSession::result(quint64 requestId, const std::optional<QString> &error)
{
    send(ZEKTCommandResultMessage(requestId, !error, error.value_or(QString())));
}

void ZEKTServerSession::protocolError(const QString &description)
{
    m_context->log(tr("Ending the session with %1: %2").arg(m_peer, description),
                   QStringLiteral("ERROR"));
    if (m_channel && m_socket->state() == QAbstractSocket::ConnectedState)
        send(ErrorMessage(description));
    close(description, true);
}

void ZEKTServerSession::onFrame(ZEKTFrame &frame)
{
    if (m_phase == Phase::ended)
        return;
    // Upload data keeps the frame's buffer instead of being copied out of it.
    if (m_phase == Phase::open) {
        if (std::optional<ZEKTRequest> chunk = ZEKTMessageCodec::takeFileChunk(frame)) {
            fileChunk(*chunk);
            return;
        }
    }
    const ZEKTMessageCodec::Decoded<ZEKTRequest> decoded = ZEKTMessageCodec::decodeRequest(frame);
    if (decoded.skipped) {
        m_context->log(tr("Skipped a frame of unknown type %1 from %2").arg(frame.type).arg(m_peer),
                       QStringLiteral("WARN"));
        return;
    }
    if (!decoded.error.isEmpty()) {
        protocolError(decoded.error);
        return;
    }
    const ZEKTRequest &request = decoded.value;
    switch (request.kind) {
    case ZEKTRequest::Kind::heartbeat:
    case ZEKTRequest::Kind::heartbeatResponse:
        return; // the channel answered and noted the sign of life
    case ZEKTRequest::Kind::disconnect:
        // The console's own words already say who ended it.
        close(request.reason.isEmpty() ? tr("The console closed the session") : request.reason,
              false);
        return;
    case ZEKTRequest::Kind::hello:
        onHello(request);
        return;
    case ZEKTRequest::Kind::authenticate:
        onAuthenticate(request);
        return;
    default:
        if (m_phase != Phase::open) {
            protocolError(tr("Authentication is required before any command"));
            return;
        }
        onCommand(request);
    }
}

void ZEKTServerSession::onHello(const ZEKTRequest &request)
{
    if (m_phase != Phase::hello) {
        protocolError(tr("Unexpected second handshake"));
        return;
    }
    quint32 chosen = 0;
    for (quint32 version : supportedVersions())
        if (request.protocolVersions.contains(version))
            chosen = qMax(chosen, version);
    if (chosen == 0) {
        protocolError(tr("No common protocol version (this agent speaks version 1)"));
        return;
    }
    m_phase = Phase::login;
    send(HandshakeResponseMessage(chosen, m_context->config.agentVersion));
    m_channel->startHeartbeats();
}

void ZEKTServerSession::onAuthenticate(const ZEKTRequest &request)
{
    if (m_phase != Phase::login) {
        protocolError(m_phase == Phase::open ? tr("Already authenticated")
                                             : tr("Authentication out of order"));
        return;
    }
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const qint64 waitMs = m_context->backoff.remainingMs(m_source, now);
    if (waitMs > 0) {
        // Answered at once, so the console shows the reason instead of waiting.
        const qint64 seconds = (waitMs + 999) / 1000;
        m_context->log(tr("Login from %1 refused: back-off for %2 s").arg(m_peer).arg(seconds),
                       QStringLiteral("AUTH"));
        send(AuthenticationResponseMessage(
            false, tr("Too many failed logins from this address; try again in %n second(s)",
                      nullptr, static_cast<int>(seconds))));
        return;
    }
    if (!m_context->verifier) {
        send(AuthenticationResponseMessage(false, tr("This agent accepts no logins")));
        return;
    }
    m_phase = Phase::verifying;
    m_username = request.username;
    runOn(
        m_context->workers, m_mailbox,
        [verifier = m_context->verifier, user = request.username, password = request.password] {
            try {
                return verifier->verify(user, password);
            } catch (...) {
                return false;
            }
        },
        [this](bool accepted) { loginChecked(accepted); });
}

void ZEKTServerSession::loginChecked(bool accepted)
{
    if (m_phase != Phase::verifying)
        return;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (!accepted) {
        m_context->backoff.recordFailure(m_source, now);
        m_phase = Phase::login;
        m_context->log(tr("Login as %1 from %2 failed").arg(m_username, m_peer),
                       QStringLiteral("AUTH"));
        send(AuthenticationResponseMessage(false, tr("Invalid username or password")));
        return;
    }
    m_context->backoff.recordSuccess(m_source);
    m_phase = Phase::open;
    m_authTimer.stop();
    --m_context->unauthenticated;
    ++m_context->authenticated;
    m_channel->setMaximumFrameSize(ZEKTFrame::maximumSize);
    m_context->log(tr("%1 logged in from %2").arg(m_username, m_peer), QStringLiteral("AUTH"));
    send(AuthenticationResponseMessage(true));
    Q_EMIT m_context->server->sessionAuthenticated(m_peer, m_username);
    m_statsTimer.start(toMs(m_context->config.statsIntervalSeconds));
    pushStats();
}

void ZEKTServerSession::onCommand(const ZEKTRequest &request)
{
    switch (request.kind) {
    case ZEKTRequest::Kind::screenCapture:
        captureOnce(request.requestId, request.displayID);
        return;
    case ZEKTRequest::Kind::startStreaming:
        startStream(request);
        return;
    case ZEKTRequest::Kind::stopStreaming:
        stopStream();
        result(request.requestId, std::nullopt);
        return;
    case ZEKTRequest::Kind::frameAck:
        m_stream.inFlight.erase(request.frameNumber);
        streamTick();
        return;
    case ZEKTRequest::Kind::mouseButton:
    case ZEKTRequest::Kind::mouseMove:
    case ZEKTRequest::Kind::key:
        input(request);
        return;
    case ZEKTRequest::Kind::fileBegin:
        fileBegin(request);
        return;
    case ZEKTRequest::Kind::fileChunk:
        fileChunk(request);
        return;
    case ZEKTRequest::Kind::fileEnd:
        fileEnd(request);
        return;
    default:
        return;
    }
}

// ---- screen -----------------------------------------------------------------------------

void ZEKTServerSession::sendImage(quint32 displayID, const QByteArray &jpeg, quint32 width,
                                  quint32 height, float quality)
{
    ++m_frameNumber;
    send(ScreenCaptureMessage(displayID, jpeg, QStringLiteral("jpeg"), quality, m_frameNumber,
                              m_stream.active ? std::optional(++m_stream.sequence) : std::nullopt,
                              width, height));
}

void ZEKTServerSession::captureOnce(quint64 requestId, quint32 displayID)
{
    if (!m_context->screen) {
        result(requestId, tr("Screen capture is not available on this agent"));
        return;
    }
    runOn(
        m_context->workers, m_mailbox,
        [screen = m_context->screen] {
            return screen->capture(ZEKT::screenCaptureQuality, false, 0);
        },
        [this, requestId, displayID](ZEKTCapturedFrame frame) {
            if (m_phase != Phase::open)
                return;
            if (frame.status != ZEKTCapturedFrame::Status::ok) {
                result(requestId,
                       frame.error.isEmpty() ? tr("Screen capture failed") : frame.error);
                return;
            }
            // The identifier is the console's own; it is echoed so the reply matches it.
            sendImage(displayID, frame.imageData, frame.width, frame.height,
                      ZEKT::screenCaptureQuality);
            result(requestId, std::nullopt);
        });
}

void ZEKTServerSession::startStream(const ZEKTRequest &request)
{
    if (!m_context->screen) {
        result(request.requestId, tr("Screen capture is not available on this agent"));
        return;
    }
    const bool running = m_stream.active;
    m_stream.displayID = request.displayID;
    m_stream.quality = request.quality;
    m_stream.frameRate = request.frameRate;
    m_context->log(tr("Streaming to %1 at %2 frames/s, quality %3")
                       .arg(m_peer)
                       .arg(request.frameRate)
                       .arg(request.quality),
                   QStringLiteral("SCREEN"));
    if (running) {
        // A new start while streaming only changes rate and quality.
        result(request.requestId, std::nullopt);
        return;
    }
    // The first frame is taken at once; its outcome is the command's result, so a screen
    // that cannot be captured fails the start with the reason.
    m_stream.active = true;
    m_stream.capturing = true;
    m_stream.inFlight.clear();
    m_stream.lastCapture.start();
    const quintptr key = reinterpret_cast<quintptr>(this);
    const quint64 requestId = request.requestId;
    runOn(
        m_context->workers, m_mailbox,
        [screen = m_context->screen, quality = request.quality, key] {
            return screen->capture(quality, false, key);
        },
        [this, requestId](ZEKTCapturedFrame frame) {
            m_stream.capturing = false;
            if (frame.status != ZEKTCapturedFrame::Status::ok) {
                stopStream();
                result(requestId,
                       frame.error.isEmpty() ? tr("Screen capture failed") : frame.error);
                return;
            }
            if (!m_stream.active) {
                result(requestId, std::nullopt);
                return;
            }
            sendImage(m_stream.displayID, frame.imageData, frame.width, frame.height,
                      m_stream.quality);
            m_stream.inFlight.insert(m_frameNumber);
            result(requestId, std::nullopt);
            streamTick();
        });
}

void ZEKTServerSession::stopStream()
{
    if (!m_stream.active)
        return;
    m_stream.active = false;
    m_stream.inFlight.clear();
    m_streamTimer.stop();
    m_context->log(tr("Streaming to %1 stopped").arg(m_peer), QStringLiteral("SCREEN"));
    const quintptr key = reinterpret_cast<quintptr>(this);
    m_context->workers.start([screen = m_context->screen, key] { screen->endStream(key); });
}

void ZEKTServerSession::streamTick()
{
    if (!m_stream.active || m_stream.capturing || m_phase != Phase::open ||
        static_cast<int>(m_stream.inFlight.size()) >= maximumFramesInFlight)
        return;
    const qint64 periodMs = qMax<qint64>(1, static_cast<qint64>(1000.0 / m_stream.frameRate));
    const qint64 waitMs = periodMs - m_stream.lastCapture.elapsed();
    if (waitMs > 0) {
        m_streamTimer.start(static_cast<int>(qMin<qint64>(waitMs, 24 * 3600 * 1000)));
        return;
    }
    m_stream.capturing = true;
    m_stream.lastCapture.restart();
    runOn(
        m_context->workers, m_mailbox,
        [screen = m_context->screen, quality = m_stream.quality,
         key = reinterpret_cast<quintptr>(this)] { return screen->capture(quality, true, key); },
        [this](ZEKTCapturedFrame frame) {
            m_stream.capturing = false;
            if (!m_stream.active || m_phase != Phase::open)
                return;
            if (frame.status == ZEKTCapturedFrame::Status::failed) {
                stopStream();
                send(ErrorMessage(
                    tr("Screen streaming stopped: %1")
                        .arg(frame.error.isEmpty() ? tr("capture failed") : frame.error)));
                return;
            }
            if (frame.status == ZEKTCapturedFrame::Status::ok) {
                sendImage(m_stream.displayID, frame.imageData, frame.width, frame.height,
                          m_stream.quality);
                m_stream.inFlight.insert(m_frameNumber);
            }
            streamTick();
        });
}

// ---- statistics and input ---------------------------------------------------------------

void ZEKTServerSession::pushStats()
{
    if (!m_context->stats || m_collectingStats || m_phase != Phase::open)
        return;
    m_collectingStats = true;
    runOn(
        m_context->workers, m_mailbox, [stats = m_context->stats] { return stats->collect(); },
        [this](SystemStatsMessage report) {
            m_collectingStats = false;
            if (m_phase != Phase::open)
                return;
            if (!report.agentVersion)
                report.agentVersion = m_context->config.agentVersion;
            send(report);
        });
}

void ZEKTServerSession::input(const ZEKTRequest &request)
{
    if (!m_context->input) {
        result(request.requestId, tr("Input injection is not available on this agent"));
        return;
    }
    runOn(
        m_context->inputQueue, m_mailbox,
        [provider = m_context->input, request] {
            switch (request.kind) {
            case ZEKTRequest::Kind::mouseButton:
                return provider->mouseButton(request.x, request.y, request.button, request.pressed);
            case ZEKTRequest::Kind::mouseMove:
                return provider->mouseMove(request.x, request.y, request.deltaX, request.deltaY);
            default:
                return provider->key(request.keyCode, request.pressed, request.modifiers);
            }
        },
        [this, id = request.requestId](std::optional<QString> error) { result(id, error); });
}

// ---- file reception ---------------------------------------------------------------------

void ZEKTServerSession::fileReply(quint64 id, bool accepted, const QString &reason)
{
    send(ZEKTFileReadyMessage(id, accepted, reason));
}

void ZEKTServerSession::dropUpload()
{
    // Queued chunks still hold the job; the last one to finish discards the partial file.
    m_upload.job.reset();
    m_upload.step = Upload::Step::none;
    m_upload.id = 0;
    m_upload.name.clear();
    m_upload.size = 0;
    m_upload.received = 0;
    m_upload.queued = 0;
    m_upload.failure.clear();
    if (m_channel)
        m_channel->setReadingPaused(false);
}

void ZEKTServerSession::fileBegin(const ZEKTRequest &request)
{
    if (m_upload.step != Upload::Step::none) {
        fileReply(request.requestId, false, tr("Another file transfer is in progress"));
        return;
    }
    if (const auto bad = badFileName(request.fileName)) {
        fileReply(request.requestId, false, *bad);
        return;
    }
    if (request.fileSize > ZEKT::maxFileTransferSize) {
        fileReply(request.requestId, false, tr("The file is larger than the 256 MiB limit"));
        return;
    }
    if (!m_context->files) {
        fileReply(request.requestId, false, tr("This agent does not accept files"));
        return;
    }
    m_upload.step = Upload::Step::deciding;
    m_upload.id = request.requestId;
    m_upload.name = request.fileName;
    m_upload.size = request.fileSize;
    m_context->log(
        tr("%1 offers %2 (%3 bytes)").arg(m_peer, request.fileName).arg(request.fileSize),
        QStringLiteral("FILE"));
    runOn(
        m_context->workers, m_mailbox,
        [files = m_context->files, name = request.fileName, size = request.fileSize] {
            std::shared_ptr<ZEKTUploadJob> job;
            QString refusal;
            try {
                ZEKTFileReceiver::Decision decision = files->begin(name, size);
                refusal = decision.refusal;
                if (decision.file)
                    job = std::make_shared<ZEKTUploadJob>(std::move(decision.file));
            } catch (...) {
                refusal = QStringLiteral("The agent could not prepare the file");
            }
            return std::make_pair(job, refusal);
        },
        [this, id = request.requestId](std::pair<std::shared_ptr<ZEKTUploadJob>, QString> d) {
            if (m_upload.step != Upload::Step::deciding || m_upload.id != id)
                return; // dropping the job discards it
            if (!d.first) {
                dropUpload();
                fileReply(id, false, d.second.isEmpty() ? tr("The file was refused") : d.second);
                return;
            }
            m_upload.job = std::move(d.first);
            m_upload.step = Upload::Step::receiving;
            fileReply(id, true, {});
        });
}

void ZEKTServerSession::fileChunk(const ZEKTRequest &request)
{
    if (m_upload.step != Upload::Step::receiving || request.requestId != m_upload.id) {
        protocolError(tr("File data for a transfer that was not accepted"));
        return;
    }
    if (!m_upload.failure.isEmpty())
        return; // already lost; the verdict goes out with the end
    const qint64 size = request.data.size();
    if (size > m_upload.size - m_upload.received) {
        m_upload.failure = tr("More data arrived than the %1 bytes announced").arg(m_upload.size);
        return;
    }
    m_upload.received += size;
    m_upload.queued += size;
    if (m_upload.queued > pauseReadingAbove)
        m_channel->setReadingPaused(true);
    const std::shared_ptr<ZEKTUploadJob> job = m_upload.job;
    runOn(
        m_context->fileQueue, m_mailbox,
        [job, data = request.data] {
            if (job->failure.isEmpty()) {
                job->hash.addData(data);
                if (const auto error = job->file->write(data))
                    job->failure = *error;
            }
            return data.size();
        },
        [this, job](qsizetype written) {
            if (m_upload.job != job)
                return;
            m_upload.queued -= written;
            if (m_upload.queued <= pauseReadingAbove / 2)
                m_channel->setReadingPaused(false);
        });
}

void ZEKTServerSession::fileEnd(const ZEKTRequest &request)
{
    if (m_upload.step != Upload::Step::receiving || request.requestId != m_upload.id) {
        protocolError(tr("End of a file transfer that was not accepted"));
        return;
    }
    QString failure = m_upload.failure;
    if (failure.isEmpty() && m_upload.received != m_upload.size)
        failure = tr("Only %1 of %2 bytes arrived").arg(m_upload.received).arg(m_upload.size);
    const QString name = m_upload.name;
    const std::shared_ptr<ZEKTUploadJob> job = m_upload.job;
    dropUpload();
    // Queued after the chunks, so it sees every byte; the sink commits only data whose
    // size and SHA-256 match what the console sent.
    runOn(
        m_context->fileQueue, m_mailbox,
        [job, failure, expected = request.sha256]() -> ZEKTIncomingFile::Committed {
            QString problem = failure.isEmpty() ? job->failure : failure;
            if (problem.isEmpty() && job->hash.result() != expected)
                problem = QStringLiteral("The SHA-256 checksum does not match; the file was "
                                         "discarded");
            job->finished = true;
            if (!problem.isEmpty()) {
                job->file->discard();
                return {false, problem};
            }
            ZEKTIncomingFile::Committed committed = job->file->commit();
            if (committed.success)
                committed.message = QStringLiteral("File received: %1").arg(committed.message);
            return committed;
        },
        [this, name](ZEKTIncomingFile::Committed verdict) {
            m_context->log(
                verdict.success
                    ? tr("Received %1 from %2: %3").arg(name, m_peer, verdict.message)
                    : tr("Upload of %1 from %2 failed: %3").arg(name, m_peer, verdict.message),
                QStringLiteral("FILE"));
            send(FileTransferResponseMessage(verdict.success, verdict.message));
        });
}

// ---- ending -----------------------------------------------------------------------------

void ZEKTServerSession::close(const QString &reason, bool tellPeer)
{
    if (m_phase == Phase::ended)
        return;
    const bool wasOpen = m_phase == Phase::open;
    if (tellPeer && m_channel && m_socket->state() == QAbstractSocket::ConnectedState)
        send(DisconnectMessage(reason));
    m_phase = Phase::ended;
    m_authTimer.stop();
    m_statsTimer.stop();
    stopStream();
    dropUpload();
    if (m_channel)
        m_channel->stop();
    if (wasOpen)
        --m_context->authenticated;
    else
        --m_context->unauthenticated;
    m_context->log(tr("Session with %1 closed: %2").arg(m_peer, reason), QStringLiteral("CONNECT"));
    Q_EMIT m_context->server->sessionClosed(m_peer, reason);

    m_socket->disconnect(this);
    connect(m_socket, &QSslSocket::disconnected, this, &QObject::deleteLater);
    // A peer that never reads cannot keep the session alive.
    QTimer::singleShot(2000, this, [this] {
        m_socket->abort();
        deleteLater();
    });
    m_socket->disconnectFromHost();
    if (m_socket->state() == QAbstractSocket::UnconnectedState)
        deleteLater();
}
