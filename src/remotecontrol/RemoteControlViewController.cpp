#include "RemoteControlViewController.h"

#include "ui/ElidedLabel.h"
#include "FrameRateScale.h"
#include "FrameRateSlider.h"
#include "RemoteControlView.h"
#include "RemoteControlWindow.h"
#include "RemoteCoordinateMapping.h"
#include "RemoteFrameView.h"
#include "RemoteKeyTranslator.h"
#include "RemoteWindowSizing.h"
#include "input/MacKeyCodeTable.h"
#include "model/LogManager.h"
#include "platform/NotificationHub.h"
#include "protocol/ZEKTClient.h"
#include "session/DecodedFrameCache.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>
#include <limits>

namespace {

const QString screenCaptureReceived = QStringLiteral("screenCaptureReceived");

void log(const QString &message, const char *category)
{
    LogManager::shared().log(message, QLatin1String(category));
}

// A display size entry of the notification: an unsigned 32-bit number, else 0.
quint32 displayDimension(const QVariant &value)
{
    bool ok = false;
    switch (value.typeId()) {
    case QMetaType::UInt:
    case QMetaType::Int:
    case QMetaType::ULongLong:
    case QMetaType::LongLong:
    case QMetaType::UShort:
    case QMetaType::Short:
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble(&ok);
        if (ok && number >= 0 && number <= std::numeric_limits<quint32>::max() &&
            number == std::floor(number))
            return quint32(number);
        return 0;
    }
    default:
        return 0;
    }
}

} // namespace

RemoteControlViewController::RemoteControlViewController(const RemoteComputer &computer,
                                                         AppState &appState, QObject *parent)
    : QObject(parent), m_computer(computer), m_appState(appState)
{
    m_connectionPoll.setInterval(connectionPollIntervalMs);
    connect(&m_connectionPoll, &QTimer::timeout, this,
            &RemoteControlViewController::pollConnection);
    m_restartTimer.setSingleShot(true);
    m_restartTimer.setInterval(frameRateRestartDelayMs);
    connect(&m_restartTimer, &QTimer::timeout, this,
            &RemoteControlViewController::restartStreaming);
}

RemoteControlViewController::~RemoteControlViewController()
{
    cleanUp();
    log(QStringLiteral("RemoteControlWindowController deallocated"), "MEMORY");
}

QDateTime RemoteControlViewController::now() const
{
    return m_clock ? m_clock() : QDateTime::currentDateTimeUtc();
}

void RemoteControlViewController::later(std::function<void()> step, int delayMs)
{
    QTimer::singleShot(delayMs, this, [this, step = std::move(step)] {
        if (!m_isClosed)
            step();
    });
}

// ---- view lifecycle -----------------------------------------------------------------------

QWidget *RemoteControlViewController::loadView()
{
    // The image view paints black wherever there is no frame yet.
    m_view = new RemoteControlView(this);
    m_imageView = new RemoteFrameView(this, m_view);

    m_controlPanel = new QWidget(m_view);
    m_controlPanel->setFixedHeight(int(RemoteWindowSizing::controlPanelHeight));
    m_controlPanel->setAccessibleName(tr("Session controls"));

    // Labels keep their text as their accessible name, so a screen reader reads the status.
    m_statusLabel = new ElidedLabel(m_controlPanel);
    m_statusLabel->setText(tr("Connecting..."));
    m_statusLabel->setAccessibleDescription(tr("Session status"));
    auto *frameRateLabel = new QLabel(tr("Frame Rate:"), m_controlPanel);
    m_frameRateSlider = new FrameRateSlider(m_controlPanel);
    frameRateLabel->setBuddy(m_frameRateSlider);
    m_frameRateValueLabel = new QLabel(FrameRateScale::text(frameRate()), m_controlPanel);
    m_frameRateValueLabel->setFixedWidth(50);
    m_frameRateValueLabel->setAccessibleDescription(tr("Chosen frame rate"));
    // Size 12 beside a system font of 13: a touch smaller than the labels around it.
    QFont small = m_frameRateValueLabel->font();
    small.setPointSizeF(small.pointSizeF() * 12.0 / 13.0);
    m_frameRateValueLabel->setFont(small);
    QPalette secondary = m_frameRateValueLabel->palette();
    secondary.setColor(QPalette::WindowText, secondary.color(QPalette::PlaceholderText));
    m_frameRateValueLabel->setPalette(secondary);

    auto *panel = new QHBoxLayout(m_controlPanel);
    panel->setContentsMargins(12, 0, 12, 0);
    panel->setSpacing(8);
    panel->addWidget(m_statusLabel, 1);
    panel->addWidget(frameRateLabel);
    panel->addWidget(m_frameRateSlider);
    panel->addWidget(m_frameRateValueLabel);

    auto *content = new QVBoxLayout(m_view);
    content->setContentsMargins(0, 0, 0, 0);
    content->setSpacing(0);
    content->addWidget(m_imageView, 1);
    content->addWidget(m_controlPanel);

    connect(m_frameRateSlider, &QAbstractSlider::valueChanged, this,
            &RemoteControlViewController::frameRateChanged);
    // The value follows a drag at once; the stream restarts when the drag ends.
    connect(m_frameRateSlider, &QAbstractSlider::sliderMoved, this, [this](int position) {
        m_frameRateValueLabel->setText(FrameRateScale::text(FrameRateScale::value(
            FrameRateScale::snapped(position, m_frameRateSlider->value(), false))));
    });
    return m_view;
}

void RemoteControlViewController::viewDidLoad()
{
    // Direct, so the notification is read on the posting thread, which hands the frame on.
    m_notificationConnection = connect(
        &NotificationHub::shared(), &NotificationHub::notificationPosted, this,
        &RemoteControlViewController::handleScreenCaptureNotification, Qt::DirectConnection);
    connect(&m_appState, &AppState::computerChanged, this,
            &RemoteControlViewController::computerChanged);
    reportStreamingState();
}

void RemoteControlViewController::viewDidAppear()
{
    if (m_view)
        m_view->setFocus(Qt::OtherFocusReason);
}

void RemoteControlViewController::viewDidLayout()
{
    if (m_imageView)
        m_imageView->fitFrame();
}

RemoteControlView *RemoteControlViewController::view() const
{
    return m_view;
}

RemoteFrameView *RemoteControlViewController::imageView() const
{
    return m_imageView;
}

ElidedLabel *RemoteControlViewController::statusLabel() const
{
    return m_statusLabel;
}

FrameRateSlider *RemoteControlViewController::frameRateSlider() const
{
    return m_frameRateSlider;
}

QLabel *RemoteControlViewController::frameRateValueLabel() const
{
    return m_frameRateValueLabel;
}

void RemoteControlViewController::setStatus(const QString &text)
{
    if (m_statusLabel)
        m_statusLabel->setText(text);
}

QString RemoteControlViewController::statusText() const
{
    return m_statusLabel ? m_statusLabel->text() : QString();
}

void RemoteControlViewController::reportStreamingState()
{
    later([this] {
        log(QStringLiteral("Remote control streaming state: ") +
                (m_isRemoteControlActive ? QStringLiteral("ACTIVE") : QStringLiteral("INACTIVE")),
            "SCREEN");
    });
}

// ---- the session ----------------------------------------------------------------------------

void RemoteControlViewController::activateRemoteControl()
{
    if (m_isRemoteControlActive)
        return;
    m_isRemoteControlActive = true;
    later([this] {
        setStatus(tr("Remote control is active"));
        reportStreamingState();
    });
    later([this] { startSession(); });
}

void RemoteControlViewController::startSession()
{
    ZEKTManager &manager = m_appState.zektManager();
    const std::shared_ptr<ZEKTClient> client = manager.client(m_computer.id);
    if (client && client->connectionState() == ZEKT::ConnectionState::connected) {
        sessionStarted(client);
        return;
    }
    log(QStringLiteral(
            "No active managed connection found, connecting before starting remote control"),
        "CONNECT");
    manager.connectToComputer(m_computer);
    m_connectionStart = now();
    m_connectionPoll.start();
    pollConnection();
}

void RemoteControlViewController::pollConnection()
{
    if (m_isClosed) {
        m_connectionPoll.stop();
        return;
    }
    const auto finish = [this] { m_connectionPoll.stop(); };
    if (double(m_connectionStart.msecsTo(now())) / 1000.0 >= connectionTimeout) {
        finish();
        sessionFailed(Error{QStringLiteral("RemoteControl"), -1,
                            tr("Timed out waiting for the remote Mac connection")});
        return;
    }
    const std::optional<RemoteComputer> record = m_appState.computer(m_computer.id);
    if (!record)
        return;
    if (record->isConnected) {
        if (const auto client = m_appState.zektManager().client(m_computer.id)) {
            finish();
            sessionStarted(client);
            return;
        }
    }
    if (!record->isConnecting && record->lastError && !record->lastError->isEmpty()) {
        finish();
        sessionFailed(Error{QStringLiteral("RemoteControl"), -1, *record->lastError});
    }
}

void RemoteControlViewController::sessionStarted(const std::shared_ptr<ZEKTClient> &client)
{
    m_zektClient = client;
    log(QStringLiteral("Using ZEKTManager connection for remote control"), "CONNECT");
    later([this] { setStatus(tr("Connected")); });
    m_appState.zektManager().startRemoteControlStreaming(
        m_computer, FrameRateScale::wholeFramesPerSecond(frameRate()));
    m_isRemoteControlActive = true;
    reportStreamingState();
}

void RemoteControlViewController::sessionFailed(const Error &error)
{
    later([this, text = error.description] { setStatus(tr("Connection failed: ") + text); });
    log(QStringLiteral("Failed to start remote control: ") + error.description, "ERROR");
    later([this] { m_isRemoteControlActive = false; });
}

void RemoteControlViewController::computerChanged(const QUuid &id)
{
    // A session that drops keeps the last frame on screen and says so in the status line.
    if (id != m_computer.id || m_isClosed || !m_zektClient || m_sessionLost)
        return;
    const std::optional<RemoteComputer> record = m_appState.computer(id);
    if (!record || record->isConnected || record->isConnecting)
        return;
    m_sessionLost = true;
    setStatus(record->lastError && !record->lastError->isEmpty()
                  ? tr("Disconnected: %1").arg(*record->lastError)
                  : tr("Disconnected from %1").arg(m_computer.displayName()));
}

// ---- frames ---------------------------------------------------------------------------------

void RemoteControlViewController::handleScreenCaptureNotification(const QString &name,
                                                                  const QVariantMap &userInfo)
{
    if (name != screenCaptureReceived)
        return;
    const QVariant computerID = userInfo.value(QStringLiteral("computerID"));
    const QVariant imageData = userInfo.value(QStringLiteral("imageData"));
    if (computerID.typeId() != QMetaType::QUuid || imageData.typeId() != QMetaType::QByteArray ||
        computerID.toUuid() != m_computer.id)
        return;
    const quint32 width = displayDimension(userInfo.value(QStringLiteral("displayWidth")));
    const quint32 height = displayDimension(userInfo.value(QStringLiteral("displayHeight")));
    QMetaObject::invokeMethod(
        this,
        [this, data = imageData.toByteArray(), width, height] {
            if (!m_isClosed)
                processFrame(data, width, height);
        },
        Qt::QueuedConnection);
}

void RemoteControlViewController::processFrame(const QByteArray &imageData, quint32 displayWidth,
                                               quint32 displayHeight)
{
    // The pipeline decoded these very bytes already; a repaired copy could never match.
    QImage image = DecodedFrameCache::shared().find(m_computer.id, imageData);
    QByteArray data = imageData;
    if (const qsizetype garbage = ScreenImageDecoder::leadingGarbageLength(data); garbage > 0) {
        data.remove(0, garbage);
        log(QStringLiteral("Fixed corrupted image data by removing %1 extra bytes").arg(garbage),
            "SCREEN");
    }
    if (image.isNull())
        image = m_decoder.decodeQuietly(data);
    if (image.isNull()) {
        log(QStringLiteral("Failed to create NSImage from screen capture data in "
                           "RemoteControlWindowController. ") +
                ScreenImageDecoder::describeBytes(data),
            "ERROR");
        return;
    }
    m_isUpdatingImage = true;
    m_currentScreenImage = image;
    m_serverScreenSize = displayWidth != 0 && displayHeight != 0
                             ? QSizeF(displayWidth, displayHeight)
                             : QSizeF(image.size());
    if (m_imageView)
        m_imageView->setFrame(image);
    if (!m_sessionLost)
        setStatus(tr("Connected - Screen: %1x%2")
                      .arg(qint64(m_serverScreenSize.width()))
                      .arg(qint64(m_serverScreenSize.height())));
    if (!m_hasAppliedInitialScreenAspectRatio) {
        m_hasAppliedInitialScreenAspectRatio = true;
        applyInitialScreenAspectRatio();
    }
    m_isUpdatingImage = false;
}

QSize RemoteControlViewController::visibleArea() const
{
    if (m_visibleAreaForTesting.isValid())
        return m_visibleAreaForTesting;
    if (const auto *window =
            qobject_cast<RemoteControlWindow *>(m_view ? m_view->window() : nullptr))
        return window->visibleArea();
    return QSize(1920, 1080);
}

void RemoteControlViewController::applyInitialScreenAspectRatio()
{
    const auto plan = RemoteWindowSizing::initialResize(m_serverScreenSize, visibleArea());
    if (!plan)
        return;
    if (auto *window = qobject_cast<RemoteControlWindow *>(m_view ? m_view->window() : nullptr)) {
        window->resizeContent(plan->contentSize.toSize(), plan->minimumContentSize.toSize());
        later([this] { viewDidLayout(); });
    }
    log(QStringLiteral("Resized remote control window to match server screen aspect ratio ") +
            QString::asprintf("%.2f", plan->aspectRatio),
        "UI");
}

// ---- frame rate and the further actions ----------------------------------------------------

double RemoteControlViewController::frameRate() const
{
    // Always finite and within 1...30: positions are bounded integers.
    return m_frameRateSlider ? m_frameRateSlider->frameRate()
                             : FrameRateScale::value(FrameRateScale::initialPosition);
}

void RemoteControlViewController::frameRateChanged()
{
    const QString rate = FrameRateScale::text(frameRate());
    if (m_frameRateValueLabel)
        m_frameRateValueLabel->setText(rate);
    log(QStringLiteral("Frame rate changed to ") + rate, "SCREEN");
    if (!m_isRemoteControlActive)
        return;
    m_appState.zektManager().stopRemoteControlStreaming(m_computer);
    log(QStringLiteral("Stopped streaming for frame rate change"), "SCREEN");
    // Changes in quick succession (wheel turns) restart the stream once, at the last rate.
    m_restartTimer.start();
}

void RemoteControlViewController::restartStreaming()
{
    if (m_isClosed)
        return;
    const double rate = frameRate();
    m_appState.zektManager().startRemoteControlStreaming(m_computer, rate);
    log(QStringLiteral("Restarted streaming with new frame rate: ") + FrameRateScale::text(rate),
        "SCREEN");
    later([this, rate] {
        setStatus(tr("Streaming at %1").arg(FrameRateScale::text(rate)));
        reportStreamingState();
    });
}

void RemoteControlViewController::captureScreen()
{
    log(QStringLiteral("Manual preview capture requested from remote control window"), "SCREEN");
    m_appState.zektManager().requestManualPreview(m_computer);
    later([this] { setStatus(tr("Updating preview...")); });
}

void RemoteControlViewController::disconnect()
{
    m_isRemoteControlActive = false;
    log(QStringLiteral("Remote control deactivated for ") + m_computer.displayName() +
            QStringLiteral(" - disconnecting"),
        "CONNECT");
    m_appState.zektManager().stopRemoteControlStreaming(m_computer);
    cleanUp();
    if (m_view)
        m_view->window()->close();
}

void RemoteControlViewController::toggleStreaming()
{
    ZEKTManager &manager = m_appState.zektManager();
    if (m_isRemoteControlActive) {
        manager.stopRemoteControlStreaming(m_computer);
        log(QStringLiteral("Streaming stopped via button"), "SCREEN");
    } else {
        const double rate = frameRate();
        manager.startRemoteControlStreaming(m_computer, rate);
        log(QStringLiteral("Streaming started via button with ") + FrameRateScale::text(rate),
            "SCREEN");
    }
    later([this] { reportStreamingState(); }, toggleReportDelayMs);
}

void RemoteControlViewController::cleanUp()
{
    QObject::disconnect(m_notificationConnection);
    m_connectionPoll.stop();
    m_restartTimer.stop();
    m_currentScreenImage = QImage();
    if (m_imageView)
        m_imageView->clearFrame();
    m_isUpdatingImage = false;
    m_isClosed = true;
    log(QStringLiteral("RemoteControlWindowController resources cleaned up"), "MEMORY");
}

// ---- input ----------------------------------------------------------------------------------

bool RemoteControlViewController::acceptsInput() const
{
    return m_isRemoteControlActive && m_zektClient;
}

std::optional<QPointF> RemoteControlViewController::remotePoint(const QPointF &position) const
{
    if (!m_imageView)
        return std::nullopt;
    return RemoteCoordinateMapping::map(position, QSizeF(m_imageView->size()), m_serverScreenSize);
}

void RemoteControlViewController::mouseMoved(const QPointF &position, Qt::MouseButtons buttons)
{
    // Drags are not forwarded, and moves count only while the window has the focus.
    if (!acceptsInput() || buttons != Qt::NoButton || !m_view || !m_view->isActiveWindow())
        return;
    const double seconds = double(now().toMSecsSinceEpoch()) / 1000.0;
    if (seconds - m_lastMouseMoveTime <= mouseMoveInterval)
        return;
    m_lastMouseMoveTime = seconds;
    if (const auto point = remotePoint(position))
        (void)m_zektClient->sendMouseMoveEvent(point->x(), point->y(), 0, 0);
}

void RemoteControlViewController::mouseButton(const QPointF &position, Qt::MouseButton button,
                                              bool pressed)
{
    if (!acceptsInput())
        return;
    const std::optional<int> number = RemoteKeyTranslator::buttonNumber(button);
    const std::optional<QPointF> point = remotePoint(position);
    // A release outside the image is not reported; the button stays held until the
    // window loses the focus or closes.
    if (!number || !point)
        return;
    if (pressed)
        m_heldButtons.insert(*number, *point);
    else
        m_heldButtons.remove(*number);
    (void)m_zektClient->sendMouseEvent(point->x(), point->y(), *number, pressed);
}

void RemoteControlViewController::keyEvent(const QKeyEvent &event, bool pressed)
{
    if (!acceptsInput())
        return;
    const auto stroke = RemoteKeyTranslator::translate(event);
    // Modifier keys alone travel in the flag word of the next key; auto-repeat arrives as
    // release and press pairs, of which the presses are the repeats.
    if (!stroke || MacKeyCodeTable::isModifierKey(stroke->keyCode) ||
        (!pressed && event.isAutoRepeat()))
        return;
    if (pressed)
        m_heldKeys.insert(stroke->keyCode, stroke->flags);
    else
        m_heldKeys.remove(stroke->keyCode);
    (void)m_zektClient->sendKeyboardEvent(stroke->keyCode, pressed, stroke->flags);
}

void RemoteControlViewController::releaseHeldInput()
{
    const auto keys = std::exchange(m_heldKeys, {});
    const auto buttons = std::exchange(m_heldButtons, {});
    if (!m_zektClient)
        return;
    for (auto it = keys.cbegin(); it != keys.cend(); ++it)
        (void)m_zektClient->sendKeyboardEvent(it.key(), false, it.value());
    for (auto it = buttons.cbegin(); it != buttons.cend(); ++it)
        (void)m_zektClient->sendMouseEvent(it.value().x(), it.value().y(), it.key(), false);
}
