#pragma once

#include "discovery/ServiceInstance.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

class DiscoveryBackend;
struct AvahiClient;
struct AvahiServiceBrowser;
struct AvahiServiceResolver;
struct AvahiSimplePoll;
struct AvahiStringList;
struct AvahiWatch;

// The Avahi client on a thread of its own. Creating and freeing the client, browsers and
// resolvers are blocking D-Bus round trips, so none of it happens on the main thread: the
// main thread only queues commands (an eventfd wakes the thread) and reports come back
// queued onto the owner's thread. The client is made on the first browse and kept; a client
// that fails (the daemon went away) ends its browses, and the next browse makes a new one.
class AvahiBrowseWorker {
public:
    using Report = std::function<void(DiscoveryBackend &owner)>;
    using Command = std::function<void(AvahiBrowseWorker &worker)>;

    // Starts the thread; null when it cannot.
    static std::shared_ptr<AvahiBrowseWorker> start(DiscoveryBackend *owner);
    ~AvahiBrowseWorker();
    AvahiBrowseWorker(const AvahiBrowseWorker &) = delete;
    AvahiBrowseWorker &operator=(const AvahiBrowseWorker &) = delete;

    // Any thread.
    void post(Command command);
    // Owner's thread: no report reaches the owner after this returns.
    void detachOwner();
    // Owner's thread: ends the thread, freeing everything, and waits for it at most
    // `grace`; a thread stuck in a stalled daemon call is left to finish on its own.
    void shutDown(std::chrono::milliseconds grace);

    // Commands, on the worker thread.
    void startBrowse(quint64 browse, const QByteArray &type, const QByteArray &domain);
    void stopBrowse(quint64 browse);
    void resolve(quint64 browse, quint64 resolution, const ServiceInstance &service);
    void cancelResolve(quint64 resolution);

    // Avahi's callbacks, on the worker thread.
    void clientStateChanged(AvahiClient *client, int state);
    void browserEvent(quint64 browse, int interfaceIndex, int protocol, int event, const char *name,
                      const char *type, const char *domain);
    void resolverEvent(quint64 resolution, int event, const char *host, quint16 port,
                       AvahiStringList *txt);
    void wakeUp();

    // What Avahi hands back to a browser's or resolver's callback.
    struct Tag {
        AvahiBrowseWorker *worker;
        quint64 id;
    };

private:
    struct Browser {
        std::unique_ptr<Tag> tag;
        AvahiServiceBrowser *browser = nullptr;
    };
    struct Resolver {
        std::unique_ptr<Tag> tag;
        AvahiServiceResolver *resolver = nullptr;
        quint64 browse = 0;
    };

    AvahiBrowseWorker(DiscoveryBackend *owner, int wakeFd);
    void run();
    void runCommands();
    void report(Report event);
    void endBrowse(quint64 browse);
    void clientFailed(AvahiClient *client);
    void freeAll();
    static QString describe(int avahiError);

    // Shared with the owner's thread.
    std::mutex m_ownerLock;
    DiscoveryBackend *m_owner;
    std::mutex m_commandLock;
    std::vector<Command> m_commands;
    const int m_wakeFd;
    std::mutex m_finishLock;
    std::condition_variable m_finishedChanged;
    bool m_finished = false;
    std::thread m_thread;

    // Worker thread only.
    bool m_quit = false;
    AvahiSimplePoll *m_poll = nullptr;
    AvahiWatch *m_wakeWatch = nullptr;
    AvahiClient *m_client = nullptr;
    std::unordered_map<quint64, Browser> m_browsers;
    std::unordered_map<quint64, Resolver> m_resolvers;
};
