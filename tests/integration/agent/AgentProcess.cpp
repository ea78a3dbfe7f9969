#include "AgentProcess.h"

#include <QRegularExpression>
#include <QTest>

AgentProcess::~AgentProcess()
{
    if (m_process.state() != QProcess::NotRunning)
        terminate();
}

QString AgentProcess::binary()
{
    return QStringLiteral(TELVANE_AGENT_BINARY);
}

bool AgentProcess::setPassword(const QString &credentialsFile, const QString &user,
                               const QString &password)
{
    QProcess p;
    p.start(binary(), {QStringLiteral("--set-password"), QStringLiteral("--credentials-file"),
                       credentialsFile, QStringLiteral("--user"), user});
    p.write(password.toUtf8() + '\n');
    p.closeWriteChannel();
    return p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

bool AgentProcess::start(const QStringList &args, std::function<void()> childSetup,
                         const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
    if (childSetup)
        m_process.setChildProcessModifier(childSetup);
    m_process.start(
        binary(),
        QStringList{QStringLiteral("--config-dir"), m_workDir + QStringLiteral("/config")} + args);
    if (!m_process.waitForStarted(10000))
        return false;
    if (!waitForLine(QStringLiteral("listening on"), 20000))
        return false;
    static const QRegularExpression listening(QStringLiteral("listening on [^ ]+:(\\d+)"));
    for (const QString &line : std::as_const(m_lines)) {
        if (const auto match = listening.match(line); match.hasMatch()) {
            m_port = quint16(match.captured(1).toUInt());
            return true;
        }
    }
    return false;
}

QStringList AgentProcess::lines()
{
    m_pending += m_process.readAllStandardError();
    qsizetype newline;
    while ((newline = m_pending.indexOf('\n')) >= 0) {
        m_lines << QString::fromUtf8(m_pending.left(newline));
        m_pending.remove(0, newline + 1);
    }
    return m_lines;
}

bool AgentProcess::waitForLine(const QString &text, int timeoutMs)
{
    return QTest::qWaitFor(
        [&] {
            m_process.waitForReadyRead(10);
            return lines().filter(text).size() > 0;
        },
        timeoutMs);
}

int AgentProcess::terminate()
{
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
        return -1;
    }
    lines();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
