#include "UploadDisplayState.h"

#include <QTimer>

UploadDisplayState::UploadDisplayState(QObject *parent) : QObject(parent) {}

void UploadDisplayState::beginFileTransfer(const QString &fileName)
{
    QMetaObject::invokeMethod(
        this,
        [this, fileName] {
            ++m_generation;
            m_isFileTransferInProgress = true;
            m_fileTransferProgress = 0.0;
            m_fileTransferFileName = fileName;
            m_fileTransferStatus = tr("Preparing transfer...");
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

void UploadDisplayState::updateFileTransferProgress(const QString &status, double fraction)
{
    QMetaObject::invokeMethod(
        this,
        [this, status, fraction] {
            // A dismissed or finished transfer stays off the screen while its last
            // progress reports trickle in.
            if (!m_isFileTransferInProgress)
                return;
            m_fileTransferProgress = fraction;
            m_fileTransferStatus = status;
            Q_EMIT changed();
        },
        Qt::QueuedConnection);
}

void UploadDisplayState::completeFileTransfer(const QString &message)
{
    QMetaObject::invokeMethod(
        this,
        [this, message] {
            m_isFileTransferInProgress = false;
            m_fileTransferStatus = message;
            showFor(m_outcomeDisplayMs);
        },
        Qt::QueuedConnection);
}

void UploadDisplayState::cancelFileTransfer()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isFileTransferInProgress = false;
            m_fileTransferProgress = 0.0;
            m_fileTransferFileName.clear();
            m_fileTransferStatus = tr("Transfer cancelled");
            showFor(m_cancelDisplayMs);
        },
        Qt::QueuedConnection);
}

void UploadDisplayState::showFor(int displayMs)
{
    Q_EMIT changed();
    // A transfer that begins, or an outcome that arrives, while this state is shown is
    // not cut short by this reset. (After a cancel only the status is left to clear.)
    const quint64 generation = ++m_generation;
    QTimer::singleShot(displayMs, this, [this, generation] {
        if (generation != m_generation)
            return;
        m_fileTransferProgress = 0.0;
        m_fileTransferFileName.clear();
        m_fileTransferStatus.clear();
        Q_EMIT changed();
    });
}

void UploadDisplayState::setDisplayDurationsForTesting(int outcomeMs, int cancelMs)
{
    m_outcomeDisplayMs = outcomeMs;
    m_cancelDisplayMs = cancelMs;
}
