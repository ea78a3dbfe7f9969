#include "PendingActionInbox.h"

#include "AppState.h"
#include "model/LogManager.h"
#include "platform/AppIdentity.h"
#include "platform/AppPaths.h"
#include "platform/PendingActionQueue.h"
#include "platform/SerialQueue.h"
#include "platform/SettingsFiles.h"
#include "platform/StagedUploads.h"
#include "session/ZEKTManager.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSettings>
#include <QTimer>

namespace {

// How long a queued remote-control or upload request waits for its session, and the
// rate a queued remote control streams at.
constexpr double queuedConnectionWait = 60.0;
constexpr double queuedRemoteControlFrameRate = 5.0;

} // namespace

PendingActionInbox::PendingActionInbox(AppState &appState, bool consumes, QObject *parent)
    : QObject(parent), m_appState(appState), m_consumes(consumes),
      m_queue(std::make_unique<SerialQueue>(QLatin1String(AppIdentity::applicationIdentifier) +
                                            QStringLiteral(".pendingActions"))),
      m_readScheduled(std::make_shared<std::atomic<bool>>(false)),
      m_isGone(std::make_shared<std::atomic<bool>>(false))
{
}

PendingActionInbox::~PendingActionInbox()
{
    stopTaking();
}

void PendingActionInbox::stopTaking()
{
    m_isGone->store(true);
}

void PendingActionInbox::setConnectionPollIntervalForTesting(int milliseconds)
{
    m_connectionPollIntervalMs = milliseconds;
}

void PendingActionInbox::waitUntilIdle()
{
    m_queue->waitUntilIdle();
}

void PendingActionInbox::processPendingActions()
{
    if (!m_consumes || m_readScheduled->exchange(true))
        return;
    QPointer<PendingActionInbox> self(this);
    auto scheduled = m_readScheduled;
    auto gone = m_isGone;
    m_queue->enqueue([self, scheduled, gone] {
        scheduled->store(false);
        if (gone->load())
            return;
        // The queue lives in the shared suite only; without it nothing can be queued.
        std::unique_ptr<QSettings> suite = SettingsFiles::openSharedSuite();
        if (!suite)
            return;
        const PendingActions actions = PendingActionQueue::take(*suite);
        if (actions.isEmpty())
            return;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, actions] {
                if (self)
                    self->carryOut(actions);
            },
            Qt::QueuedConnection);
    });
}

void PendingActionInbox::sweepStagedUploads()
{
    const QString directory = AppPaths::stagedUploadsDirectory();
    if (!m_consumes || directory.isEmpty())
        return;
    const QSet<QString> named = m_waitingUploads | m_appState.zektManager().uploadsUnderWay();
    const QDateTime cutoff = QDateTime::currentDateTimeUtc().addDays(-StagedUploads::sweepAgeDays);
    // On the queue that reads requests, ahead of the first read: the queued upload is still
    // in the suite, where the sweep sees it.
    m_queue->enqueue([directory, named, cutoff] {
        QSet<QString> kept = named;
        if (std::unique_ptr<QSettings> suite = SettingsFiles::openSharedSuite())
            kept.insert(PendingActionQueue::stagedFileNamed(*suite));
        if (const int removed = StagedUploads::sweep(directory, kept, cutoff))
            LogManager::shared().log(
                QStringLiteral("Removed %1 staged upload(s) older than %2 days that no request "
                               "names")
                    .arg(removed)
                    .arg(StagedUploads::sweepAgeDays),
                QStringLiteral("FILE"));
    });
}

void PendingActionInbox::waitForConnection(const QUuid &id, double timeout,
                                           std::function<void(bool)> completion)
{
    struct Wait {
        QDateTime deadline;
        std::function<void(bool)> completion;
        bool isDone = false;
    };
    auto wait = std::make_shared<Wait>(
        Wait{m_appState.now().addMSecs(qint64(timeout * 1000.0)), std::move(completion)});
    // The timer belongs to this object: when the inbox goes, the wait goes with it.
    auto *timer = new QTimer(this);
    const int pollMs = m_connectionPollIntervalMs;
    connect(timer, &QTimer::timeout, this, [this, timer, id, wait, pollMs] {
        if (wait->isDone)
            return;
        std::optional<bool> outcome;
        if (m_appState.now() < wait->deadline) {
            const std::optional<RemoteComputer> record = m_appState.computer(id);
            if (record && record->isConnected)
                outcome = true;
            // This relies on connectToComputer marking the computer connecting at once:
            // an error left over from an earlier attempt must not end the wait.
            else if (record && !record->isConnecting && record->lastError &&
                     !record->lastError->isEmpty())
                outcome = false;
        } else {
            outcome = false;
        }
        if (!outcome) {
            if (timer->interval() != pollMs)
                timer->start(pollMs);
            return;
        }
        wait->isDone = true;
        timer->stop();
        timer->deleteLater();
        wait->completion(*outcome);
    });
    // The first look comes from the event loop, after the caller's own work is done.
    timer->start(0);
}

void PendingActionInbox::carryOut(const PendingActions &actions)
{
    ZEKTManager &manager = m_appState.zektManager();
    // Each step looks the record up again: an earlier step may have changed it.
    // Requests for computers no longer in the list are dropped without a word.
    if (actions.connection) {
        if (const auto record = m_appState.computer(*actions.connection))
            manager.connectToComputer(*record);
    }
    if (actions.disconnection) {
        if (const auto record = m_appState.computer(*actions.disconnection))
            manager.disconnectFromComputer(*record);
    }
    // The waits' completions run inside this object's own timer callbacks.
    if (actions.remoteControl) {
        if (const auto record = m_appState.computer(*actions.remoteControl)) {
            m_appState.setSelectedItem(NavigationItem::computer(record->id));
            manager.connectToComputer(*record);
            const RemoteComputer held = *record;
            waitForConnection(held.id, queuedConnectionWait, [this, held](bool isConnected) {
                if (!isConnected) {
                    LogManager::shared().log(
                        QStringLiteral("Timed out waiting for connection before starting remote "
                                       "control for ") +
                            held.displayName(),
                        QStringLiteral("ERROR"));
                    return;
                }
                m_appState.zektManager().startRemoteControlStreaming(
                    m_appState.computer(held.id).value_or(held), queuedRemoteControlFrameRate);
            });
        }
    }
    if (actions.stopRemoteControl) {
        if (const auto record = m_appState.computer(*actions.stopRemoteControl))
            manager.stopRemoteControlStreaming(*record);
    }
    if (actions.fileUpload) {
        const PendingActions::Upload upload = *actions.fileUpload;
        if (const auto record = m_appState.computer(upload.computerId)) {
            manager.connectToComputer(*record);
            const RemoteComputer held = *record;
            m_waitingUploads.insert(upload.filePath);
            waitForConnection(
                held.id, queuedConnectionWait, [this, held, upload](bool isConnected) {
                    m_waitingUploads.remove(upload.filePath);
                    if (!isConnected) {
                        // The staged copy stays; only a finished transfer deletes it.
                        m_appState.completeFileTransfer(QStringLiteral("Unable to connect to ") +
                                                        held.displayName() +
                                                        QStringLiteral(" for file upload"));
                        return;
                    }
                    m_appState.zektManager().sendFileTransfer(
                        m_appState.computer(held.id).value_or(held), upload.filePath,
                        upload.fileName, true);
                });
        }
    }
}
