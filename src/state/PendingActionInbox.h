#pragma once

#include <QObject>
#include <QSet>
#include <QUuid>
#include <atomic>
#include <functional>
#include <memory>

class AppState;
class SerialQueue;
struct PendingActions;

// Carries out what the automation side queued in the shared suite: the queue is read and
// consumed off the main thread, and its requests are carried out here, on the main thread.
// Requests that need a session first wait for it by polling the record, never blocking.
class PendingActionInbox : public QObject {
    Q_OBJECT

public:
    // An inbox made with `consumes` false leaves the queue alone (a second writer of the
    // suite in stress tests).
    PendingActionInbox(AppState &appState, bool consumes, QObject *parent = nullptr);
    ~PendingActionInbox() override;

    // Reads the queue off the main thread; a read not yet started covers every later call.
    void processPendingActions();
    // Once, at console start and before the first read: deletes staged files older than a
    // week that neither the queued upload nor an upload under way names.
    void sweepStagedUploads();
    // From now on a read takes nothing: nobody would carry it out.
    void stopTaking();

    // Polls the record without blocking; `completion` runs later on the main thread with
    // true once the computer is connected, false when its attempt has failed or the
    // time-out (seconds) passed. Not called at all if this object is gone by then.
    void waitForConnection(const QUuid &id, double timeout, std::function<void(bool)> completion);
    void setConnectionPollIntervalForTesting(int milliseconds);

    // Blocks until a read under way has finished. Tests and benchmarks only.
    void waitUntilIdle();

private:
    void carryOut(const PendingActions &actions);

    AppState &m_appState;
    const bool m_consumes;
    int m_connectionPollIntervalMs = 250;
    std::unique_ptr<SerialQueue> m_queue;
    // Files of queued uploads waiting for their session.
    QSet<QString> m_waitingUploads;
    std::shared_ptr<std::atomic<bool>> m_readScheduled;
    std::shared_ptr<std::atomic<bool>> m_isGone;
};
