// Server identity trust of ZEKTManager: the prompt shown when an agent's identity changed.
#include "ZEKTManager.h"

#include "ManagerLifeline.h"
#include "TOFUPromptDecision.h"
#include "model/LogManager.h"
#include "platform/AlertPresenter.h"
#include "protocol/ZEKT.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QThread>
#include <QTimer>

namespace {

bool onMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

int milliseconds(double seconds)
{
    return int(std::clamp(seconds * 1000.0, 0.0, double(std::numeric_limits<int>::max())));
}

} // namespace

bool ZEKTManager::promptServerIdentityChange(const QString &label,
                                             const QString &previousFingerprint,
                                             const QString &newFingerprint)
{
    return promptServerIdentityChange(m_lifeline, label, previousFingerprint, newFingerprint);
}

bool ZEKTManager::promptServerIdentityChange(const std::shared_ptr<ManagerLifeline> &lifeline,
                                             const QString &label, const QString &previous,
                                             const QString &next)
{
    auto decision = std::make_shared<TOFUPromptDecision>();
    auto signal = std::make_shared<QSemaphore>(0);

    if (onMainThread()) {
        ZEKTManager *manager = lifeline->managerOnItsThread();
        return manager && manager->showServerIdentityAlert(decision, previous, next, label, signal);
    }

    lifeline->post([decision, previous, next, label, signal](ZEKTManager &manager) {
        manager.showServerIdentityAlert(decision, previous, next, label, signal);
    });
    if (!signal->tryAcquire(1, milliseconds(ZEKT::serverIdentityPromptTimeout() + 1.0)))
        decision->decide(false);
    return decision->storedValue().value_or(false);
}

bool ZEKTManager::showServerIdentityAlert(const std::shared_ptr<TOFUPromptDecision> &decision,
                                          const QString &previous, const QString &next,
                                          const QString &label,
                                          const std::shared_ptr<QSemaphore> &signal)
{
    Q_ASSERT(onMainThread());
    // The waiting side has given up already.
    if (decision->storedValue())
        return false;

    Alert alert;
    alert.style = Alert::Style::warning;
    alert.title = tr("Server Identity Changed");
    alert.text = tr("The security fingerprint for %1 changed.\n\nPrevious: %2…\nNew: %3…\n\nOnly "
                    "continue if you expect this change (for example after reinstalling "
                    "TelvaneAgent).")
                     .arg(label, previous.left(16), next.left(16));
    alert.buttons = {tr("Trust New Identity"), tr("Reject")};

    AlertPresenter *presenter = alertPresenter();
    if (!presenter) {
        LogManager::shared().log(QStringLiteral("No alert presenter to show: ") + alert.title,
                                 QStringLiteral("WARN"));
        if (decision->decide(false))
            signal->release();
        return false;
    }

    const AlertPresenter::Handle handle = presenter->newHandle();
    QTimer timeout;
    timeout.setSingleShot(true);
    QObject::connect(&timeout, &QTimer::timeout, [decision, signal, presenter, handle] {
        const bool wasEmpty = decision->decide(false);
        presenter->abortModal(handle);
        if (wasEmpty)
            signal->release();
    });
    timeout.start(milliseconds(ZEKT::serverIdentityPromptTimeout()));
    const int response = presenter->runModal(alert, handle);
    timeout.stop();

    if (decision->decide(response == 0))
        signal->release();
    return decision->storedValue().value_or(false);
}
