#pragma once

#include <QHash>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

// A small HTTP/1.1 server on 127.0.0.1 for web view tests: fixed responses by path, redirects,
// and paths that accept the request and never answer. Each response closes its connection.
class LocalWebServer : public QObject {
    Q_OBJECT

public:
    struct Response {
        int status = 200;
        QByteArray body;
        QByteArray contentType = "text/html; charset=utf-8";
        QByteArray location; // for redirects
        bool neverAnswers = false;
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

    QTcpServer m_server;
    QHash<QString, Response> m_routes;
    QHash<QString, int> m_requests;
};
