#pragma once

#include "FieldHash.h"
#include "SystemStats.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>
#include <QUuid>
#include <optional>

// One configured computer: where and how to reach its agent, its live status, last
// thumbnail and last statistics. A value: copies do not see later changes.
struct RemoteComputer {
    static constexpr quint16 defaultPort = 5905;

    QUuid id = QUuid::createUuid();
    std::optional<QString> name;
    QString host;
    quint16 port = defaultPort;
    QString username;
    QString password;
    std::optional<QString> description;
    QStringList tags;
    bool isConnected = false;
    bool isConnecting = false;
    std::optional<QDateTime> lastConnected;
    std::optional<QByteArray> thumbnailImage;
    std::optional<QString> lastError;
    std::optional<SystemStats> systemStats;

    // `name` when present and not empty, else `host`.
    QString displayName() const;
    // "host:port".
    QString connectionString() const;

    bool operator==(const RemoteComputer &) const = default;
};

size_t qHash(const RemoteComputer &computer, size_t seed = 0);
