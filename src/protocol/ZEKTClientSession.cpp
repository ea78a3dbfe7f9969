#include "ZEKTClientSession.h"

#include "AuthenticationResponseMessage.h"
#include "DisconnectMessage.h"
#include "ErrorMessage.h"
#include "FileTransferResponseMessage.h"
#include "HandshakeResponseMessage.h"
#include "ScreenCaptureMessage.h"
#include "ZEKTChannel.h"
#include "ZEKTCommandResultMessage.h"
#include "ZEKTFileReadyMessage.h"
#include "ZEKTIdentity.h"
#include "ZEKTIoThreads.h"
#include "ZEKTKnownAgents.h"
#include "ZEKTMessageCodec.h"

#include <QFileInfo>
#include <QHostInfo>
#include <QSocketNotifier>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QThreadPool>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {
constexpr qint64 uploadChunk = 1024 * 1024;
constexpr qint64 uploadBacklog = 4 * 1024 * 1024;
constexpr int networkRetryMs = 1000;

int toMs(double seconds)
{
    return qMax(1, static_cast<int>(seconds * 1000.0));
}

QString errnoText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

int socketErrorCode(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::RemoteHostClosedError:
        return ECONNRESET;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return EPROTO;
    case QAbstractSocket::NetworkError:
        return ENETDOWN;
    case QAbstractSocket::SocketTimeoutError:
        return ETIMEDOUT;
    default:
        return EIO;
    }
}
} // namespace

ZEKTClientSession::Promise ZEKTClientSession::makePromise()
{
    // A promise dropped unsettled (its session went away first) fails instead of being
    // cancelled, so every future the console holds ends in a result or a readable error.
    Promise promise(new QPromise<void>, [](QPromise<void> *p) {
        if (!p->future().isFinished()) {
            p->setException(ZEKTError(QStringLiteral("The session was closed")));
            p->finish();
        }
        delete p;
    });
    promise->start();
    return promise;
}

void ZEKTClientSession::fail(const Promise &promise, const QString &description, int code)
{
    if (!promise || promise->future().isFinished())
        return;
    promise->setException(ZEKTError(description, QStringLiteral("ZEKT"), code));
    promise->finish();
}

ZEKTClientSession::ZEKTClientSession(const QString &host, quint16 port,
                                     std::shared_ptr<ZEKTClientCallbacks> callbacks)
    : m_host(host), m_port(port), m_endpoint(ZEKTKnownAgents::endpoint(host, port)),
      m_callbacks(std::move(callbacks)), m_mailbox(std::make_shared<ZEKTMailbox>(this)),
      m_connectTimer(this), m_retryTimer(this), m_handshakeTimer(this), m_identityTimer(this),
      m_authTimer(this)
{
    for (QTimer *timer :
         {&m_connectTimer, &m_retryTimer, &m_handshakeTimer, &m_identityTimer, &m_authTimer})
        timer->setSingleShot(true);
    connect(&m_connectTimer, &QTimer::timeout, this, [this] {
        const int code = m_reportedWaiting ? ENETDOWN : ETIMEDOUT;
        end(tr("Connecting to %1 timed out after %2 seconds%3")
                .arg(m_endpoint)
                .arg(ZEKT::connectionTimeout())
                .arg(m_reportedWaiting ? tr(" (network is down)") : QString()),
            code);
    });
    connect(&m_retryTimer, &QTimer::timeout, this, [this] {
        m_addressIndex = 0;
        attemptConnect();
    });
    connect(&m_handshakeTimer, &QTimer::timeout, this, [this] {
        end(tr("The handshake with %1 timed out after %2 seconds")
                .arg(m_endpoint)
                .arg(ZEKT::handshakeTimeout()),
            ETIMEDOUT);
    });
    connect(&m_identityTimer, &QTimer::timeout, this, [this] {
        end(tr("The changed identity of %1 was not confirmed in time").arg(m_endpoint), ETIMEDOUT);
    });
    connect(&m_authTimer, &QTimer::timeout, this, [this] {
        fail(m_authPromise, tr("%1 did not answer the authentication in time").arg(m_endpoint),
             ETIMEDOUT);
        m_authPromise.reset();
    });
}

ZEKTClientSession::~ZEKTClientSession()
{
    m_mailbox->close();
    if (m_fd >= 0)
        ::close(m_fd);
    failPending(tr("The session was closed"));
}

void ZEKTClientSession::log(const QString &text, const QString &category)
{
    m_callbacks->log(text, category);
}

void ZEKTClientSession::setState(ZEKT::ConnectionState state)
{
    if (!m_callbacks->isClosed())
        m_callbacks->setState(state);
}

// ---- connecting -------------------------------------------------------------------------

void ZEKTClientSession::connectToAgent(const Promise &promise)
{
    if (m_phase != Phase::idle) {
        fail(promise, tr("connect() was already called on this client"));
        return;
    }
    m_connectPromise = promise;
    m_phase = Phase::resolving;
    setState(ZEKT::ConnectionState::connecting);
    log(tr("Connecting to %1").arg(m_endpoint), QStringLiteral("CONNECT"));
    m_callbacks->stateUpdate(NetworkState::preparing());
    m_connectTimer.start(toMs(ZEKT::connectionTimeout()));

    QHostAddress literal;
    if (literal.setAddress(m_host)) {
        startResolved({literal});
        return;
    }
    QHostInfo::lookupHost(m_host, this, [this](const QHostInfo &info) {
        if (m_phase != Phase::resolving)
            return;
        if (info.error() != QHostInfo::NoError || info.addresses().isEmpty()) {
            end(tr("Cannot resolve %1: %2").arg(m_host, info.errorString()), EHOSTUNREACH);
            return;
        }
        startResolved(info.addresses());
    });
}

void ZEKTClientSession::startResolved(const QList<QHostAddress> &addresses)
{
    m_addresses = addresses;
    m_addressIndex = 0;
    m_phase = Phase::connecting;
    attemptConnect();
}

void ZEKTClientSession::attemptConnect()
{
    if (m_phase != Phase::connecting)
        return;
    const QHostAddress &address = m_addresses.at(m_addressIndex);
    sockaddr_storage storage{};
    socklen_t length = 0;
    if (address.protocol() == QAbstractSocket::IPv4Protocol) {
        auto *in = reinterpret_cast<sockaddr_in *>(&storage);
        in->sin_family = AF_INET;
        in->sin_port = htons(m_port);
        in->sin_addr.s_addr = htonl(address.toIPv4Address());
        length = sizeof(sockaddr_in);
    } else {
        auto *in6 = reinterpret_cast<sockaddr_in6 *>(&storage);
        in6->sin6_family = AF_INET6;
        in6->sin6_port = htons(m_port);
        const Q_IPV6ADDR bytes = address.toIPv6Address();
        memcpy(&in6->sin6_addr, bytes.c, sizeof bytes.c);
        in6->sin6_scope_id = address.scopeId().toUInt();
        length = sizeof(sockaddr_in6);
    }
    // A non-blocking ::connect of our own gives the real errno (network down, refused),
    // which the Qt socket would hide; the connected descriptor is handed over afterwards.
    const int fd = ::socket(storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        connectError(errno);
        return;
    }
    if (::connect(fd, reinterpret_cast<sockaddr *>(&storage), length) == 0) {
        tcpConnected(fd);
        return;
    }
    if (errno != EINPROGRESS) {
        const int error = errno;
        ::close(fd);
        connectError(error);
        return;
    }
    m_fd = fd;
    m_notifier = new QSocketNotifier(fd, QSocketNotifier::Write, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        int error = 0;
        socklen_t size = sizeof error;
        if (::getsockopt(m_fd, SOL_SOCKET, SO_ERROR, &error, &size) != 0)
            error = errno;
        connectFinished(m_fd, error);
    });
}

void ZEKTClientSession::connectFinished(int fd, int error)
{
    m_notifier->setEnabled(false);
    m_notifier->deleteLater();
    m_notifier = nullptr;
    m_fd = -1;
    if (error == 0) {
        tcpConnected(fd);
        return;
    }
    ::close(fd);
    connectError(error);
}

void ZEKTClientSession::connectError(int error)
{
    m_lastError = error;
    if (error == ENETDOWN || error == ENETUNREACH) {
        if (!m_reportedWaiting) {
            m_reportedWaiting = true;
            log(tr("Network is down while connecting to %1; retrying").arg(m_endpoint),
                QStringLiteral("WARN"));
            m_callbacks->stateUpdate(NetworkState::waiting(ENETDOWN, errnoText(ENETDOWN)));
        }
        m_retryTimer.start(networkRetryMs);
        return;
    }
    if (++m_addressIndex < m_addresses.size()) {
        attemptConnect();
        return;
    }
    end(tr("Cannot connect to %1: %2").arg(m_endpoint, errnoText(error)), error);
}

void ZEKTClientSession::tcpConnected(int fd)
{
    m_connectTimer.stop();
    m_retryTimer.stop();
    m_phase = Phase::tls;
    m_socket = new QSslSocket(this);
    if (!m_socket->setSocketDescriptor(fd, QAbstractSocket::ConnectedState)) {
        ::close(fd);
        end(tr("Cannot use the connection to %1: %2").arg(m_endpoint, m_socket->errorString()),
            EIO);
        return;
    }
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_3);
    // Agents are self-signed: the chain is not checked, the pinned SPKI fingerprint is.
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    tls.setCaCertificates({});
    m_socket->setSslConfiguration(tls);
    connect(m_socket, &QSslSocket::sslErrors, m_socket,
            [this](const QList<QSslError> &) { m_socket->ignoreSslErrors(); });
    connect(m_socket, &QSslSocket::encrypted, this, &ZEKTClientSession::encrypted);
    connect(m_socket, &QSslSocket::errorOccurred, this, [this](QAbstractSocket::SocketError error) {
        if (error == QAbstractSocket::RemoteHostClosedError && m_phase == Phase::open)
            return; // reported by disconnected()
        end(tr("Connection to %1 failed: %2").arg(m_endpoint, m_socket->errorString()),
            socketErrorCode(error));
    });
    connect(m_socket, &QSslSocket::disconnected, this,
            [this] { end(tr("%1 closed the connection").arg(m_endpoint), ECONNRESET); });
    m_handshakeTimer.start(toMs(ZEKT::handshakeTimeout()));
    m_socket->startClientEncryption();
}

// ---- identity ---------------------------------------------------------------------------

void ZEKTClientSession::encrypted()
{
    if (m_phase != Phase::tls)
        return;
    if (m_socket->sessionProtocol() != QSsl::TlsV1_3) {
        end(tr("%1 did not negotiate TLS 1.3").arg(m_endpoint), EPROTO);
        return;
    }
    const QString current = ZEKTIdentity::fingerprintOf(m_socket->peerCertificate());
    if (current.isEmpty()) {
        end(tr("%1 presented no usable certificate").arg(m_endpoint), EPROTO);
        return;
    }
    const ZEKTKnownAgents::Trust trust = ZEKTKnownAgents::trustOnFirstUse(m_endpoint, current);
    switch (trust.kind) {
    case ZEKTKnownAgents::Trust::Kind::error:
        end(trust.error, EIO);
        return;
    case ZEKTKnownAgents::Trust::Kind::firstUse:
        log(tr("Trusting %1 on first use, identity %2").arg(m_endpoint, current),
            QStringLiteral("CONNECT"));
        beginHandshake();
        return;
    case ZEKTKnownAgents::Trust::Kind::unchanged:
        beginHandshake();
        return;
    case ZEKTKnownAgents::Trust::Kind::changed:
        askIdentity(trust.previous, current);
        return;
    }
}

void ZEKTClientSession::askIdentity(const QString &previous, const QString &current)
{
    log(tr("The identity of %1 changed from %2 to %3").arg(m_endpoint, previous, current),
        QStringLiteral("WARN"));
    const ZEKTClient::IdentityMismatchHandler handler = m_callbacks->identityMismatchHandler();
    if (!handler) {
        end(tr("The identity of %1 changed and nobody confirmed the new one; the connection "
               "was refused")
                .arg(m_endpoint),
            EPERM);
        return;
    }
    // The prompt may wait for a person; the handshake clock stops meanwhile and resumes
    // with what was left.
    m_phase = Phase::identity;
    m_handshakeRemainingMs = qMax(1, m_handshakeTimer.remainingTime());
    m_handshakeTimer.stop();
    m_identityTimer.start(toMs(ZEKT::serverIdentityPromptTimeout() + 1.0));
    const int token = ++m_identityToken;
    // A thread of this session alone, never joined: disconnect() must not wait for a person.
    std::weak_ptr<ZEKTMailbox> box = m_mailbox;
    std::thread([handler, previous, current, box, token, self = this] {
        bool trusted = false;
        try {
            trusted = handler(previous, current);
        } catch (...) {
            trusted = false;
        }
        if (const auto mailbox = box.lock())
            mailbox->post([self, token, trusted, current] {
                self->identityAnswered(token, trusted, current);
            });
    }).detach();
}

void ZEKTClientSession::identityAnswered(int token, bool trusted, const QString &current)
{
    if (token != m_identityToken || m_phase != Phase::identity)
        return;
    m_identityTimer.stop();
    if (!trusted) {
        end(tr("The new identity of %1 was rejected").arg(m_endpoint), EPERM);
        return;
    }
    if (const auto error = ZEKTKnownAgents::store(m_endpoint, current)) {
        end(*error, EIO);
        return;
    }
    log(tr("Trusting the new identity of %1: %2").arg(m_endpoint, current),
        QStringLiteral("CONNECT"));
    m_handshakeTimer.start(m_handshakeRemainingMs);
    beginHandshake();
}

// ---- handshake and frames ---------------------------------------------------------------

void ZEKTClientSession::beginHandshake()
{
    m_phase = Phase::handshake;
    setState(ZEKT::ConnectionState::handshaking);
    m_callbacks->stateUpdate(NetworkState::ready());
    m_channel = new ZEKTChannel(m_socket, this);
    m_channel->setMaximumFrameSize(ZEKTFrame::maximumSizeBeforeAuthentication);
    connect(m_channel, &ZEKTChannel::frameReceived, this, &ZEKTClientSession::onFrame);
    connect(m_channel, &ZEKTChannel::failed, this,
            [this](const QString &description, int code) { end(description, code); });
    connect(m_channel, &ZEKTChannel::drained, this, &ZEKTClientSession::pumpUpload);
    ZEKTRequest hello;
    hello.kind = ZEKTRequest::Kind::hello;
    hello.protocolVersions = supportedVersions();
    hello.clientName = QStringLiteral("Telvane");
    send(hello);
    m_channel->pump();
}

bool ZEKTClientSession::send(const ZEKTRequest &request)
{
    return m_channel && m_channel->send(ZEKTMessageCodec::encodeRequest(request));
}

void ZEKTClientSession::onFrame(ZEKTFrame &frame)
{
    if (m_phase == Phase::ended)
        return;
    ZEKTMessageCodec::Decoded<ZEKTMessagePtr> decoded = ZEKTMessageCodec::decodeMessage(frame);
    if (decoded.skipped) {
        log(tr("Skipped a frame of unknown type %1 from %2").arg(frame.type).arg(m_endpoint),
            QStringLiteral("WARN"));
        return;
    }
    if (!decoded.error.isEmpty()) {
        end(tr("%1 sent a malformed frame: %2").arg(m_endpoint, decoded.error), EPROTO);
        return;
    }
    const ZEKTMessagePtr &message = decoded.value;
    using Type = ZEKTMessage::Type;
    const Type type = message->type();

    // Before the handshake only errors and a disconnect make sense; pass them on.
    if (m_phase != Phase::open && type != Type::handshakeResponse && type != Type::error &&
        type != Type::disconnect) {
        end(tr("%1 sent %2 before the handshake").arg(m_endpoint, message->typeName()), EPROTO);
        return;
    }

    switch (type) {
    case Type::handshakeResponse: {
        const auto &handshake = static_cast<const HandshakeResponseMessage &>(*message);
        if (m_phase != Phase::handshake) {
            end(tr("%1 sent an unexpected handshake response").arg(m_endpoint), EPROTO);
            return;
        }
        if (!supportedVersions().contains(handshake.protocolVersion)) {
            end(tr("%1 chose protocol version %2, which this console does not speak")
                    .arg(m_endpoint)
                    .arg(handshake.protocolVersion),
                EPROTONOSUPPORT);
            return;
        }
        m_handshakeTimer.stop();
        m_phase = Phase::open;
        setState(ZEKT::ConnectionState::authenticating);
        m_channel->startHeartbeats();
        m_callbacks->message(message);
        if (m_connectPromise)
            m_connectPromise->finish();
        m_connectPromise.reset();
        return;
    }
    case Type::authenticationResponse: {
        const auto &auth = static_cast<const AuthenticationResponseMessage &>(*message);
        m_authTimer.stop();
        m_callbacks->message(message);
        if (!m_authPromise) {
            log(tr("Ignored an authentication response nobody asked for"), "WARN");
            return;
        }
        if (auth.success) {
            m_channel->setMaximumFrameSize(ZEKTFrame::maximumSize);
            setState(ZEKT::ConnectionState::connected);
            log(tr("Authenticated to %1").arg(m_endpoint), QStringLiteral("AUTH"));
            m_authPromise->finish();
        } else {
            fail(m_authPromise, auth.reason.isEmpty() ? tr("Authentication failed") : auth.reason,
                 EACCES);
        }
        m_authPromise.reset();
        return;
    }
    case Type::commandResult: {
        const auto &result = static_cast<const ZEKTCommandResultMessage &>(*message);
        const auto it = m_commands.find(result.requestId);
        if (it == m_commands.end()) {
            log(tr("Ignored the result of unknown request %1").arg(result.requestId), "WARN");
            return;
        }
        const Promise promise = it->second;
        m_commands.erase(it);
        if (result.success)
            promise->finish();
        else
            fail(promise, result.error.isEmpty() ? tr("The agent could not carry out the command")
                                                 : result.error);
        return;
    }
    case Type::fileReady: {
        const auto &ready = static_cast<const ZEKTFileReadyMessage &>(*message);
        uploadReady(ready.transferId, ready.accepted, ready.reason);
        return;
    }
    case Type::screenCapture: {
        // The agent may send the next frame once the console let go of this one.
        const quint64 number = static_cast<const ScreenCaptureMessage &>(*message).frameNumber;
        std::weak_ptr<ZEKTMailbox> box = m_mailbox;
        ZEKTMessagePtr tracked(message.get(),
                               [message, box, number, self = this](const ZEKTMessage *) {
                                   if (const auto mailbox = box.lock())
                                       mailbox->post([self, number] { self->acknowledge(number); });
                               });
        m_callbacks->message(tracked);
        return;
    }
    case Type::disconnect:
        m_callbacks->message(message);
        end(tr("%1 closed the session: %2")
                .arg(m_endpoint, static_cast<const DisconnectMessage &>(*message).reason),
            ECONNRESET, true);
        return;
    case Type::fileTransferResponse:
        if (!m_uploads.empty() && m_uploads.front()->step == Upload::Step::awaitingVerdict) {
            m_uploads.pop_front();
            startNextUpload();
        }
        break;
    case Type::systemStats:
    case Type::error:
    case Type::heartbeat:
    case Type::heartbeatResponse:
        break;
    }
    m_callbacks->message(message);
}

void ZEKTClientSession::acknowledge(quint64 frameNumber)
{
    if (m_phase != Phase::open)
        return;
    ZEKTRequest ack;
    ack.kind = ZEKTRequest::Kind::frameAck;
    ack.frameNumber = frameNumber;
    send(ack);
}

// ---- authentication and commands --------------------------------------------------------

void ZEKTClientSession::authenticate(const QString &username, const QString &password,
                                     const Promise &promise)
{
    if (m_phase != Phase::open) {
        fail(promise, tr("Not connected to %1").arg(m_endpoint), ENOTCONN);
        return;
    }
    if (m_authPromise) {
        fail(promise, tr("An authentication is already in progress"), EALREADY);
        return;
    }
    m_authPromise = promise;
    ZEKTRequest request;
    request.kind = ZEKTRequest::Kind::authenticate;
    request.username = username;
    request.password = password;
    log(tr("Authenticating to %1 as %2").arg(m_endpoint, username), QStringLiteral("AUTH"));
    send(request);
    m_authTimer.start(toMs(ZEKT::protocolTimings().authenticationTimeout));
}

void ZEKTClientSession::sendCommand(ZEKTRequest request, const Promise &promise)
{
    if (m_phase != Phase::open || m_callbacks->state() != ZEKT::ConnectionState::connected) {
        fail(promise, tr("Not connected to %1").arg(m_endpoint), ENOTCONN);
        return;
    }
    request.requestId = m_nextRequestId++;
    m_commands.emplace(request.requestId, promise);
    send(request);
}

// ---- file upload ------------------------------------------------------------------------

void ZEKTClientSession::sendFile(const QString &path, const std::optional<QString> &remoteName,
                                 ZEKTClient::ProgressFunction progress, const Promise &promise)
{
    if (m_phase != Phase::open || m_callbacks->state() != ZEKT::ConnectionState::connected) {
        fail(promise, tr("Not connected to %1").arg(m_endpoint), ENOTCONN);
        return;
    }
    const QFileInfo info(path);
    if (!info.isFile()) {
        fail(promise, tr("%1 is not a readable file").arg(path), ENOENT);
        return;
    }
    if (info.size() > ZEKT::maxFileTransferSize) {
        fail(promise,
             tr("%1 is %2 bytes, more than the limit of 256 MiB").arg(path).arg(info.size()),
             EFBIG);
        return;
    }
    auto upload = std::make_unique<Upload>();
    upload->file = std::make_unique<QFile>(path);
    if (!upload->file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        fail(promise, tr("Cannot read %1: %2").arg(path, upload->file->errorString()), EACCES);
        return;
    }
    upload->id = m_nextRequestId++;
    upload->name = remoteName && !remoteName->isEmpty() ? *remoteName : info.fileName();
    upload->size = info.size();
    upload->promise = promise;
    upload->progress = std::move(progress);
    m_uploads.push_back(std::move(upload));
    startNextUpload();
}

void ZEKTClientSession::startNextUpload()
{
    if (m_uploads.empty() || m_uploads.front()->step != Upload::Step::queued)
        return;
    Upload &upload = *m_uploads.front();
    upload.step = Upload::Step::awaitingReady;
    ZEKTRequest begin;
    begin.kind = ZEKTRequest::Kind::fileBegin;
    begin.requestId = upload.id;
    begin.fileName = upload.name;
    begin.fileSize = upload.size;
    log(tr("Offering %1 (%2 bytes) to %3").arg(upload.name).arg(upload.size).arg(m_endpoint),
        QStringLiteral("FILE"));
    send(begin);
}

void ZEKTClientSession::uploadReady(quint64 id, bool accepted, const QString &reason)
{
    if (m_uploads.empty() || m_uploads.front()->id != id ||
        m_uploads.front()->step != Upload::Step::awaitingReady) {
        log(tr("Ignored a transfer reply for unknown transfer %1").arg(id), "WARN");
        return;
    }
    Upload &upload = *m_uploads.front();
    if (!accepted) {
        fail(upload.promise, tr("The agent refused the file: %1").arg(reason), EPERM);
        m_uploads.pop_front();
        startNextUpload();
        return;
    }
    upload.step = Upload::Step::sending;
    uploadProgress(upload, 0.0);
    pumpUpload();
}

void ZEKTClientSession::uploadProgress(Upload &upload, double fraction)
{
    if (upload.progress && !m_callbacks->isClosed())
        upload.progress(fraction);
}

void ZEKTClientSession::pumpUpload()
{
    if (m_uploads.empty() || !m_channel)
        return;
    Upload &upload = *m_uploads.front();
    if (upload.step == Upload::Step::flushing && m_channel->backlog() == 0) {
        upload.step = Upload::Step::awaitingVerdict;
        uploadProgress(upload, 1.0);
        upload.promise->finish();
        return;
    }
    // Only a little is queued at a time, so progress follows what really left and the
    // heartbeats are never stuck behind megabytes of file data.
    while (upload.step == Upload::Step::sending && m_channel->backlog() < uploadBacklog) {
        const qint64 want = qMin(uploadChunk, upload.size - upload.sent);
        if (want > 0) {
            // The file is read straight into the frame that goes out.
            ZEKTMessageCodec::ChunkFrame chunk = ZEKTMessageCodec::fileChunkFrame(upload.id, want);
            char *data = chunk.frame.data() + chunk.dataOffset;
            qint64 got = 0;
            while (got < want) {
                const qint64 n = upload.file->read(data + got, want - got);
                if (n <= 0)
                    break;
                got += n;
            }
            if (got == want) {
                // Hashed beside the I/O thread: the frame is shared, not copied.
                hashPool()->start([hash = upload.hash, frame = chunk.frame,
                                   offset = chunk.dataOffset,
                                   want] { hash->addData(frame.constData() + offset, want); });
                upload.sent += want;
                m_channel->send(chunk.frame);
                if (upload.sent < upload.size)
                    uploadProgress(upload, static_cast<double>(upload.sent) / upload.size);
                continue;
            }
            // The file shrank or failed: the end goes out early, the agent sees the short
            // size and discards what it got.
            fail(upload.promise,
                 tr("Cannot read %1 completely: %2")
                     .arg(upload.file->fileName(), upload.file->errorString()),
                 EIO);
            upload.sent = upload.size;
        }
        // The end goes out once the hash of every chunk is known.
        upload.file->close();
        upload.step = Upload::Step::hashing;
        hashPool()->start([hash = upload.hash, box = std::weak_ptr<ZEKTMailbox>(m_mailbox),
                           id = upload.id, self = this] {
            const QByteArray digest = hash->result();
            if (const auto mailbox = box.lock())
                mailbox->post([self, id, digest] { self->uploadHashed(id, digest); });
        });
    }
    if (upload.step == Upload::Step::flushing && m_channel->backlog() == 0)
        pumpUpload();
}

void ZEKTClientSession::uploadHashed(quint64 id, const QByteArray &digest)
{
    if (m_phase != Phase::open || m_uploads.empty() || m_uploads.front()->id != id ||
        m_uploads.front()->step != Upload::Step::hashing)
        return;
    Upload &upload = *m_uploads.front();
    ZEKTRequest end;
    end.requestId = upload.id;
    end.kind = ZEKTRequest::Kind::fileEnd;
    end.sha256 = digest;
    send(end);
    upload.step = upload.promise->future().isFinished() ? Upload::Step::awaitingVerdict
                                                        : Upload::Step::flushing;
    pumpUpload();
}

QThreadPool *ZEKTClientSession::hashPool()
{
    // One thread for all uploads of the process, so the chunks of one upload are hashed in
    // order. Never destroyed: a hash still running at exit holds only shared data.
    static QThreadPool *pool = [] {
        auto *p = new QThreadPool;
        p->setMaxThreadCount(1);
        p->setExpiryTimeout(-1);
        return p;
    }();
    return pool;
}

// ---- ending -----------------------------------------------------------------------------

void ZEKTClientSession::failPending(const QString &description)
{
    fail(m_connectPromise, description);
    m_connectPromise.reset();
    fail(m_authPromise, description);
    m_authPromise.reset();
    for (auto &[id, promise] : m_commands)
        fail(promise, description);
    m_commands.clear();
    for (auto &upload : m_uploads)
        fail(upload->promise, description);
    m_uploads.clear();
}

void ZEKTClientSession::closeSocket(bool tellAgent)
{
    if (m_notifier) {
        m_notifier->setEnabled(false);
        delete m_notifier;
        m_notifier = nullptr;
    }
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (m_channel)
        m_channel->stop();
    if (!m_socket)
        return;
    QSslSocket *socket = m_socket;
    m_socket = nullptr;
    socket->disconnect(this);
    if (m_channel) {
        m_channel->disconnect(this);
        if (tellAgent && socket->state() == QAbstractSocket::ConnectedState &&
            socket->isEncrypted()) {
            ZEKTRequest bye;
            bye.kind = ZEKTRequest::Kind::disconnect;
            bye.reason = tr("The console closed the session");
            socket->write(ZEKTMessageCodec::encodeRequest(bye));
        }
    }
    // The socket outlives the session long enough to flush the goodbye.
    socket->setParent(ZEKTIoThreads::keeper());
    if (m_channel)
        m_channel->setParent(socket);
    m_channel = nullptr;
    connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
    QTimer::singleShot(2000, socket, [socket] {
        socket->abort();
        socket->deleteLater();
    });
    socket->disconnectFromHost();
}

void ZEKTClientSession::end(const QString &description, int code, bool cancelled)
{
    if (m_phase == Phase::ended)
        return;
    m_phase = Phase::ended;
    for (QTimer *timer :
         {&m_connectTimer, &m_retryTimer, &m_handshakeTimer, &m_identityTimer, &m_authTimer})
        timer->stop();
    setState(ZEKT::ConnectionState::closed);
    closeSocket(false);
    log(description, cancelled ? QStringLiteral("CONNECT") : QStringLiteral("ERROR"));
    m_callbacks->stateUpdate(cancelled ? NetworkState::cancelled()
                                       : NetworkState::failed(code, description));
    failPending(description);
}

void ZEKTClientSession::shutdown()
{
    m_phase = Phase::ended;
    for (QTimer *timer :
         {&m_connectTimer, &m_retryTimer, &m_handshakeTimer, &m_identityTimer, &m_authTimer})
        timer->stop();
    closeSocket(true);
    failPending(tr("The session was closed"));
    deleteLater();
}
