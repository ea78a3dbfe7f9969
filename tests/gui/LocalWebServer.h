#pragma once

#include <QHash>
#include <QTcpServer>
#include <QUrl>

#include <memory>

class QTcpSocket;

// A small HTTP/1.1 server on 127.0.0.1 for web view tests: fixed responses by path, redirects,
// and paths that accept the request and never answer; bodies can be throttled, cut off or
// stalled part-way. Each response closes its connection.
class LocalWebServer : public QObject {
    Q_OBJECT

public:
    struct Response {
        int status = 200;
        QByteArray body;
        QByteArray contentType = "text/html; charset=utf-8";
        QByteArray location; // for redirects
        bool neverAnswers = false;
        QByteArray extraHeaders; // whole lines, each ending in "\r\n"
        // A body read from this file instead of `body` (large downloads).
        QString bodyFile;
        // Bytes per 10 ms round; 0 sends as fast as the socket takes them.
        qint64 bytesPerTick = 0;
        // After this many body bytes the connection is closed (cut off: the announced length
        // stays the whole body's) or left open without another byte (stalled); -1: never.
        qint64 cutAfter = -1;
        qint64 stallAfter = -1;
    };

    explicit LocalWebServer(QObject *parent = nullptr);

    bool listen();
    quint16 port() const { return m_server.serverPort(); }
    // `host` may name 127.0.0.1 another way ("localhost"), which a browser counts as another
    // host.
    QUrl url(const QString &path, const QString &host = QStringLiteral("127.0.0.1")) const;
    QString base() const; // "http://127.0.0.1:<port>"

    void route(const QString &path, const Response &response);
    void routePage(const QString &path, const QByteArray &html);
    int requestCount(const QString &path) const { return m_requests.value(path); }

private:
    void accept();
    void answer(QTcpSocket *socket);
    void sendMore(QTcpSocket *socket);

    struct Sending {
        Response response;
        std::shared_ptr<QIODevice> body;
        qint64 sent = 0;
    };

    QTcpServer m_server;
    QHash<QTcpSocket *, Sending> m_sending;
    QHash<QString, Response> m_routes;
    QHash<QString, int> m_requests;
};
