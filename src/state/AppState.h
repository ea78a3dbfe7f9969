#pragma once

#include "model/ComputerFields.h"
#include "model/RemoteComputer.h"
#include "session/SessionStore.h"
#include "session/ZEKTManager.h"
#include "state/NavigationItem.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QUuid>
#include <functional>
#include <memory>
#include <optional>

class AutoConnectPass;
class ComputerListStorage;
class PendingActionInbox;
class SharedSuiteWatcher;
class UploadDisplayState;

// The application's one long-lived state: the configured computers, the navigation
// selection, the upload display state, supervision and automation hand-over, and the
// session manager. It is the one object the rest of the console talks to; the stored list,
// the upload display, the automation inbox and the supervision pass are classes of their
// own that it owns. Lives on the main thread.
class AppState : public QObject, public SessionStore {
    Q_OBJECT

public:
    // `manager` replaces the session manager (tests); by default a real one is made.
    // A store made with `consumesPendingActions` false leaves the automation queue alone
    // (a second writer of the suite in stress tests).
    explicit AppState(std::unique_ptr<ZEKTManager> manager = nullptr, QObject *parent = nullptr,
                      bool consumesPendingActions = true);
    ~AppState() override;

    const QString appGroupIdentifier;
    const QString computersKey;

    // Published state.
    const QList<RemoteComputer> &computers() const override { return m_computers; }
    // Assigns the whole list; does not save. A list with the same ids in the same order
    // announces each changed computer, any other as every computer removed and added anew.
    void setComputers(QList<RemoteComputer> computers);
    std::optional<RemoteComputer> computer(const QUuid &id) const;
    std::optional<QString> computerDisplayName(const QUuid &id) const override;

    NavigationItem selectedItem() const { return m_selectedItem; }
    void setSelectedItem(const NavigationItem &item);

    bool isFileTransferInProgress() const;
    double fileTransferProgress() const;
    QString fileTransferFileName() const;
    QString fileTransferStatus() const;

    ZEKTManager &zektManager() const { return *m_zektManager; }
    const QHash<QUuid, QDateTime> &lastAutoConnectAttempts() const;

    // The computer list.
    void addComputer(const RemoteComputer &computer);
    // Adds the computer when the list is empty, but never to a list that is empty only
    // because the stored one did not decode; true when it was added.
    bool addComputerIfEmpty(const RemoteComputer &computer);
    void updateComputer(const RemoteComputer &computer);
    void removeComputer(const QUuid &id);
    void updateConnectingStatus(const QUuid &id, bool isConnecting) override;
    void updateConnectionStatus(const QUuid &id, bool isConnected,
                                const std::optional<QString> &error = std::nullopt) override;
    // Replaces the computer's statistics with a report's and saves.
    void applySystemStats(const QUuid &id, const SystemStats &stats) override;
    // Any thread.
    void storeThumbnail(const QUuid &id, const QByteArray &data) override;
    void saveComputers();

    // Upload display state; any thread, applied on the main thread in call order.
    void beginFileTransfer(const QString &fileName) override;
    void updateFileTransferProgress(const QString &status, double fraction) override;
    void completeFileTransfer(const QString &message) override;
    void cancelFileTransfer();
    void setUploadDisplayDurationsForTesting(int outcomeMs, int cancelMs);

    // Supervision and automation. Intervals and time-outs are in seconds.
    bool shouldAutoConnect(const RemoteComputer &computer, const QDateTime &now,
                           double minimumRetryInterval) const;
    void autoConnectDisconnectedComputers(double minimumRetryInterval);
    // Polls the record every 250 ms without blocking; `completion` runs later on the main
    // thread with true once the computer is connected, false when its attempt has failed
    // or the time-out passed. Not called at all if this object is gone by then.
    void waitForConnection(const QUuid &id, double timeout, std::function<void(bool)> completion);
    // Reads the queue off the main thread; the requests are then carried out here.
    void processPendingActions();

    // Time source of supervision and waits (UTC); tests substitute a fake clock.
    void setClockForTesting(std::function<QDateTime()> clock);
    void setConnectionPollIntervalForTesting(int milliseconds);
    QDateTime now() const;

    // Blocks until every requested save and thumbnail write has reached the disk.
    // Tests and benchmarks only.
    void waitForPendingWrites();
    ComputerListStorage &storageForTesting() { return *m_storage; }

Q_SIGNALS:
    // Per computer, for views that update one row or card: a record appended at `row`;
    // every record with that id removed; fields of that computer changed (only when some
    // did). They come first; computersChanged() follows every change of the list.
    void computerAdded(const QUuid &id, int row);
    void computerRemoved(const QUuid &id);
    void computerChanged(const QUuid &id, ComputerFields fields);
    void computersChanged();
    void selectedItemChanged();
    void fileTransferChanged();

private:
    void loadComputers();
    void loadThumbnails();
    int indexOf(const QUuid &id) const;
    // Puts a new version of the record at `index` in its place and announces it.
    void replaceComputer(int index, RemoteComputer updated);

    QList<RemoteComputer> m_computers;
    bool m_storedListUndecodable = false;
    NavigationItem m_selectedItem;
    std::unique_ptr<ZEKTManager> m_zektManager;
    std::unique_ptr<ComputerListStorage> m_storage;
    UploadDisplayState *m_uploadDisplay;
    std::unique_ptr<AutoConnectPass> m_autoConnect;
    PendingActionInbox *m_pendingActions;
    std::unique_ptr<SharedSuiteWatcher> m_defaultsObserver;
    std::function<QDateTime()> m_clock;
};
