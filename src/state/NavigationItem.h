#pragma once

#include <QUuid>

// What the main window shows: one computer, the dashboard or the log.
struct NavigationItem {
    enum class Kind { computer, dashboard, logs };

    Kind kind = Kind::dashboard;
    QUuid computerId; // set only for Kind::computer

    static NavigationItem computer(const QUuid &id) { return {Kind::computer, id}; }
    static NavigationItem dashboard() { return {Kind::dashboard, {}}; }
    static NavigationItem logs() { return {Kind::logs, {}}; }

    bool operator==(const NavigationItem &) const = default;
};
