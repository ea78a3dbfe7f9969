#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QTcpServer>

class QTcpSocket;

// The crash-collection endpoint on 127.0.0.1: records every whole request (headers and a
// Content-Length body) with the monotonic time it was complete, and answers as told.
class CrashCollector : public QObject {
    Q_OBJECT

public:
    enum class Answer { ok, serverError, never };

    struct Request {
        QByteArray method;
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; // names in lower case
        QByteArray body;
        qint64 receivedNs = 0; // CLOCK_MONOTONIC
    };

    explicit CrashCollector(Answer answer, QObject *parent = nullptr);
    bool listen();
    QString base() const;

    const QList<Request> &requests() const { return m_requests; }

Q_SIGNALS:
    void received();

private:
    void read(QTcpSocket *socket);

    QTcpServer m_server;
    Answer m_answer;
    QList<Request> m_requests;
};

// CLOCK_MONOTONIC in nanoseconds: the same clock in the child and in the test.
qint64 monotonicNs();
