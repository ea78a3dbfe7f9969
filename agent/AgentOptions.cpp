#include "AgentOptions.h"

#include <QCommandLineParser>
#include <QDir>
#include <QStandardPaths>

#include <cmath>

bool AgentOptions::parse(const QStringList &arguments, QString *error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(tr(
        "Telvane agent: serves statistics, the screen, input and uploads to the Telvane console."));
    const QCommandLineOption helpOption({QStringLiteral("h"), QStringLiteral("help")},
                                        tr("Show this help and exit."));
    const QCommandLineOption portOption(
        QStringLiteral("port"), tr("TCP port to listen on (default 5905; 0 picks a free one)."),
        QStringLiteral("port"), QStringLiteral("5905"));
    const QCommandLineOption bindOption(QStringLiteral("bind"),
                                        tr("Address to listen on (default: all)."),
                                        QStringLiteral("address"));
    const QCommandLineOption configOption(
        QStringLiteral("config-dir"),
        tr("Folder of the agent identity (default %1).").arg(defaultConfigDir()),
        QStringLiteral("dir"));
    const QCommandLineOption uploadsOption(QStringLiteral("uploads-dir"),
                                           tr("Folder for received files (default ~/Downloads)."),
                                           QStringLiteral("dir"));
    const QCommandLineOption intervalOption(QStringLiteral("stats-interval"),
                                            tr("Seconds between statistics reports (default 5)."),
                                            QStringLiteral("seconds"), QStringLiteral("5"));
    const QCommandLineOption simulateOption(
        QStringLiteral("simulate"),
        tr("Serve simulated statistics and an animated test screen; no X11 needed."));
    const QCommandLineOption fleetOption(QStringLiteral("fleet"),
                                         tr("Run N simulated agents on consecutive ports."),
                                         QStringLiteral("N"), QStringLiteral("1"));
    const QCommandLineOption fingerprintOption(
        QStringLiteral("fingerprint"),
        tr("Print the fingerprint of the identity in the config folder and exit; "
           "never creates one."));
    const QCommandLineOption authOption(
        QStringLiteral("auth"), tr("Authentication: pam (the account the agent runs as) or file."),
        QStringLiteral("pam|file"));
    const QCommandLineOption credentialsOption(
        QStringLiteral("credentials-file"),
        tr("Credentials file of --auth file (default <config-dir>/credentials)."),
        QStringLiteral("file"));
    const QCommandLineOption setPasswordOption(
        QStringLiteral("set-password"), tr("Set a password in the credentials file and exit."));
    const QCommandLineOption userOption(
        QStringLiteral("user"), tr("User name for --set-password (default: the current account)."),
        QStringLiteral("name"));
    parser.addOptions({helpOption, portOption, bindOption, configOption, uploadsOption,
                       intervalOption, simulateOption, fleetOption, fingerprintOption, authOption,
                       credentialsOption, setPasswordOption, userOption});
    m_helpText = parser.helpText();

    if (!parser.parse(arguments)) {
        *error = parser.errorText();
        return false;
    }
    if (!parser.positionalArguments().isEmpty()) {
        *error = tr("Unexpected argument: %1").arg(parser.positionalArguments().first());
        return false;
    }
    if (parser.isSet(helpOption)) {
        action = Action::help;
        return true;
    }

    bool ok = false;
    const uint portValue = parser.value(portOption).toUInt(&ok);
    if (!ok || portValue > 65535) {
        *error = tr("Invalid --port: %1").arg(parser.value(portOption));
        return false;
    }
    port = quint16(portValue);
    if (parser.isSet(bindOption) && !bindAddress.setAddress(parser.value(bindOption))) {
        *error = tr("Invalid --bind address: %1").arg(parser.value(bindOption));
        return false;
    }
    statsIntervalSeconds = parser.value(intervalOption).toDouble(&ok);
    if (!ok || !std::isfinite(statsIntervalSeconds) || statsIntervalSeconds < 0.1 ||
        statsIntervalSeconds > 86400) {
        *error = tr("Invalid --stats-interval (0.1 to 86400 seconds): %1")
                     .arg(parser.value(intervalOption));
        return false;
    }
    fleet = parser.value(fleetOption).toInt(&ok);
    if (!ok || fleet < 1 || fleet > 1000) {
        *error = tr("Invalid --fleet (1 to 1000): %1").arg(parser.value(fleetOption));
        return false;
    }
    simulate = parser.isSet(simulateOption) || fleet > 1;
    if (fleet > 1 && (port == 0 || int(port) + fleet - 1 > 65535)) {
        *error = tr("--fleet %1 needs %1 consecutive ports from a fixed --port").arg(fleet);
        return false;
    }

    configDir = parser.isSet(configOption) ? parser.value(configOption) : defaultConfigDir();
    if (configDir.isEmpty()) {
        *error = tr("Invalid --config-dir");
        return false;
    }
    uploadsDir = parser.value(uploadsOption);
    if (parser.isSet(uploadsOption) && uploadsDir.isEmpty()) {
        *error = tr("Invalid --uploads-dir");
        return false;
    }
    credentialsFile = parser.value(credentialsOption);
    if (parser.isSet(authOption)) {
        const QString value = parser.value(authOption);
        if (value == QLatin1String("pam"))
            auth = Auth::pam;
        else if (value == QLatin1String("file"))
            auth = Auth::file;
        else {
            *error = tr("Invalid --auth (pam or file): %1").arg(value);
            return false;
        }
    } else if (parser.isSet(credentialsOption)) {
        auth = Auth::file;
    }
    user = parser.value(userOption);
    if (parser.isSet(fingerprintOption))
        action = Action::fingerprint;
    if (parser.isSet(setPasswordOption))
        action = Action::setPassword;
    return true;
}

QString AgentOptions::defaultConfigDir()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/telvane-agent");
}

QString AgentOptions::effectiveCredentialsFile() const
{
    return credentialsFile.isEmpty() ? QDir(configDir).filePath(QStringLiteral("credentials"))
                                     : credentialsFile;
}
