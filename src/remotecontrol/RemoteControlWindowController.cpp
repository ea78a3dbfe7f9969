#include "RemoteControlWindowController.h"

#include "RemoteControlViewController.h"
#include "RemoteControlWindow.h"
#include "RemoteWindowSizing.h"
#include "model/LogManager.h"
#include "model/UuidText.h"
#include "platform/SettingsFiles.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QSettings>
#include <QVBoxLayout>

RemoteControlWindowController::RemoteControlWindowController(const RemoteComputer &computer,
                                                             AppState &appState, QObject *parent)
    : QObject(parent), m_computer(computer), m_appState(appState),
      m_remoteControlView(std::make_unique<RemoteControlViewController>(computer, appState)),
      m_window(std::make_unique<RemoteControlWindow>(this))
{
    m_window->setWindowTitle(tr("Remote Control - ") + computer.displayName());
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_remoteControlView->loadView());
    m_remoteControlView->viewDidLoad();

    m_window->setMinimumSize(int(RemoteWindowSizing::minimumContentWidth), minimumContentHeight);
    m_window->resize(initialContentWidth, initialContentHeight);
    QRect frame(QPoint(), m_window->size());
    frame.moveCenter(m_window->visibleGeometry().center());
    m_window->move(frame.topLeft());
    // The window reopens where the user last left it for this computer.
    const QByteArray saved =
        SettingsFiles::openStandard()->value(geometryKey(computer.id)).toByteArray();
    if (!saved.isEmpty())
        m_window->restoreGeometry(saved);

    m_resizeSettle.setSingleShot(true);
    m_resizeSettle.setInterval(resizeSettleMs);
    connect(&m_resizeSettle, &QTimer::timeout, this,
            &RemoteControlWindowController::applyResizeRule);
}

RemoteControlWindowController::~RemoteControlWindowController()
{
    if (!m_window->isClosed())
        m_window->close();
    m_window->detach();
    m_remoteControlView.reset();
    m_window.reset();
}

QString RemoteControlWindowController::geometryKey(const QUuid &computerId)
{
    return QStringLiteral("RemoteControl-v2-") + UuidText::format(computerId);
}

void RemoteControlWindowController::showWindow()
{
    m_window->show();
    m_window->activateWindow();
    m_remoteControlView->viewDidAppear();
    m_isRemoteControlActive = true;
    m_remoteControlView->activateRemoteControl();
}

void RemoteControlWindowController::windowWillClose()
{
    // The view controller may have cleaned up already (its disconnect action closes the
    // window afterwards); the close runs all the same.
    if (m_isClosed)
        return;
    m_isClosed = true;
    const QString name = m_computer.displayName();
    m_remoteControlView->releaseHeldInput();
    m_isRemoteControlActive = false;
    m_remoteControlView->setRemoteControlActive(false);
    LogManager::shared().log(QStringLiteral("Remote control deactivated for ") + name +
                                 QStringLiteral(" - window closing"),
                             QStringLiteral("CONNECT"));
    if (const auto error = m_appState.zektManager().stopRemoteControlStreamingSync(m_computer))
        LogManager::shared().log(QStringLiteral("Failed to send stop streaming message for ") +
                                     name + QStringLiteral(" before window close: ") +
                                     error->description,
                                 QStringLiteral("ERROR"));
    m_remoteControlView->cleanUp();
    m_resizeSettle.stop();
    const auto settings = SettingsFiles::openStandard();
    settings->setValue(geometryKey(m_computer.id), m_window->saveGeometry());
    deleteLater();
}

QSize RemoteControlWindowController::windowWillResize(const QSize &proposedContentSize,
                                                      const QSize &visibleArea) const
{
    if (m_remoteControlView->isUpdatingImage())
        return m_window->size();
    return RemoteWindowSizing::allowedContentSize(QSizeF(proposedContentSize),
                                                  m_remoteControlView->serverScreenSize(),
                                                  QSizeF(visibleArea))
        .toSize();
}

void RemoteControlWindowController::windowDidResize()
{
    m_remoteControlView->viewDidLayout();
}

void RemoteControlWindowController::windowResizedByUser()
{
    if (!m_remoteControlView->isClosed())
        m_resizeSettle.start();
}

void RemoteControlWindowController::applyResizeRule()
{
    if (m_remoteControlView->isClosed() ||
        m_window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen))
        return;
    const QSize allowed = windowWillResize(m_window->size(), m_window->visibleArea());
    if (allowed != m_window->size())
        m_window->resizeContent(allowed);
}

void RemoteControlWindowController::windowActivationChanged(bool active)
{
    if (!active)
        m_remoteControlView->releaseHeldInput();
}
