#include "AddComputerView.h"

#include "DiscoveredServerListModel.h"
#include "PortText.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "state/AppState.h"

AddComputerView::AddComputerView(AppState &appState, BonjourDiscoveryManager &discovery,
                                 std::chrono::milliseconds searchDuration, QObject *parent)
    : QObject(parent), m_appState(appState), m_discovery(discovery),
      m_rows(new DiscoveredServerListModel(this)),
      m_port(QString::number(RemoteComputer::defaultPort))
{
    m_searchTimer.setSingleShot(true);
    m_searchTimer.setInterval(searchDuration);
    connect(&m_searchTimer, &QTimer::timeout, this, &AddComputerView::stopSearch);

    // Only a change of the set of hosts filters anew: statistics arrive every few seconds
    // and must not disturb the list.
    refreshConfiguredHosts();
    connect(&appState, &AppState::computerAdded, this, &AddComputerView::refreshConfiguredHosts);
    connect(&appState, &AppState::computerRemoved, this, &AddComputerView::refreshConfiguredHosts);
    connect(&appState, &AppState::computerChanged, this,
            [this](const QUuid &, ComputerFields fields) {
                if (fields & ComputerField::host)
                    refreshConfiguredHosts();
            });
    connect(&discovery, &BonjourDiscoveryManager::discoveredServersChanged, this,
            &AddComputerView::mirrorDiscovery);
    connect(&discovery, &BonjourDiscoveryManager::isDiscoveringChanged, this,
            &AddComputerView::mirrorIsDiscovering);
}

AddComputerView::~AddComputerView()
{
    if (m_isPresented && m_isDiscovering)
        m_discovery.stopDiscovery();
}

void AddComputerView::setName(const QString &name)
{
    setText(m_name, name);
}

void AddComputerView::setHost(const QString &host)
{
    setText(m_host, host);
}

void AddComputerView::setPort(const QString &port)
{
    setText(m_port, port);
}

void AddComputerView::setUsername(const QString &username)
{
    setText(m_username, username);
}

void AddComputerView::setPassword(const QString &password)
{
    setText(m_password, password);
}

void AddComputerView::setText(QString &field, const QString &text)
{
    field = text;
    Q_EMIT changed();
}

AddComputerView::ListState AddComputerView::listState() const
{
    if (m_rows->rowCount() > 0)
        return ListState::rows;
    return m_isDiscovering ? ListState::searching : ListState::nothingFound;
}

bool AddComputerView::canAddNow() const
{
    // Not trimmed: a single space counts as content.
    return !m_host.isEmpty() && !m_username.isEmpty() && !m_password.isEmpty();
}

QString AddComputerView::listCaption()
{
    return tr("Computers or servers found on your local network");
}

QString AddComputerView::searchingText()
{
    return tr("Searching...");
}

QString AddComputerView::searchingListText()
{
    return tr("Searching for computers or servers...");
}

QString AddComputerView::nothingFoundText()
{
    return tr("No new computers or servers found");
}

void AddComputerView::appear()
{
    startSearch();
}

void AddComputerView::startSearch()
{
    m_isDiscovering = true;
    m_discoveredServers.clear();
    m_selectedServer.reset();
    updateRows();
    m_mirrorsDiscovery = true;
    m_discovery.startDiscovery();
    m_searchTimer.start();
    Q_EMIT changed();
}

void AddComputerView::stopSearch()
{
    m_searchTimer.stop();
    m_discovery.stopDiscovery();
    m_isDiscovering = false;
    Q_EMIT changed();
}

void AddComputerView::selectServer(const QUuid &id)
{
    const int row = m_rows->row(id);
    if (row < 0)
        return;
    const DiscoveredServer &server = m_rows->servers().at(row);
    m_selectedServer = server;
    m_host = server.host();
    m_port = QString::number(server.port());
    m_name = server.computerName().value_or(QString());
    Q_EMIT changed();
}

void AddComputerView::openManualEntry()
{
    m_showManualEntry = true;
    stopSearch();
}

void AddComputerView::cancelManualEntry()
{
    m_showManualEntry = false;
    startSearch();
}

AddComputerView::AddOutcome AddComputerView::addNow()
{
    if (!canAddNow())
        return AddOutcome::notReady;
    const std::optional<quint16> port = PortText::parse(m_port);
    if (!port)
        return AddOutcome::invalidPort;
    RemoteComputer computer; // a fresh id and every other field at its default
    if (!m_name.isEmpty())
        computer.name = m_name;
    computer.host = m_host;
    computer.port = *port;
    computer.username = m_username;
    computer.password = m_password;
    m_appState.addComputer(computer);
    dismiss();
    return AddOutcome::added;
}

void AddComputerView::dismiss()
{
    if (!m_isPresented)
        return;
    stopSearch();
    m_mirrorsDiscovery = false;
    m_isPresented = false;
    Q_EMIT closed();
}

void AddComputerView::refreshConfiguredHosts()
{
    QSet<QString> hosts;
    for (const RemoteComputer &computer : m_appState.computers())
        hosts.insert(computer.host);
    if (hosts == m_configuredHosts)
        return;
    m_configuredHosts = std::move(hosts);
    updateRows();
    Q_EMIT changed();
}

void AddComputerView::updateRows()
{
    QList<DiscoveredServer> visible;
    for (const DiscoveredServer &server : std::as_const(m_discoveredServers)) {
        if (!m_configuredHosts.contains(server.host()))
            visible.append(server);
    }
    m_rows->setServers(visible);
}

void AddComputerView::mirrorDiscovery()
{
    if (!m_mirrorsDiscovery)
        return;
    m_discoveredServers = m_discovery.discoveredServers();
    updateRows();
    Q_EMIT changed();
}

void AddComputerView::mirrorIsDiscovering()
{
    if (!m_mirrorsDiscovery)
        return;
    m_isDiscovering = m_discovery.isDiscovering();
    Q_EMIT changed();
}
