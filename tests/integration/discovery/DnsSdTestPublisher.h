#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

struct AvahiClient;
struct AvahiEntryGroup;
struct AvahiThreadedPoll;

// Announces "_zekt._tcp" services through the Avahi daemon for tests and benchmarks, one
// entry group per service (the daemon takes at most 32 entries a group), IPv4 only.
class DnsSdTestPublisher {
public:
    DnsSdTestPublisher();
    ~DnsSdTestPublisher();
    DnsSdTestPublisher(const DnsSdTestPublisher &) = delete;
    DnsSdTestPublisher &operator=(const DnsSdTestPublisher &) = delete;

    // False when there is no daemon.
    bool isConnected() const { return m_client != nullptr; }
    // At most three TXT items; `host` empty for this machine's own name. Returns the
    // service's number for withdraw(), or -1.
    int publish(const QString &name, quint16 port, const QList<QByteArray> &txt = {},
                const QByteArray &host = {});
    void withdraw(int service);

private:
    AvahiThreadedPoll *m_poll = nullptr;
    AvahiClient *m_client = nullptr;
    QList<AvahiEntryGroup *> m_groups;
};
