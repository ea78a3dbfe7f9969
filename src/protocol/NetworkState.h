#pragma once

#include <QString>

// State of the client's underlying TCP connection, with POSIX error codes
// (network down is ENETDOWN, 100 on Linux).
class NetworkState {
public:
    enum class Kind { setup, waiting, preparing, ready, failed, cancelled };

    NetworkState() = default;
    static NetworkState setup() { return NetworkState(Kind::setup); }
    static NetworkState waiting(int posixError, const QString &description)
    {
        return NetworkState(Kind::waiting, posixError, description);
    }
    static NetworkState preparing() { return NetworkState(Kind::preparing); }
    static NetworkState ready() { return NetworkState(Kind::ready); }
    static NetworkState failed(int posixError, const QString &description)
    {
        return NetworkState(Kind::failed, posixError, description);
    }
    static NetworkState cancelled() { return NetworkState(Kind::cancelled); }

    Kind kind() const { return m_kind; }
    int errorCode() const { return m_errorCode; }
    QString errorDescription() const { return m_errorDescription; }
    bool isNetworkDown() const;

    // Readable form for log lines, e.g. "waiting(Network is down)" or "ready".
    QString text() const;

    bool operator==(const NetworkState &other) const = default;

private:
    explicit NetworkState(Kind kind, int errorCode = 0, const QString &description = {})
        : m_kind(kind), m_errorCode(errorCode), m_errorDescription(description)
    {
    }

    Kind m_kind = Kind::setup;
    int m_errorCode = 0;
    QString m_errorDescription;
};
