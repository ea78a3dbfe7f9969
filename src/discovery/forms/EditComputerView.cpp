#include "EditComputerView.h"

#include "PortText.h"
#include "TagsText.h"
#include "state/AppState.h"

EditComputerView::EditComputerView(AppState &appState, const RemoteComputer &computer,
                                   QObject *parent)
    : QObject(parent), m_appState(appState), m_computer(computer),
      m_name(computer.name.value_or(QString())), m_host(computer.host),
      m_port(QString::number(computer.port)), m_username(computer.username),
      m_password(computer.password), m_description(computer.description.value_or(QString())),
      m_tags(TagsText::join(computer.tags))
{
}

QString EditComputerView::subtitle() const
{
    return tr("Configure connection settings for ") + m_computer.displayName();
}

void EditComputerView::setHost(const QString &host)
{
    m_host = host;
    validate(hostKey);
}

void EditComputerView::setPort(const QString &port)
{
    m_port = port;
    validate(portKey);
}

void EditComputerView::setUsername(const QString &username)
{
    m_username = username;
    validate(usernameKey);
}

void EditComputerView::setPassword(const QString &password)
{
    m_password = password;
    validate(passwordKey);
}

void EditComputerView::appear()
{
    for (const QString &key : {hostKey, portKey, usernameKey, passwordKey})
        validate(key);
}

void EditComputerView::validate(const QString &key)
{
    QString message;
    if (key == hostKey && m_host.isEmpty()) {
        message = tr("Host IP address is required");
    } else if (key == portKey) {
        const std::optional<quint16> port = PortText::parse(m_port);
        if (!port || *port == 0)
            message = tr("Port must be a number between 1 and 65535");
    } else if (key == usernameKey && m_username.isEmpty()) {
        message = tr("Username is required");
    } else if (key == passwordKey && m_password.isEmpty()) {
        message = tr("Password is required");
    }
    if (message.isEmpty())
        m_validationErrors.remove(key);
    else
        m_validationErrors.insert(key, message);
    m_isFormValid = m_validationErrors.isEmpty();
    Q_EMIT validated(key);
}

void EditComputerView::cancel()
{
    close();
}

void EditComputerView::save()
{
    std::optional<RemoteComputer> computer = m_appState.computer(m_computer.id);
    if (computer) {
        computer->name = m_name.isEmpty() ? std::nullopt : std::optional(m_name);
        computer->host = m_host;
        computer->port = PortText::parse(m_port).value_or(RemoteComputer::defaultPort);
        computer->username = m_username;
        computer->password = m_password;
        computer->description =
            m_description.isEmpty() ? std::nullopt : std::optional(m_description);
        computer->tags = TagsText::split(m_tags);
        m_appState.updateComputer(*computer);
    }
    close();
}

void EditComputerView::close()
{
    if (!m_isPresented)
        return;
    m_isPresented = false;
    Q_EMIT closed();
}
