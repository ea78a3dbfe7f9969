#include "AgentLog.h"
#include "AgentOptions.h"
#include "AgentRunner.h"
#include "BandedJpegEncoder.h"
#include "CredentialsFile.h"
#include "PamCredentialVerifier.h"
#include "PasswordPrompt.h"
#include "ZEKTError.h"
#include "ZEKTIdentity.h"
#include "posix/SignalWatcher.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

#include <csignal>
#include <cstdio>
#include <malloc.h>

namespace {

// The texts of the commands that run and exit; the running agent only logs.
struct AgentCommands {
    Q_DECLARE_TR_FUNCTIONS(AgentCommands)
};

int setPassword(const AgentOptions &options)
{
    const QString user =
        options.user.isEmpty() ? PamCredentialVerifier::currentAccountName() : options.user;
    const QString path = options.effectiveCredentialsFile();
    QString error;
    const auto password = PasswordPrompt::read(&error);
    if (!password) {
        std::fprintf(stderr, "telvane-agent: %s\n", qPrintable(error));
        return 1;
    }
    if (const auto failure = CredentialsFile::setPassword(path, user, *password)) {
        std::fprintf(stderr, "telvane-agent: %s\n", qPrintable(*failure));
        return 1;
    }
    std::fprintf(stderr, "telvane-agent: %s\n",
                 qPrintable(AgentCommands::tr("password of %1 set in %2").arg(user, path)));
    return 0;
}

// Reads the identity a running agent made; making one here would print the fingerprint
// of an identity no agent serves.
int printFingerprint(const QString &configDir)
{
    try {
        if (const auto identity = ZEKTIdentity::loadExisting(configDir)) {
            std::printf("%s\n", qPrintable(identity->fingerprint()));
            return 0;
        }
        std::fprintf(stderr, "telvane-agent: %s\n",
                     qPrintable(AgentCommands::tr("no identity in %1; the agent makes one when "
                                                  "it first starts with that --config-dir")
                                    .arg(QDir(configDir).absolutePath())));
    } catch (const ZEKTError &e) {
        std::fprintf(stderr, "telvane-agent: %s\n", qPrintable(e.description()));
    }
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    BandedJpegEncoder::enableRestartMarkers(); // touches the environment: before any thread
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("telvane-agent"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TELVANE_AGENT_VERSION));
    // The user's language when a translation for it is built in; English otherwise.
    QTranslator translator;
    if (translator.load(QLocale(), QStringLiteral("telvane-agent"), QStringLiteral("_"),
                        QStringLiteral(":/i18n")))
        QCoreApplication::installTranslator(&translator);
    // A write past a file-size limit must fail the upload, not kill the agent.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    // Frames are large, short-lived buffers made on worker threads: a fixed mmap threshold
    // gives them back to the system at once, and few arenas keep idle memory small.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    mallopt(M_ARENA_MAX, 2);

    AgentOptions options;
    QString error;
    if (!options.parse(QCoreApplication::arguments(), &error)) {
        std::fprintf(stderr, "telvane-agent: %s\n%s\n", qPrintable(error),
                     qPrintable(AgentCommands::tr("Try telvane-agent --help.")));
        return 2;
    }
    switch (options.action) {
    case AgentOptions::Action::help:
        std::fputs(qPrintable(options.helpText()), stdout);
        return 0;
    case AgentOptions::Action::setPassword:
        return setPassword(options);
    case AgentOptions::Action::fingerprint:
        return printFingerprint(options.configDir);
    case AgentOptions::Action::serve:
        break;
    }

    AgentLog::installQtMessageHandler();
    AgentRunner runner(options);
    if (!runner.start(&error)) {
        AgentLog::write(QStringLiteral("agent"), QStringLiteral("cannot start: %1").arg(error));
        return 1;
    }
    SignalWatcher watcher({SIGTERM, SIGINT});
    bool stopping = false;
    QObject::connect(&watcher, &SignalWatcher::received, &app, [&](const QString &name) {
        if (stopping)
            return;
        stopping = true;
        AgentLog::write(QStringLiteral("agent"), QStringLiteral("stopping on %1").arg(name));
        runner.stop(QStringLiteral("The agent is shutting down (%1)").arg(name));
        // Give the disconnect messages a moment to leave before the process exits.
        QTimer::singleShot(300, &app, &QCoreApplication::quit);
    });
    return app.exec();
}
