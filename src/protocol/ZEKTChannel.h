#pragma once

#include "ZEKTFrame.h"
#include "ZEKTFrameReader.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QSslSocket;

// The framed, heartbeating byte stream shared by both ends of a session. Reads frames as
// they arrive, answers the peer's heartbeats, sends its own at the heartbeat interval and
// reports a peer silent for the configured number of intervals.
class ZEKTChannel : public QObject {
    Q_OBJECT
public:
    // Bytes queued but not yet written above which the peer counts as not reading.
    static constexpr qint64 maximumBacklog = 64 * 1024 * 1024;

    ZEKTChannel(QSslSocket *socket, QObject *parent);

    void setMaximumFrameSize(qsizetype bytes) { m_reader.setMaximumFrameSize(bytes); }
    // Starts sending heartbeats and watching for silence.
    void startHeartbeats();
    bool send(const QByteArray &frame);
    qint64 backlog() const;
    // Stops timers and reading; send() still works for a last error or goodbye.
    void stop();
    // Reads whatever is buffered (after a signal connection was made late).
    void pump();
    // While paused no frame is read and the socket's buffer is capped, so the peer is held
    // back by TCP instead of filling our memory.
    void setReadingPaused(bool paused);

Q_SIGNALS:
    // Emitted for direct connections only; a receiver may move the body out.
    void frameReceived(ZEKTFrame &frame);
    // The stream is unusable: bad frame, backlog, silence. `code` is a POSIX error.
    void failed(const QString &description, int code);
    // Some queued bytes went out (for senders that keep the backlog small).
    void drained();

private:
    void readFrames();
    void checkSilence();

    QSslSocket *m_socket;
    ZEKTFrameReader m_reader;
    QTimer m_heartbeat;
    QTimer m_silenceCheck;
    QElapsedTimer m_lastReceived;
    qint64 m_silenceLimitMs = 0;
    bool m_stopped = false;
    bool m_reading = false;
    bool m_paused = false;
};
