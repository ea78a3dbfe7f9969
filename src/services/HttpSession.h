#pragma once

#include <QNetworkAccessManager>
#include <QObject>

// The console's one HTTP client: a QNetworkAccessManager on the main thread, made on first
// use and released with the application object. Redirects are followed except from https to
// http, and a transfer that stalls for 60 s fails; requests carry no headers of ours unless
// the caller sets them.
class HttpSession : public QObject {
    Q_OBJECT

public:
    static constexpr int transferTimeoutMs = 60000;

    // Main thread; needs the application object.
    static HttpSession &shared();

    QNetworkAccessManager &manager() { return m_manager; }

private:
    explicit HttpSession(QObject *parent);

    QNetworkAccessManager m_manager;
};
