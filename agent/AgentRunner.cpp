#include "AgentRunner.h"

#include "AgentLog.h"
#include "DnsSdPublisher.h"
#include "FileCredentialVerifier.h"
#include "LinuxStatsProvider.h"
#include "PamCredentialVerifier.h"
#include "SimulatedInputProvider.h"
#include "SimulatedScreenProvider.h"
#include "SimulatedStatsProvider.h"
#include "UploadReceiver.h"
#include "ZEKT.h"
#include "ZEKTError.h"
#include "ZEKTServer.h"

#ifdef TELVANE_AGENT_X11
#include "X11DisplayFactsSource.h"
#include "X11InputProvider.h"
#include "X11ScreenProvider.h"
#endif

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QSysInfo>

namespace {
const QString kVersion = QStringLiteral(TELVANE_AGENT_VERSION);
}

AgentRunner::AgentRunner(AgentOptions options, QObject *parent)
    : QObject(parent), m_options(std::move(options))
{
}

AgentRunner::~AgentRunner() = default;

QString AgentRunner::uploadsFolder(QString *error)
{
    if (!m_options.uploadsDir.isEmpty())
        return QFileInfo(m_options.uploadsDir).absoluteFilePath();
    if (m_options.simulate) {
        // Simulated agents keep uploads away from the user's files.
        m_simulatedUploads = std::make_unique<QTemporaryDir>(
            QDir::tempPath() + QStringLiteral("/telvane-agent-uploads-XXXXXX"));
        if (!m_simulatedUploads->isValid()) {
            *error = QStringLiteral("Cannot create a temporary uploads folder: %1")
                         .arg(m_simulatedUploads->errorString());
            return {};
        }
        return m_simulatedUploads->path();
    }
    QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (downloads.isEmpty())
        downloads = QDir::homePath() + QStringLiteral("/Downloads");
    return downloads;
}

bool AgentRunner::start(QString *error)
{
    ZEKTIdentity identity;
    try {
        identity = ZEKTIdentity::loadOrCreate(m_options.configDir);
    } catch (const ZEKTError &e) {
        *error = e.description();
        return false;
    }

    std::shared_ptr<ZEKTCredentialVerifier> verifier;
    QString authText;
    if (m_options.auth == AgentOptions::Auth::file) {
        const QString path = m_options.effectiveCredentialsFile();
        if (!QFileInfo::exists(path)) {
            *error = QStringLiteral("The credentials file %1 does not exist; create it with "
                                    "telvane-agent --set-password --credentials-file %1")
                         .arg(path);
            return false;
        }
        verifier = std::make_shared<FileCredentialVerifier>(
            path, [](const QString &line) { AgentLog::write(QStringLiteral("auth"), line); });
        authText = QStringLiteral("credentials file ") + path;
    } else {
        const QString account = PamCredentialVerifier::currentAccountName();
        verifier =
            std::make_shared<PamCredentialVerifier>(QStringLiteral("telvane-agent"), account);
        authText = QStringLiteral("PAM for user ") + account;
    }

    const QString uploads = uploadsFolder(error);
    if (uploads.isEmpty())
        return false;

    for (int i = 0; i < m_options.fleet; ++i) {
        ZEKTServerConfig config;
        config.bindAddress = m_options.bindAddress;
        config.port = m_options.port == 0 ? 0 : quint16(m_options.port + i);
        config.statsIntervalSeconds = m_options.statsIntervalSeconds;
        config.identity = identity;
        config.agentVersion = kVersion;
        // A fleet shares the machine: fewer workers each, still in parallel across agents.
        config.workerThreads = m_options.fleet > 1 ? 2 : 4;
        const QString tag =
            m_options.fleet > 1 ? QStringLiteral("[%1] ").arg(config.port) : QString();
        auto log = [tag](const QString &line) {
            AgentLog::write(QStringLiteral("agent"), tag + line);
        };

        auto *server = new ZEKTServer(config, this);
        server->setCredentialVerifier(verifier);
        auto receiver = std::make_shared<UploadReceiver>(uploads, ZEKT::maxFileTransferSize);
        server->setFileReceiver(receiver);
        if (m_options.simulate) {
            auto input = std::make_shared<SimulatedInputProvider>(log);
            server->setInputProvider(input);
            server->setScreenProvider(
                std::make_shared<SimulatedScreenProvider>(input, QStringLiteral("%1").arg(i + 1)));
            server->setStatsProvider(std::make_shared<SimulatedStatsProvider>(i, kVersion));
        } else {
#ifdef TELVANE_AGENT_X11
            auto facts = std::make_shared<X11DisplayFactsSource>();
            server->setStatsProvider(
                std::make_shared<LinuxStatsProvider>(kVersion, [facts] { return facts->query(); }));
            server->setScreenProvider(std::make_shared<X11ScreenProvider>());
            server->setInputProvider(std::make_shared<X11InputProvider>());
#else
            server->setStatsProvider(std::make_shared<LinuxStatsProvider>(kVersion, nullptr));
#endif
        }
        server->setLogFunction([tag](const QString &message, const QString &category) {
            AgentLog::write(category, tag + message);
        });
        // Logins and session ends are logged by the server itself, once each.
        if (!server->listen()) {
            *error = QStringLiteral("Cannot listen on %1:%2: %3")
                         .arg(m_options.bindAddress.toString())
                         .arg(config.port)
                         .arg(server->errorString());
            stop(QStringLiteral("The agent could not start"));
            return false;
        }
        m_servers.push_back(server);
        AgentLog::write(QStringLiteral("agent"),
                        QStringLiteral("telvane-agent %1 listening on %2:%3 (%4)")
                            .arg(kVersion, m_options.bindAddress.toString())
                            .arg(server->serverPort())
                            .arg(m_options.simulate ? QStringLiteral("simulated")
                                                    : QStringLiteral("this computer")));
    }
    AgentLog::write(QStringLiteral("agent"),
                    QStringLiteral("identity fingerprint %1").arg(identity.fingerprint()));
    AgentLog::write(QStringLiteral("agent"), QStringLiteral("authentication: %1").arg(authText));
    AgentLog::write(QStringLiteral("agent"), QStringLiteral("uploads folder: %1").arg(uploads));

    // A loopback-only agent is not reachable from other computers: nothing to announce.
    if (m_options.bindAddress.isLoopback()) {
        AgentLog::write(QStringLiteral("dnssd"),
                        QStringLiteral("bound to a loopback address; not announcing"));
        return true;
    }
    const QString pretty = DnsSdPublisher::prettyHostName();
    QList<DnsSdPublisher::Service> services;
    for (size_t i = 0; i < m_servers.size(); ++i) {
        const QString name =
            m_servers.size() > 1 ? QStringLiteral("%1 #%2").arg(pretty).arg(i + 1) : pretty;
        services.append({name, m_servers[i]->serverPort()});
    }
    m_publisher = std::make_unique<DnsSdPublisher>(
        QSysInfo::machineHostName(), pretty, kVersion,
        [](const QString &line) { AgentLog::write(QStringLiteral("dnssd"), line); });
    m_publisher->start(services);
    return true;
}

void AgentRunner::stop(const QString &reason)
{
    if (m_publisher)
        m_publisher->stop();
    for (ZEKTServer *server : m_servers)
        server->stop(reason);
}
