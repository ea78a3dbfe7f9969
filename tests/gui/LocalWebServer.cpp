#include "LocalWebServer.h"

#include <QTcpSocket>

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

    const Response response =
        m_routes.value(path, Response{404, "Not found", "text/plain", {}, false});
    if (response.neverAnswers)
        return; // the socket stays open until the server goes
    // Browsers ignore the reason phrase.
    QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
    head += "Content-Type: " + response.contentType + "\r\n";
    head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\n";
    if (!response.location.isEmpty())
        head += "Location: " + response.location + "\r\n";
    head += "Cache-Control: no-store\r\nConnection: close\r\n\r\n";
    socket->write(head + response.body);
    socket->disconnectFromHost();
}
