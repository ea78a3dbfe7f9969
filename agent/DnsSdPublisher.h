#pragma once

#include <QList>
#include <QMutex>
#include <QString>
#include <functional>

struct AvahiClient;
struct AvahiEntryGroup;
struct AvahiThreadedPoll;

// Announces the agent as "_zekt._tcp" with TXT name, hostname and version through the
// Avahi daemon. Runs Avahi's own thread; without a daemon it logs once, keeps serving,
// and publishes when a daemon appears.
class DnsSdPublisher {
public:
    using LogFunction = std::function<void(const QString &line)>;
    struct Service {
        QString instanceName;
        quint16 port = 0;
    };

    DnsSdPublisher(QString hostName, QString prettyName, QString version, LogFunction log);
    ~DnsSdPublisher();
    DnsSdPublisher(const DnsSdPublisher &) = delete;
    DnsSdPublisher &operator=(const DnsSdPublisher &) = delete;

    bool start(const QList<Service> &services);
    void stop();

    // The computer's pretty name (/etc/machine-info PRETTY_HOSTNAME), else the host name.
    static QString prettyHostName();

    // Avahi's callbacks, on Avahi's thread.
    void handleClientState(AvahiClient *client, int state);
    void handleGroupState(AvahiEntryGroup *group, int state);

private:
    void createClient();
    void publish(AvahiClient *client);

    QString m_hostName;
    QString m_prettyName;
    QString m_version;
    LogFunction m_log;
    QList<Service> m_services; // names may change on collisions (Avahi thread only)
    AvahiThreadedPoll *m_poll = nullptr;
    AvahiClient *m_client = nullptr;
    AvahiEntryGroup *m_group = nullptr;
    bool m_loggedNoDaemon = false;
};
