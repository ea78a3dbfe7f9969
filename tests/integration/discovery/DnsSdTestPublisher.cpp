#include "DnsSdTestPublisher.h"

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/thread-watch.h>

DnsSdTestPublisher::DnsSdTestPublisher()
{
    m_poll = avahi_threaded_poll_new();
    int error = 0;
    m_client = avahi_client_new(avahi_threaded_poll_get(m_poll), AvahiClientFlags(0), nullptr,
                                nullptr, &error);
    avahi_threaded_poll_start(m_poll);
}

DnsSdTestPublisher::~DnsSdTestPublisher()
{
    avahi_threaded_poll_stop(m_poll);
    if (m_client)
        avahi_client_free(m_client); // frees the groups too
    avahi_threaded_poll_free(m_poll);
}

int DnsSdTestPublisher::publish(const QString &name, quint16 port, const QList<QByteArray> &txt,
                                const QByteArray &host)
{
    if (!m_client || txt.size() > 3)
        return -1;
    const auto item = [&txt](int i) { return i < txt.size() ? txt.at(i).constData() : nullptr; };
    avahi_threaded_poll_lock(m_poll);
    AvahiEntryGroup *group = avahi_entry_group_new(m_client, nullptr, nullptr);
    bool ok = group && avahi_entry_group_add_service(
                           group, AVAHI_IF_UNSPEC, AVAHI_PROTO_INET, AvahiPublishFlags(0),
                           name.toUtf8().constData(), "_zekt._tcp", nullptr,
                           host.isEmpty() ? nullptr : host.constData(), port, item(0), item(1),
                           item(2), nullptr) == 0;
    ok = ok && avahi_entry_group_commit(group) == 0;
    if (!ok && group)
        avahi_entry_group_free(group);
    avahi_threaded_poll_unlock(m_poll);
    if (!ok)
        return -1;
    m_groups.append(group);
    return int(m_groups.size()) - 1;
}

void DnsSdTestPublisher::withdraw(int service)
{
    if (service < 0 || service >= m_groups.size() || !m_groups.at(service))
        return;
    avahi_threaded_poll_lock(m_poll);
    avahi_entry_group_free(m_groups.at(service));
    avahi_threaded_poll_unlock(m_poll);
    m_groups[service] = nullptr;
}
