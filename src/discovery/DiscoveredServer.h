#pragma once

#include <QString>
#include <QUuid>
#include <optional>

// One agent found on the local network, as resolved. Immutable; two servers are equal when
// they share host and port, so a re-resolved service (new id, perhaps a new name) replaces
// its earlier row.
class DiscoveredServer {
public:
    DiscoveredServer(QString name, QString host, quint16 port,
                     std::optional<QString> computerName = std::nullopt,
                     std::optional<QString> hostname = std::nullopt,
                     std::optional<QString> version = std::nullopt, QUuid id = QUuid::createUuid());

    const QUuid &id() const { return m_id; }
    // The service instance name.
    const QString &name() const { return m_name; }
    // The resolved host name (a ".local" name), not an address.
    const QString &host() const { return m_host; }
    quint16 port() const { return m_port; }
    // TXT "name", "hostname" and "version".
    const std::optional<QString> &computerName() const { return m_computerName; }
    const std::optional<QString> &hostname() const { return m_hostname; }
    const std::optional<QString> &version() const { return m_version; }

    // What a row shows: the TXT host name (with the computer name when it says more),
    // else the computer name or instance name followed by the host in brackets.
    QString displayText() const;
    // "host:port", to tell two agents on one host apart.
    QString address() const;

    bool operator==(const DiscoveredServer &other) const
    {
        return m_host == other.m_host && m_port == other.m_port;
    }

private:
    QUuid m_id;
    QString m_name;
    QString m_host;
    quint16 m_port;
    std::optional<QString> m_computerName;
    std::optional<QString> m_hostname;
    std::optional<QString> m_version;
};
