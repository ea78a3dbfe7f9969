#include "AvahiBrowseWorker.h"

#include "discovery/DiscoveryBackend.h"

#include <QMetaObject>

#include <avahi-client/client.h>
#include <avahi-client/lookup.h>
#include <avahi-common/error.h>
#include <avahi-common/simple-watch.h>
#include <avahi-common/strlst.h>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

void clientCallback(AvahiClient *client, AvahiClientState state, void *worker)
{
    static_cast<AvahiBrowseWorker *>(worker)->clientStateChanged(client, int(state));
}

void browserCallback(AvahiServiceBrowser *, AvahiIfIndex interfaceIndex, AvahiProtocol protocol,
                     AvahiBrowserEvent event, const char *name, const char *type,
                     const char *domain, AvahiLookupResultFlags, void *tag)
{
    const auto *t = static_cast<AvahiBrowseWorker::Tag *>(tag);
    t->worker->browserEvent(t->id, interfaceIndex, protocol, int(event), name, type, domain);
}

void resolverCallback(AvahiServiceResolver *, AvahiIfIndex, AvahiProtocol, AvahiResolverEvent event,
                      const char *, const char *, const char *, const char *host,
                      const AvahiAddress *, uint16_t port, AvahiStringList *txt,
                      AvahiLookupResultFlags, void *tag)
{
    const auto *t = static_cast<AvahiBrowseWorker::Tag *>(tag);
    t->worker->resolverEvent(t->id, int(event), host, port, txt);
}

void wakeCallback(AvahiWatch *, int, AvahiWatchEvent, void *worker)
{
    static_cast<AvahiBrowseWorker *>(worker)->wakeUp();
}

QString fromUtf8(const char *text)
{
    return text ? QString::fromUtf8(text) : QString();
}

} // namespace

std::shared_ptr<AvahiBrowseWorker> AvahiBrowseWorker::start(DiscoveryBackend *owner)
{
    const int wakeFd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeFd < 0)
        return nullptr;
    std::shared_ptr<AvahiBrowseWorker> worker(new AvahiBrowseWorker(owner, wakeFd));
    // The thread keeps the worker alive, so one left behind by shutDown() stays valid.
    worker->m_thread = std::thread([self = worker] { self->run(); });
    return worker;
}

AvahiBrowseWorker::AvahiBrowseWorker(DiscoveryBackend *owner, int wakeFd)
    : m_owner(owner), m_wakeFd(wakeFd)
{
}

AvahiBrowseWorker::~AvahiBrowseWorker()
{
    ::close(m_wakeFd);
}

void AvahiBrowseWorker::post(Command command)
{
    {
        std::lock_guard lock(m_commandLock);
        m_commands.push_back(std::move(command));
    }
    const quint64 one = 1;
    [[maybe_unused]] const ssize_t written = ::write(m_wakeFd, &one, sizeof one);
}

void AvahiBrowseWorker::detachOwner()
{
    std::lock_guard lock(m_ownerLock);
    m_owner = nullptr;
}

void AvahiBrowseWorker::shutDown(std::chrono::milliseconds grace)
{
    if (!m_thread.joinable())
        return;
    post([](AvahiBrowseWorker &worker) {
        worker.m_quit = true;
        if (worker.m_poll)
            avahi_simple_poll_quit(worker.m_poll);
    });
    bool finished;
    {
        std::unique_lock lock(m_finishLock);
        finished = m_finishedChanged.wait_for(lock, grace, [this] { return m_finished; });
    }
    if (finished)
        m_thread.join();
    else
        m_thread.detach();
}

void AvahiBrowseWorker::report(Report event)
{
    // Held while posting, so the owner cannot be destroyed in between; Qt drops events
    // queued for an object that is gone.
    std::lock_guard lock(m_ownerLock);
    if (!m_owner)
        return;
    DiscoveryBackend *owner = m_owner;
    QMetaObject::invokeMethod(
        owner, [owner, event = std::move(event)] { event(*owner); }, Qt::QueuedConnection);
}

void AvahiBrowseWorker::run()
{
    m_poll = avahi_simple_poll_new();
    if (m_poll) {
        const AvahiPoll *api = avahi_simple_poll_get(m_poll);
        m_wakeWatch = api->watch_new(api, m_wakeFd, AVAHI_WATCH_IN, wakeCallback, this);
        if (!m_wakeWatch) {
            avahi_simple_poll_free(m_poll);
            m_poll = nullptr;
        }
    }
    if (m_poll) {
        runCommands(); // posted before the watch existed
        while (!m_quit && avahi_simple_poll_iterate(m_poll, -1) == 0) {
        }
    } else {
        // Without Avahi's loop commands still run, so every browse hears that it failed.
        while (!m_quit) {
            pollfd wake{m_wakeFd, POLLIN, 0};
            ::poll(&wake, 1, -1);
            wakeUp();
        }
    }
    freeAll();
    if (m_poll) {
        avahi_simple_poll_get(m_poll)->watch_free(m_wakeWatch);
        avahi_simple_poll_free(m_poll);
    }
    m_wakeWatch = nullptr;
    m_poll = nullptr;
    std::lock_guard lock(m_finishLock);
    m_finished = true;
    m_finishedChanged.notify_all();
}

void AvahiBrowseWorker::wakeUp()
{
    quint64 count;
    [[maybe_unused]] const ssize_t read = ::read(m_wakeFd, &count, sizeof count);
    runCommands();
}

void AvahiBrowseWorker::runCommands()
{
    std::vector<Command> commands;
    {
        std::lock_guard lock(m_commandLock);
        commands.swap(m_commands);
    }
    for (Command &command : commands) {
        if (m_quit)
            break;
        command(*this);
    }
}

// --- Commands ---------------------------------------------------------------------------

void AvahiBrowseWorker::startBrowse(quint64 browse, const QByteArray &type,
                                    const QByteArray &domain)
{
    if (!m_poll) {
        report([browse](DiscoveryBackend &owner) {
            Q_EMIT owner.browseCouldNotStart(
                browse, QStringLiteral("the DNS-SD event loop is not running"));
        });
        return;
    }
    if (!m_client) {
        int error = 0;
        m_client = avahi_client_new(avahi_simple_poll_get(m_poll), AvahiClientFlags(0),
                                    clientCallback, this, &error);
        if (!m_client) {
            report([browse, reason = describe(error)](DiscoveryBackend &owner) {
                Q_EMIT owner.browseCouldNotStart(browse, reason);
            });
            return;
        }
    }
    auto tag = std::make_unique<Tag>(Tag{this, browse});
    AvahiServiceBrowser *browser = avahi_service_browser_new(
        m_client, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, type.constData(), domain.constData(),
        AvahiLookupFlags(0), browserCallback, tag.get());
    if (!browser) {
        report([browse, reason = describe(avahi_client_errno(m_client))](DiscoveryBackend &owner) {
            Q_EMIT owner.browseCouldNotStart(browse, reason);
        });
        return;
    }
    m_browsers.emplace(browse, Browser{std::move(tag), browser});
}

void AvahiBrowseWorker::stopBrowse(quint64 browse)
{
    for (auto it = m_resolvers.begin(); it != m_resolvers.end();) {
        if (it->second.browse == browse) {
            avahi_service_resolver_free(it->second.resolver);
            it = m_resolvers.erase(it);
        } else {
            ++it;
        }
    }
    if (const auto it = m_browsers.find(browse); it != m_browsers.end()) {
        avahi_service_browser_free(it->second.browser);
        m_browsers.erase(it);
    }
}

void AvahiBrowseWorker::resolve(quint64 browse, quint64 resolution, const ServiceInstance &service)
{
    if (!m_browsers.contains(browse))
        return; // stopped meanwhile; the owner no longer waits for it
    auto tag = std::make_unique<Tag>(Tag{this, resolution});
    // Addresses are looked up too: a host without an address record cannot be reached, so
    // it fails here rather than appearing.
    AvahiServiceResolver *resolver = avahi_service_resolver_new(
        m_client, service.interfaceIndex, service.protocol, service.name.toUtf8().constData(),
        service.type.toUtf8().constData(), service.domain.toUtf8().constData(), AVAHI_PROTO_UNSPEC,
        AvahiLookupFlags(0), resolverCallback, tag.get());
    if (!resolver) {
        report([resolution](DiscoveryBackend &owner) { Q_EMIT owner.resolveFailed(resolution); });
        return;
    }
    m_resolvers.emplace(resolution, Resolver{std::move(tag), resolver, browse});
}

void AvahiBrowseWorker::cancelResolve(quint64 resolution)
{
    if (const auto it = m_resolvers.find(resolution); it != m_resolvers.end()) {
        avahi_service_resolver_free(it->second.resolver);
        m_resolvers.erase(it);
    }
}

// --- Avahi's callbacks ------------------------------------------------------------------

void AvahiBrowseWorker::clientStateChanged(AvahiClient *client, int state)
{
    // Freed outside the callback: the client is still dispatching the message that told.
    if (AvahiClientState(state) == AVAHI_CLIENT_FAILURE && client == m_client)
        post([client](AvahiBrowseWorker &worker) { worker.clientFailed(client); });
}

void AvahiBrowseWorker::browserEvent(quint64 browse, int interfaceIndex, int protocol, int event,
                                     const char *name, const char *type, const char *domain)
{
    switch (AvahiBrowserEvent(event)) {
    case AVAHI_BROWSER_NEW:
    case AVAHI_BROWSER_REMOVE: {
        const ServiceInstance service{interfaceIndex, protocol, fromUtf8(name), fromUtf8(type),
                                      fromUtf8(domain)};
        const bool found = AvahiBrowserEvent(event) == AVAHI_BROWSER_NEW;
        report([browse, service, found](DiscoveryBackend &owner) {
            if (found)
                Q_EMIT owner.serviceFound(browse, service);
            else
                Q_EMIT owner.serviceRemoved(browse, service);
        });
        break;
    }
    case AVAHI_BROWSER_FAILURE: {
        const QString reason =
            describe(m_client ? avahi_client_errno(m_client) : AVAHI_ERR_FAILURE);
        post([browse, reason](AvahiBrowseWorker &worker) {
            if (!worker.m_browsers.contains(browse))
                return;
            worker.stopBrowse(browse);
            worker.report([browse, reason](DiscoveryBackend &owner) {
                Q_EMIT owner.browseStopped(browse, reason);
            });
        });
        break;
    }
    case AVAHI_BROWSER_ALL_FOR_NOW:
    case AVAHI_BROWSER_CACHE_EXHAUSTED:
        break;
    }
}

void AvahiBrowseWorker::resolverEvent(quint64 resolution, int event, const char *host, quint16 port,
                                      AvahiStringList *txt)
{
    const auto it = m_resolvers.find(resolution);
    if (it == m_resolvers.end())
        return;
    avahi_service_resolver_free(it->second.resolver);
    m_resolvers.erase(it);
    if (AvahiResolverEvent(event) != AVAHI_RESOLVER_FOUND) {
        report([resolution](DiscoveryBackend &owner) { Q_EMIT owner.resolveFailed(resolution); });
        return;
    }
    QList<QByteArray> items;
    for (AvahiStringList *item = txt; item; item = avahi_string_list_get_next(item))
        items.append(QByteArray(reinterpret_cast<const char *>(avahi_string_list_get_text(item)),
                                qsizetype(avahi_string_list_get_size(item))));
    report([resolution, host = fromUtf8(host), port, items](DiscoveryBackend &owner) {
        Q_EMIT owner.serviceResolved(resolution, host, port, items);
    });
}

void AvahiBrowseWorker::clientFailed(AvahiClient *client)
{
    if (client != m_client)
        return;
    const QString reason = describe(avahi_client_errno(client));
    for (const auto &entry : m_browsers) {
        report([browse = entry.first, reason](DiscoveryBackend &owner) {
            Q_EMIT owner.browseStopped(browse, reason);
        });
    }
    freeAll();
}

void AvahiBrowseWorker::freeAll()
{
    // Resolvers and browsers before their client, each exactly once.
    for (auto &[resolution, resolver] : m_resolvers)
        avahi_service_resolver_free(resolver.resolver);
    m_resolvers.clear();
    for (auto &[browse, browser] : m_browsers)
        avahi_service_browser_free(browser.browser);
    m_browsers.clear();
    if (m_client)
        avahi_client_free(m_client);
    m_client = nullptr;
}

QString AvahiBrowseWorker::describe(int avahiError)
{
    switch (avahiError) {
    case AVAHI_ERR_NO_DAEMON:
        return QStringLiteral("no Avahi daemon is running (or no system bus)");
    case AVAHI_ERR_DISCONNECTED:
        return QStringLiteral("the Avahi daemon went away");
    default:
        return QStringLiteral("Avahi: ") + QString::fromUtf8(avahi_strerror(avahiError));
    }
}
