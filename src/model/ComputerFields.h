#pragma once

#include <QFlags>

struct RemoteComputer;

// The fields of a computer record, as a mask of what a change touched.
enum class ComputerField : quint32 {
    name = 1u << 0,
    host = 1u << 1,
    port = 1u << 2,
    username = 1u << 3,
    password = 1u << 4,
    description = 1u << 5,
    tags = 1u << 6,
    isConnected = 1u << 7,
    isConnecting = 1u << 8,
    lastConnected = 1u << 9,
    thumbnailImage = 1u << 10,
    lastError = 1u << 11,
    systemStats = 1u << 12,
};
Q_DECLARE_FLAGS(ComputerFields, ComputerField)
Q_DECLARE_OPERATORS_FOR_FLAGS(ComputerFields)

// The fields in which two records of one computer differ.
ComputerFields changedFields(const RemoteComputer &before, const RemoteComputer &after);
