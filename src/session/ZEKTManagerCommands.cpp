// Streaming, preview and file transfer commands of ZEKTManager.
#include "ZEKTManager.h"

#include "DecodedFrameCache.h"
#include "FutureCallbacks.h"
#include "MainDisplay.h"
#include "ManagerLifeline.h"
#include "model/LogManager.h"
#include "model/TransferLimits.h"
#include "protocol/ZEKT.h"
#include "protocol/ZEKTClient.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

// The automation side checks the limit without the protocol library.
static_assert(ZEKT::maxFileTransferSize == TransferLimits::maxFileTransferSize);

namespace {

void log(const QString &message, const char *category)
{
    LogManager::shared().log(message, QLatin1String(category));
}

// Slow streams get better images; fast ones smaller frames.
double streamingQuality(double frameRate)
{
    if (frameRate <= 15)
        return 0.5;
    if (frameRate <= 30)
        return 0.4;
    return 0.3;
}

} // namespace

void ZEKTManager::startRemoteControlStreaming(const RemoteComputer &computer, double frameRate)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    const std::shared_ptr<ZEKTClient> client = m_clients.value(id);
    if (!client) {
        log(QStringLiteral("No active client for computer ") + label, "ERROR");
        return;
    }
    if (!std::isfinite(frameRate) || frameRate <= 0) {
        log(QStringLiteral("Invalid frame rate for ") + label + QStringLiteral(": ") +
                QString::number(frameRate),
            "ERROR");
        return;
    }
    {
        std::lock_guard lock(m_connectionLock);
        m_streamingComputers.insert(id);
    }
    const double quality = streamingQuality(frameRate);
    FutureCallbacks::observe(
        client->startContinuousStreaming(MainDisplay::identifier(), float(quality), frameRate),
        this,
        [label, frameRate, quality] {
            log(QStringLiteral("Started continuous streaming from ") + label +
                    QStringLiteral(" at ") + QString::number(qint64(frameRate)) +
                    QStringLiteral(" FPS (quality: ") + QString::number(quality) +
                    QStringLiteral(")"),
                "SCREEN");
        },
        [this, id, label](const QString &error) {
            {
                std::lock_guard lock(m_connectionLock);
                m_streamingComputers.remove(id);
            }
            log(QStringLiteral("Failed to start continuous streaming from ") + label +
                    QStringLiteral(": ") + error,
                "ERROR");
        });
}

void ZEKTManager::stopRemoteControlStreaming(const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    log(QStringLiteral("ZEKTManager.stopRemoteControlStreaming called for ") + label, "SCREEN");
    const std::shared_ptr<ZEKTClient> client = m_clients.value(id);
    if (!client) {
        log(QStringLiteral("No active client for computer ") + label +
                QStringLiteral(" - cannot stop streaming"),
            "ERROR");
        return;
    }
    stopWantingStream(id, label);
    log(QStringLiteral("Calling client.stopContinuousStreaming() for ") + label, "SCREEN");
    FutureCallbacks::observe(
        client->stopContinuousStreaming(), this,
        [label] {
            log(QStringLiteral("Successfully stopped remote control streaming for ") + label,
                "SCREEN");
        },
        [label](const QString &error) {
            log(QStringLiteral("Failed to stop streaming for ") + label + QStringLiteral(": ") +
                    error,
                "ERROR");
        });
}

void ZEKTManager::stopWantingStream(const QUuid &id, const QString &label)
{
    log(QStringLiteral("Found active client for ") + label +
            QStringLiteral(", sending disconnect message"),
        "SCREEN");
    {
        std::lock_guard lock(m_connectionLock);
        m_streamingComputers.remove(id);
    }
    // From now on streamed images are dropped.
    DecodedFrameCache::shared().remove(id);
}

std::optional<Error> ZEKTManager::stopRemoteControlStreamingSync(const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    log(QStringLiteral("ZEKTManager.stopRemoteControlStreamingSync called for ") + label, "SCREEN");
    const std::shared_ptr<ZEKTClient> client = m_clients.value(id);
    if (!client) {
        log(QStringLiteral("No active client for computer ") + label +
                QStringLiteral(" - cannot stop streaming"),
            "ERROR");
        return Error{QStringLiteral("ZEKTManager"), -1,
                     QStringLiteral("No active client for computer")};
    }
    stopWantingStream(id, label);
    log(QStringLiteral("Sending stop-streaming request for ") + label, "SCREEN");
    FutureCallbacks::observe(
        client->stopContinuousStreaming(), this,
        [label] {
            log(QStringLiteral("Successfully requested streaming stop for ") + label, "SCREEN");
        },
        [label](const QString &error) {
            log(QStringLiteral("Failed to request streaming stop for ") + label +
                    QStringLiteral(": ") + error,
                "ERROR");
        });
    log(QStringLiteral("Streaming stop initiated for ") + label, "SCREEN");
    return std::nullopt;
}

void ZEKTManager::requestManualPreview(const RemoteComputer &computer)
{
    const QUuid id = computer.id;
    const QString label = computer.displayName();
    const std::shared_ptr<ZEKTClient> client = m_clients.value(id);
    if (!client) {
        log(QStringLiteral("No active client for manual preview of ") + label, "ERROR");
        return;
    }
    log(QStringLiteral("Requesting manual preview capture for ") + label, "SCREEN");
    {
        std::lock_guard lock(m_connectionLock);
        m_manualPreviewRequested.insert(id);
    }
    FutureCallbacks::observe(
        client->requestScreenCapture(MainDisplay::identifier()), this,
        [label] { log(QStringLiteral("Manual preview capture requested for ") + label, "SCREEN"); },
        [this, id, label](const QString &error) {
            {
                std::lock_guard lock(m_connectionLock);
                m_manualPreviewRequested.remove(id);
            }
            log(QStringLiteral("Failed to request manual preview for ") + label +
                    QStringLiteral(": ") + error,
                "ERROR");
        });
}

void ZEKTManager::sendFileTransfer(const RemoteComputer &computer, const QString &filePath,
                                   const std::optional<QString> &remoteFileName,
                                   bool deleteAfterTransfer)
{
    const QString label = computer.displayName();
    const std::shared_ptr<ZEKTClient> client = m_clients.value(computer.id);
    if (!client) {
        log(QStringLiteral("No active client for file transfer: ") + label, "ERROR");
        store().completeFileTransfer(QStringLiteral("Not connected to ") + label);
        return;
    }
    const QString fileName = remoteFileName && !remoteFileName->isEmpty()
                                 ? *remoteFileName
                                 : QFileInfo(filePath).fileName();
    store().beginFileTransfer(fileName);

    // Progress comes on a library thread; the last 10 % wait for the agent's verdict.
    const std::shared_ptr<ManagerLifeline> lifeline = m_lifeline;
    auto progress = [lifeline](double fraction) {
        const double sent = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
        lifeline->post([sent](ZEKTManager &manager) {
            manager.store().updateFileTransferProgress(QStringLiteral("Sending file..."),
                                                       sent * 0.9);
        });
    };
    // Outside a sandbox there is no access grant to take or end.
    m_uploadsUnderWay.insert(filePath);
    auto finish = [this, filePath, deleteAfterTransfer] {
        m_uploadsUnderWay.remove(filePath);
        if (deleteAfterTransfer)
            QFile::remove(filePath);
    };
    FutureCallbacks::observe(
        client->sendFileTransfer(filePath, fileName, progress), this,
        [this, label, fileName, finish] {
            store().updateFileTransferProgress(QStringLiteral("Waiting for server confirmation..."),
                                               0.9);
            log(QStringLiteral("File transfer completed for ") + label + QStringLiteral(": ") +
                    fileName,
                "FILE");
            finish();
        },
        [this, label, finish](const QString &error) {
            store().completeFileTransfer(QStringLiteral("Upload failed: ") + error);
            log(QStringLiteral("File transfer failed for ") + label + QStringLiteral(": ") + error,
                "ERROR");
            finish();
        });
}
