#include "ZEKTChannel.h"

#include "ZEKT.h"
#include "ZEKTFrameType.h"

#include <QCborMap>
#include <QSslSocket>

#include <cerrno>

ZEKTChannel::ZEKTChannel(QSslSocket *socket, QObject *parent) : QObject(parent), m_socket(socket)
{
    m_lastReceived.start();
    // Small messages (input events, frame acknowledgements) go out at once: with Nagle's
    // algorithm an input event waited behind an unacknowledged ack until the peer's next
    // frame carried the TCP acknowledgement, up to a frame interval later.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QSslSocket::readyRead, this, &ZEKTChannel::readFrames);
    connect(m_socket, &QSslSocket::bytesWritten, this, &ZEKTChannel::drained);
    connect(m_socket, &QSslSocket::encryptedBytesWritten, this, &ZEKTChannel::drained);
    connect(&m_heartbeat, &QTimer::timeout, this, [this] {
        send(ZEKTFrame::encode(static_cast<quint16>(ZEKTFrameType::heartbeat), {}));
    });
    connect(&m_silenceCheck, &QTimer::timeout, this, &ZEKTChannel::checkSilence);
}

void ZEKTChannel::startHeartbeats()
{
    const ZEKT::ProtocolTimings timings = ZEKT::protocolTimings();
    const int intervalMs = qMax(1, static_cast<int>(timings.heartbeatInterval * 1000.0));
    m_silenceLimitMs = static_cast<qint64>(intervalMs) * qMax(1, timings.silentIntervals);
    m_lastReceived.restart();
    m_heartbeat.start(intervalMs);
    m_silenceCheck.start(qMax(1, intervalMs / 4));
}

bool ZEKTChannel::send(const QByteArray &frame)
{
    // Still allowed after stop(): the last words (an error, a goodbye) go out that way.
    if (m_socket->state() != QAbstractSocket::ConnectedState)
        return false;
    if (backlog() + frame.size() > maximumBacklog) {
        if (m_stopped)
            return false;
        stop();
        Q_EMIT failed(tr("The peer stopped reading (more than %1 MiB waiting to be sent)")
                          .arg(maximumBacklog / (1024 * 1024)),
                      ENOBUFS);
        return false;
    }
    m_socket->write(frame);
    return true;
}

qint64 ZEKTChannel::backlog() const
{
    return m_socket->bytesToWrite() + m_socket->encryptedBytesToWrite();
}

void ZEKTChannel::stop()
{
    m_stopped = true;
    m_heartbeat.stop();
    m_silenceCheck.stop();
}

void ZEKTChannel::pump()
{
    readFrames();
}

void ZEKTChannel::setReadingPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    m_socket->setReadBufferSize(paused ? 1024 * 1024 : 0);
    if (!paused)
        QMetaObject::invokeMethod(this, &ZEKTChannel::readFrames, Qt::QueuedConnection);
}

void ZEKTChannel::readFrames()
{
    // A handler may end the session from inside frameReceived; never re-enter.
    if (m_reading)
        return;
    m_reading = true;
    while (!m_stopped && !m_paused) {
        ZEKTFrame frame;
        const ZEKTFrameReader::Status status = m_reader.read(*m_socket, frame);
        if (status == ZEKTFrameReader::Status::needMore)
            break;
        if (status == ZEKTFrameReader::Status::error) {
            stop();
            Q_EMIT failed(m_reader.errorString(), EPROTO);
            break;
        }
        m_lastReceived.restart();
        if (frame.type == static_cast<quint16>(ZEKTFrameType::heartbeat))
            send(ZEKTFrame::encode(static_cast<quint16>(ZEKTFrameType::heartbeatResponse), {}));
        Q_EMIT frameReceived(frame);
    }
    m_reading = false;
}

void ZEKTChannel::checkSilence()
{
    // A pause is ours, not the peer's silence.
    if (m_paused)
        m_lastReceived.restart();
    if (m_stopped || m_lastReceived.elapsed() < m_silenceLimitMs)
        return;
    stop();
    Q_EMIT failed(tr("The peer sent nothing for %1 seconds; the session timed out")
                      .arg(m_silenceLimitMs / 1000.0),
                  ETIMEDOUT);
}
