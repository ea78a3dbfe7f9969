#pragma once

#include <QString>

// One copy of an announced service as the browser reports it: DNS-SD reports a service
// once per network interface and IP protocol it was seen on.
struct ServiceInstance {
    int interfaceIndex = -1;
    int protocol = -1;
    QString name;
    QString type;
    QString domain;

    bool operator==(const ServiceInstance &) const = default;
};
