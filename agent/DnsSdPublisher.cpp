#include "DnsSdPublisher.h"

#include <QFile>
#include <QSysInfo>

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/thread-watch.h>

namespace {
void clientCallback(AvahiClient *client, AvahiClientState state, void *self)
{
    static_cast<DnsSdPublisher *>(self)->handleClientState(client, int(state));
}
void groupCallback(AvahiEntryGroup *group, AvahiEntryGroupState state, void *self)
{
    static_cast<DnsSdPublisher *>(self)->handleGroupState(group, int(state));
}
} // namespace

DnsSdPublisher::DnsSdPublisher(QString hostName, QString prettyName, QString version,
                               LogFunction log)
    : m_hostName(std::move(hostName)), m_prettyName(std::move(prettyName)),
      m_version(std::move(version)), m_log(std::move(log))
{
}

DnsSdPublisher::~DnsSdPublisher()
{
    stop();
}

QString DnsSdPublisher::prettyHostName()
{
    QFile info(QStringLiteral("/etc/machine-info"));
    if (info.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : info.readAll().split('\n')) {
            if (!line.startsWith("PRETTY_HOSTNAME="))
                continue;
            QByteArray value = line.mid(16).trimmed();
            if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                value.back() == value.front())
                value = value.mid(1, value.size() - 2);
            if (!value.isEmpty())
                return QString::fromUtf8(value);
        }
    }
    return QSysInfo::machineHostName();
}

bool DnsSdPublisher::start(const QList<Service> &services)
{
    m_services = services;
    m_poll = avahi_threaded_poll_new();
    if (!m_poll) {
        m_log(QStringLiteral("DNS-SD: cannot start the Avahi event thread; not announcing"));
        return false;
    }
    createClient();
    if (avahi_threaded_poll_start(m_poll) < 0) {
        m_log(QStringLiteral("DNS-SD: cannot start the Avahi event thread; not announcing"));
        stop();
        return false;
    }
    return true;
}

void DnsSdPublisher::createClient()
{
    int error = 0;
    // NO_FAIL: without a daemon the client waits for one instead of failing.
    m_client = avahi_client_new(avahi_threaded_poll_get(m_poll), AVAHI_CLIENT_NO_FAIL,
                                clientCallback, this, &error);
    if (!m_client)
        m_log(QStringLiteral("DNS-SD: Avahi client failed: %1; not announcing")
                  .arg(QString::fromUtf8(avahi_strerror(error))));
}

void DnsSdPublisher::stop()
{
    if (m_poll)
        avahi_threaded_poll_stop(m_poll);
    if (m_client)
        avahi_client_free(m_client); // frees the entry group too
    m_client = nullptr;
    m_group = nullptr;
    if (m_poll)
        avahi_threaded_poll_free(m_poll);
    m_poll = nullptr;
}

void DnsSdPublisher::handleClientState(AvahiClient *client, int state)
{
    switch (AvahiClientState(state)) {
    case AVAHI_CLIENT_S_RUNNING:
        m_loggedNoDaemon = false;
        publish(client);
        break;
    case AVAHI_CLIENT_S_COLLISION:
    case AVAHI_CLIENT_S_REGISTERING:
        if (m_group)
            avahi_entry_group_reset(m_group);
        break;
    case AVAHI_CLIENT_CONNECTING:
        if (!m_loggedNoDaemon) {
            m_loggedNoDaemon = true;
            m_log(QStringLiteral("DNS-SD: no Avahi daemon running; serving without announcement"));
        }
        break;
    case AVAHI_CLIENT_FAILURE:
        if (avahi_client_errno(client) == AVAHI_ERR_DISCONNECTED) {
            // The daemon went away: wait for it to come back.
            avahi_client_free(client);
            m_client = nullptr;
            m_group = nullptr;
            createClient();
        } else {
            m_log(QStringLiteral("DNS-SD: %1")
                      .arg(QString::fromUtf8(avahi_strerror(avahi_client_errno(client)))));
        }
        break;
    }
}

void DnsSdPublisher::handleGroupState(AvahiEntryGroup *group, int state)
{
    switch (AvahiEntryGroupState(state)) {
    case AVAHI_ENTRY_GROUP_ESTABLISHED:
        for (const Service &service : std::as_const(m_services))
            m_log(QStringLiteral("DNS-SD: announced \"%1\" as _zekt._tcp on port %2")
                      .arg(service.instanceName)
                      .arg(service.port));
        break;
    case AVAHI_ENTRY_GROUP_COLLISION: {
        // Another computer uses the name: take the next alternative and publish again.
        for (Service &service : m_services) {
            char *alternative =
                avahi_alternative_service_name(service.instanceName.toUtf8().constData());
            service.instanceName = QString::fromUtf8(alternative);
            avahi_free(alternative);
        }
        avahi_entry_group_reset(group);
        publish(avahi_entry_group_get_client(group));
        break;
    }
    case AVAHI_ENTRY_GROUP_FAILURE:
        m_log(QStringLiteral("DNS-SD: announcement failed: %1")
                  .arg(QString::fromUtf8(
                      avahi_strerror(avahi_client_errno(avahi_entry_group_get_client(group))))));
        break;
    default:
        break;
    }
}

void DnsSdPublisher::publish(AvahiClient *client)
{
    if (!m_group)
        m_group = avahi_entry_group_new(client, groupCallback, this);
    if (!m_group) {
        m_log(QStringLiteral("DNS-SD: %1")
                  .arg(QString::fromUtf8(avahi_strerror(avahi_client_errno(client)))));
        return;
    }
    if (!avahi_entry_group_is_empty(m_group))
        return;
    const QByteArray name = "name=" + m_prettyName.toUtf8().left(240);
    const QByteArray host = "hostname=" + m_hostName.toUtf8().left(240);
    const QByteArray version = "version=" + m_version.toUtf8().left(240);
    for (const Service &service : std::as_const(m_services)) {
        const int result = avahi_entry_group_add_service(
            m_group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, AvahiPublishFlags(0),
            service.instanceName.toUtf8().constData(), "_zekt._tcp", nullptr, nullptr, service.port,
            name.constData(), host.constData(), version.constData(), nullptr);
        if (result < 0) {
            m_log(QStringLiteral("DNS-SD: cannot announce \"%1\": %2")
                      .arg(service.instanceName, QString::fromUtf8(avahi_strerror(result))));
            return;
        }
    }
    if (const int result = avahi_entry_group_commit(m_group); result < 0)
        m_log(QStringLiteral("DNS-SD: cannot announce: %1")
                  .arg(QString::fromUtf8(avahi_strerror(result))));
}
