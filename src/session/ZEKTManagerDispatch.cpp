// Message dispatch, statistics intake and the screen image pipeline of ZEKTManager.
#include "ZEKTManager.h"

#include "DecodedFrameCache.h"
#include "SystemStatsConversion.h"
#include "model/LogManager.h"
#include "platform/NotificationHub.h"
#include "protocol/AuthenticationResponseMessage.h"
#include "protocol/DisconnectMessage.h"
#include "protocol/ErrorMessage.h"
#include "protocol/FileTransferResponseMessage.h"
#include "protocol/ScreenCaptureMessage.h"
#include "protocol/SystemStatsMessage.h"

namespace {

void log(const QString &message, const char *category)
{
    LogManager::shared().log(message, QLatin1String(category));
}

} // namespace

void ZEKTManager::handleMessage(const ZEKTMessagePtr &message, const QUuid &id,
                                const std::weak_ptr<ZEKTClient> &client)
{
    const QString name = nameOrUnknown(id);
    if (!isRegistered(id, client)) {
        log(QStringLiteral("Ignoring message for removed computer ") + name, "CONNECT");
        return;
    }
    const ZEKTMessage *m = message.get();
    if (!m)
        return;

    using Type = ZEKTMessage::Type;
    switch (m->type()) {
    case Type::handshakeResponse:
        log(QStringLiteral("Handshake completed for ") + name +
                QStringLiteral(", connection fully established"),
            "CONNECT");
        return;
    case Type::authenticationResponse: {
        const bool success = static_cast<const AuthenticationResponseMessage *>(m)->success;
        if (success)
            log(QStringLiteral("Authentication successful for computer ") + name, "AUTH");
        else
            log(QStringLiteral("Authentication failed for computer ") + name, "ERROR");
        finishConnectionAttempt(id, success, std::nullopt);
        return;
    }
    case Type::screenCapture:
        handleScreenCapture(*static_cast<const ScreenCaptureMessage *>(m), id, name);
        return;
    case Type::error:
        log(QStringLiteral("Error message received from ") + name + QStringLiteral(": ") +
                static_cast<const ErrorMessage *>(m)->errorMessage,
            "ERROR");
        return;
    case Type::disconnect:
        log(QStringLiteral("Disconnect message received from ") + name + QStringLiteral(": ") +
                static_cast<const DisconnectMessage *>(m)->reason,
            "CONNECT");
        QMetaObject::invokeMethod(
            this,
            [this, id, client] {
                if (isRegistered(id, client))
                    handleDisconnectMessage(id);
            },
            Qt::QueuedConnection);
        return;
    case Type::heartbeat:
        log(QStringLiteral("Heartbeat received from ") + name, "HEARTBEAT");
        return;
    case Type::heartbeatResponse:
        log(QStringLiteral("Heartbeat response received from ") + name, "HEARTBEAT");
        return;
    case Type::fileTransferResponse: {
        const auto *transfer = static_cast<const FileTransferResponseMessage *>(m);
        log(QStringLiteral("File transfer response received from ") + name + QStringLiteral(": ") +
                transfer->message,
            "FILE");
        store().completeFileTransfer(transfer->success
                                         ? transfer->message
                                         : QStringLiteral("Upload failed: ") + transfer->message);
        return;
    }
    case Type::systemStats:
        handleSystemStats(*static_cast<const SystemStatsMessage *>(m), id);
        return;
    case Type::commandResult:
    case Type::fileReady:
        // The client consumes these itself; one reaching this far is reported.
        break;
    }
    log(QStringLiteral("Unhandled message type: ") + m->typeName() + QStringLiteral(" from ") +
            name,
        "WARN");
}

void ZEKTManager::handleDisconnectMessage(const QUuid &id)
{
    removeClient(id);
    finishConnectionAttempt(id, false, std::nullopt);
    {
        std::lock_guard lock(m_connectionLock);
        m_streamingComputers.remove(id);
        m_manualPreviewRequested.remove(id);
    }
    DecodedFrameCache::shared().remove(id);
}

void ZEKTManager::handleSystemStats(const SystemStatsMessage &message, const QUuid &id)
{
    const std::optional<QString> name = computerDisplayName(id);
    if (!name)
        return;
    log(QStringLiteral("Received system stats from ") + *name, "STATS");
    SystemStats stats = SystemStatsConversion::fromMessage(message);
    QMetaObject::invokeMethod(
        this, [this, id, stats = std::move(stats)] { store().applySystemStats(id, stats); },
        Qt::QueuedConnection);
}

QByteArray ZEKTManager::createThumbnail(const QImage &image, int maximumDimension) const
{
    return m_thumbnailer.createThumbnail(image, maximumDimension);
}

void ZEKTManager::handleScreenCapture(const ScreenCaptureMessage &message, const QUuid &id,
                                      const QString &name)
{
    bool streaming = false;
    bool previewPending = false;
    {
        std::lock_guard lock(m_connectionLock);
        streaming = m_streamingComputers.contains(id);
        previewPending = m_manualPreviewRequested.contains(id);
    }
    if (!streaming && !previewPending) {
        log(QStringLiteral("Ignoring screen capture for ") + name +
                QStringLiteral(" - no active streaming or manual preview request"),
            "SCREEN");
        return;
    }
    log(QStringLiteral("Received screen capture for computer ") + name + QStringLiteral(": ") +
            QString::number(message.imageData.size()) + QStringLiteral(" bytes"),
        "SCREEN");

    const QByteArray imageData = ScreenImageDecoder::repairPrefix(message.imageData);
    const QImage image = m_decoder.decode(imageData);
    if (image.isNull())
        return;

    const QByteArray thumbnail = createThumbnail(image, 640);
    bool wasPending = false;
    {
        std::lock_guard lock(m_connectionLock);
        wasPending = m_manualPreviewRequested.remove(id);
    }
    if (wasPending) {
        QMetaObject::invokeMethod(
            this,
            [this, id, name, thumbnail] {
                store().storeThumbnail(id, thumbnail);
                log(QStringLiteral("Updated manual preview thumbnail for ") + name +
                        QStringLiteral(" (") + QString::number(thumbnail.size()) +
                        QStringLiteral(" bytes)"),
                    "SCREEN");
            },
            Qt::QueuedConnection);
    } else {
        log(QStringLiteral("Screen capture received for ") + name +
                QStringLiteral(" - streaming only, no preview update"),
            "SCREEN");
    }

    // A remote-control window shows streamed frames; it finds this decode in the cache.
    if (streaming)
        DecodedFrameCache::shared().insert(id, imageData, image);
    QVariantMap userInfo{
        {QStringLiteral("computerID"), QVariant::fromValue(id)},
        {QStringLiteral("imageData"), imageData},
        {QStringLiteral("displayID"), QVariant::fromValue(message.displayID)},
        {QStringLiteral("quality"), QVariant::fromValue(message.quality)},
        {QStringLiteral("displayWidth"), QVariant::fromValue(message.displayWidth)},
        {QStringLiteral("displayHeight"), QVariant::fromValue(message.displayHeight)},
    };
    QMetaObject::invokeMethod(
        this,
        [userInfo = std::move(userInfo)] {
            NotificationHub::shared().post(QStringLiteral("screenCaptureReceived"), userInfo);
        },
        Qt::QueuedConnection);
}
