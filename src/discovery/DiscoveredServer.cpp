#include "DiscoveredServer.h"

namespace {

bool hasText(const std::optional<QString> &text)
{
    return text && !text->isEmpty();
}

} // namespace

DiscoveredServer::DiscoveredServer(QString name, QString host, quint16 port,
                                   std::optional<QString> computerName,
                                   std::optional<QString> hostname, std::optional<QString> version,
                                   QUuid id)
    : m_id(id), m_name(std::move(name)), m_host(std::move(host)), m_port(port),
      m_computerName(std::move(computerName)), m_hostname(std::move(hostname)),
      m_version(std::move(version))
{
}

QString DiscoveredServer::displayText() const
{
    if (hasText(m_hostname)) {
        if (hasText(m_computerName) && *m_computerName != *m_hostname)
            return *m_hostname + QStringLiteral(" - ") + *m_computerName;
        return *m_hostname;
    }
    const QString &label = hasText(m_computerName) ? *m_computerName : m_name;
    return label + QStringLiteral(" (") + m_host + QLatin1Char(')');
}

QString DiscoveredServer::address() const
{
    return m_host + QLatin1Char(':') + QString::number(m_port);
}
