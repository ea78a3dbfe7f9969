#pragma once

#include "discovery/DiscoveredServer.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>
#include <chrono>
#include <optional>

class AppState;
class BonjourDiscoveryManager;
class DiscoveredServerListModel;

// The add form without its window: the agents found on the local network that are not
// configured yet, hand entry, the credentials, and "Add Now". Each search runs for
// `searchDuration` (20 s) from opening, "Search again" or "Cancel custom entry".
class AddComputerView : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultSearchDuration{20000};

    enum class ListState {
        rows,         // servers to show
        searching,    // none yet, a search runs
        nothingFound, // none, no search runs
    };
    enum class AddOutcome {
        added,
        notReady,    // host, username or password empty
        invalidPort, // the port text does not parse; the form shows no message
    };

    AddComputerView(AppState &appState, BonjourDiscoveryManager &discovery,
                    std::chrono::milliseconds searchDuration = defaultSearchDuration,
                    QObject *parent = nullptr);
    ~AddComputerView() override;

    // The texts as typed (never trimmed).
    const QString &name() const { return m_name; }
    const QString &host() const { return m_host; }
    const QString &port() const { return m_port; }
    const QString &username() const { return m_username; }
    const QString &password() const { return m_password; }
    void setName(const QString &name);
    void setHost(const QString &host);
    void setPort(const QString &port);
    void setUsername(const QString &username);
    void setPassword(const QString &password);

    bool isPresented() const { return m_isPresented; }
    bool showManualEntry() const { return m_showManualEntry; }
    bool isDiscovering() const { return m_isDiscovering; }
    // The manager's list as last seen, and the rows shown: those whose host is not a
    // configured computer's host (compared exactly; the port does not matter).
    const QList<DiscoveredServer> &discoveredServers() const { return m_discoveredServers; }
    DiscoveredServerListModel &rows() const { return *m_rows; }
    const std::optional<DiscoveredServer> &selectedServer() const { return m_selectedServer; }
    ListState listState() const;
    bool canAddNow() const;

    static QString listCaption();
    static QString searchingText();
    static QString searchingListText();
    static QString nothingFoundText();

    // Opening the form starts the first search.
    void appear();
    void startSearch();
    void stopSearch();
    // A row was picked: host, port and name follow it; the credentials stay as typed.
    void selectServer(const QUuid &id);
    void openManualEntry();
    void cancelManualEntry();
    AddOutcome addNow();
    // "Cancel", Escape or any other way the form closes; stops the search.
    void dismiss();

Q_SIGNALS:
    // Anything but the rows, which the list model announces itself.
    void changed();
    // The form is to close.
    void closed();

private:
    void setText(QString &field, const QString &text);
    void refreshConfiguredHosts();
    void updateRows();
    void mirrorDiscovery();
    void mirrorIsDiscovering();

    AppState &m_appState;
    BonjourDiscoveryManager &m_discovery;
    QTimer m_searchTimer;
    DiscoveredServerListModel *m_rows;

    QString m_name;
    QString m_host;
    QString m_port;
    QString m_username;
    QString m_password;
    bool m_isPresented = true;
    bool m_showManualEntry = false;
    bool m_isDiscovering = false;
    bool m_mirrorsDiscovery = false;
    QList<DiscoveredServer> m_discoveredServers;
    std::optional<DiscoveredServer> m_selectedServer;
    QSet<QString> m_configuredHosts;
};
