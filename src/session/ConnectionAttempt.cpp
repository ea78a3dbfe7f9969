#include "ConnectionAttempt.h"

#include "FutureCallbacks.h"
#include "protocol/ZEKTClient.h"

#include <cmath>

ConnectionAttempt::ConnectionAttempt(quint64 generation, std::shared_ptr<ZEKTClient> client,
                                     RemoteComputer computer, double deadlineSeconds)
    : m_generation(generation), m_client(std::move(client)), m_computer(std::move(computer)),
      m_deadlineSeconds(deadlineSeconds)
{
    m_deadline.setSingleShot(true);
    m_deadline.setTimerType(Qt::PreciseTimer);
    connect(&m_deadline, &QTimer::timeout, this,
            [this] { settle(timeoutDescription(m_deadlineSeconds)); });
}

QString ConnectionAttempt::timeoutDescription(double deadlineSeconds)
{
    return QStringLiteral("Connection timed out after %1 seconds")
        .arg(qint64(std::trunc(deadlineSeconds)));
}

void ConnectionAttempt::start(std::function<void()> connected, Finished finished)
{
    m_connected = std::move(connected);
    m_finished = std::move(finished);
    const double milliseconds = std::max(0.0, m_deadlineSeconds * 1000.0);
    m_deadline.start(int(std::min(milliseconds, double(std::numeric_limits<int>::max()))));

    FutureCallbacks::observe(
        m_client->connect(), this,
        [this] {
            if (m_settled)
                return;
            m_connected();
            FutureCallbacks::observe(
                m_client->authenticate(m_computer.username, m_computer.password), this,
                [this] { settle(std::nullopt); }, [this](const QString &error) { settle(error); });
        },
        [this](const QString &error) { settle(error); });
}

void ConnectionAttempt::cancel()
{
    m_cancelled = true;
    m_settled = true;
    m_deadline.stop();
    m_connected = {};
    m_finished = {};
}

void ConnectionAttempt::settle(const std::optional<QString> &error)
{
    if (m_settled)
        return;
    m_settled = true;
    m_deadline.stop();
    Finished finished = std::move(m_finished);
    finished(error);
}
