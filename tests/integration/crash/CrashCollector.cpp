#include "CrashCollector.h"

#include <QTcpSocket>
#include <time.h>

qint64 monotonicNs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}

CrashCollector::CrashCollector(Answer answer, QObject *parent) : QObject(parent), m_answer(answer)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

bool CrashCollector::listen()
{
    return m_server.listen(QHostAddress::LocalHost);
}

QString CrashCollector::base() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort());
}

void CrashCollector::read(QTcpSocket *socket)
{
    QByteArray data = socket->property("pending").toByteArray() + socket->readAll();
    const qsizetype headerEnd = data.indexOf("\r\n\r\n");
    Request request;
    qsizetype length = 0;
    if (headerEnd >= 0) {
        const QList<QByteArray> lines = data.left(headerEnd).split('\n');
        const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
        request.method = requestLine.value(0);
        request.path = requestLine.value(1);
        for (qsizetype i = 1; i < lines.size(); ++i) {
            const qsizetype colon = lines[i].indexOf(':');
            if (colon > 0)
                request.headers.insert(lines[i].left(colon).trimmed().toLower(),
                                       lines[i].mid(colon + 1).trimmed());
        }
        length = request.headers.value("content-length").toLongLong();
    }
    if (headerEnd < 0 || data.size() < headerEnd + 4 + length) {
        socket->setProperty("pending", data);
        return;
    }
    socket->setProperty("pending", QByteArray());
    request.body = data.mid(headerEnd + 4, length);
    request.receivedNs = monotonicNs();
    m_requests.append(request);
    Q_EMIT received();
    if (m_answer == Answer::never)
        return;
    const QByteArray status = m_answer == Answer::ok ? "200 OK" : "500 Internal Server Error";
    socket->write("HTTP/1.1 " + status + "\r\nContent-Length: 2\r\nConnection: close\r\n\r\nok");
    socket->disconnectFromHost();
}
