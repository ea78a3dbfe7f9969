#pragma once

#include "AgentOptions.h"

#include <QObject>
#include <QTemporaryDir>
#include <memory>
#include <vector>

class DnsSdPublisher;
class ZEKTServer;

// Builds the providers, one ZEKTServer per served port (several with --fleet) and the
// DNS-SD announcement, and stops them all with a reason. Lives on the main thread.
class AgentRunner : public QObject {
    Q_OBJECT
public:
    explicit AgentRunner(AgentOptions options, QObject *parent = nullptr);
    ~AgentRunner() override;

    // False with a readable message when the agent cannot serve (identity, port in use…).
    bool start(QString *error);
    // Sends every session a DisconnectMessage with `reason` and stops listening.
    void stop(const QString &reason);

private:
    QString uploadsFolder(QString *error);

    AgentOptions m_options;
    std::unique_ptr<QTemporaryDir> m_simulatedUploads;
    std::vector<ZEKTServer *> m_servers; // children of this object
    std::unique_ptr<DnsSdPublisher> m_publisher;
};
