#include "LocalWebServer.h"

#include <QBuffer>
#include <QFile>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <memory>

LocalWebServer::LocalWebServer(QObject *parent) : QObject(parent)
{
    connect(&m_server, &QTcpServer::newConnection, this, &LocalWebServer::accept);
}

bool LocalWebServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost);
}

QString LocalWebServer::base() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(port());
}

QUrl LocalWebServer::url(const QString &path, const QString &host) const
{
    return QUrl(QStringLiteral("http://%1:%2%3").arg(host).arg(port()).arg(path));
}

void LocalWebServer::route(const QString &path, const Response &response)
{
    m_routes.insert(path, response);
}

void LocalWebServer::routePage(const QString &path, const QByteArray &html)
{
    Response response;
    response.body = html;
    route(path, response);
}

void LocalWebServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        socket->setParent(this);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
}

void LocalWebServer::answer(QTcpSocket *socket)
{
    // The request line and headers; bodies are never needed here.
    QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    if (!request.contains("\r\n\r\n")) {
        socket->setProperty("request", request);
        return;
    }
    socket->setProperty("request", QByteArray());
    const QList<QByteArray> requestLine = request.left(request.indexOf("\r\n")).split(' ');
    const QString path = QUrl(QString::fromLatin1(requestLine.value(1))).path();
    ++m_requests[path];

    Response notFound;
    notFound.status = 404;
    notFound.body = "Not found";
    notFound.contentType = "text/plain";
    const Response response = m_routes.value(path, notFound);
    if (response.neverAnswers)
        return; // the socket stays open until the server goes
    // Browsers ignore the reason phrase.
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
    head += "Content-Type: " + response.contentType + "\r\n";
    std::shared_ptr<QIODevice> body;
    if (response.bodyFile.isEmpty())
        body = std::make_shared<QBuffer>();
    else
        body = std::make_shared<QFile>(response.bodyFile);
    if (auto *buffer = qobject_cast<QBuffer *>(body.get()))
        buffer->setData(response.body);
    if (!body->open(QIODevice::ReadOnly))
        qFatal("LocalWebServer: cannot read %s", qPrintable(response.bodyFile));
    const qint64 length = body->size();
    head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    head += response.extraHeaders;
    if (!response.location.isEmpty())
        head += "Location: " + response.location + "\r\n";
    head += "Cache-Control: no-store\r\nConnection: close\r\n\r\n";
    socket->write(head);
    m_sending.insert(socket, Sending{response, body, 0});
    connect(socket, &QTcpSocket::bytesWritten, this, [this, socket] {
        if (!m_sending.value(socket).response.bytesPerTick)
            sendMore(socket);
    });
    connect(socket, &QObject::destroyed, this, [this, socket] { m_sending.remove(socket); });
    if (response.bytesPerTick) {
        auto *timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, this, [this, socket] { sendMore(socket); });
        timer->start(10);
    }
    sendMore(socket);
}

void LocalWebServer::sendMore(QTcpSocket *socket)
{
    if (!m_sending.contains(socket))
        return;
    Sending &sending = m_sending[socket];
    const Response &response = sending.response;
    // Keep a little queued, so throttling and cut-offs stay near their byte counts.
    if (!response.bytesPerTick && socket->bytesToWrite() > 256 * 1024)
        return;
    qint64 limit = sending.body->size();
    if (response.cutAfter >= 0)
        limit = std::min(limit, response.cutAfter);
    if (response.stallAfter >= 0)
        limit = std::min(limit, response.stallAfter);
    const qint64 chunk = response.bytesPerTick ? response.bytesPerTick : 256 * 1024;
    const qint64 count = std::min(chunk, limit - sending.sent);
    if (count > 0) {
        sending.sent += socket->write(sending.body->read(count));
        return;
    }
    if (sending.sent >= sending.body->size() || sending.sent == response.cutAfter) {
        m_sending.remove(socket);
        if (response.cutAfter >= 0 && response.cutAfter < sending.body->size())
            socket->abort();
        else
            socket->disconnectFromHost();
    }
    // Stalled: the socket stays open until the server goes.
}
