#pragma once

#include <QCoreApplication>
#include <QHostAddress>
#include <QString>
#include <QStringList>

// The validated command line of telvane-agent.
class AgentOptions {
    Q_DECLARE_TR_FUNCTIONS(AgentOptions)

public:
    enum class Auth { pam, file };
    enum class Action { serve, help, fingerprint, setPassword };

    Action action = Action::serve;
    quint16 port = 5905;
    QHostAddress bindAddress = QHostAddress::Any;
    QString configDir;
    QString uploadsDir; // empty: ~/Downloads, or a temporary folder when simulating
    double statsIntervalSeconds = 5.0;
    bool simulate = false;
    int fleet = 1;
    Auth auth = Auth::pam;
    QString credentialsFile; // empty: <config dir>/credentials
    QString user;            // --set-password: empty means the current account

    // Parses `arguments` (argv including the program name). On failure returns false
    // with a readable message in `error`.
    bool parse(const QStringList &arguments, QString *error);
    QString helpText() const { return m_helpText; }
    QString effectiveCredentialsFile() const;
    // Where the identity lives without --config-dir: telvane-agent in the user's
    // configuration folder.
    static QString defaultConfigDir();

private:
    QString m_helpText;
};
