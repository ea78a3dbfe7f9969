#pragma once

#include <QProcess>
#include <QStringList>
#include <functional>

// A real telvane-agent process for a test, its stderr collected line by line.
class AgentProcess {
public:
    explicit AgentProcess(QString workDir) : m_workDir(std::move(workDir)) {}
    ~AgentProcess();

    static QString binary();
    // Runs `telvane-agent --set-password` with the password on stdin.
    static bool setPassword(const QString &credentialsFile, const QString &user,
                            const QString &password);

    // Starts with `args` (plus --config-dir in the work folder) and waits until it listens.
    // `childSetup` runs in the child before exec (e.g. setrlimit).
    bool start(const QStringList &args, std::function<void()> childSetup = {},
               const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    quint16 port() const { return m_port; }
    qint64 processId() const { return m_process.processId(); }
    QStringList lines();
    // Waits until a line containing `text` appears; true when it did.
    bool waitForLine(const QString &text, int timeoutMs = 10000);
    // SIGTERM, then the exit code (-1 when it had to be killed).
    int terminate();

private:
    QString m_workDir;
    QProcess m_process;
    QByteArray m_pending;
    QStringList m_lines;
    quint16 m_port = 0;
};
