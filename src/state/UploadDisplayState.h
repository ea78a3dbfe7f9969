#pragma once

#include <QObject>
#include <QString>

// The one file transfer shown at a time: whether it runs, its progress, the file's name
// and a status line. Every change may be asked for from any thread and is applied on this
// object's thread, in call order. Each shown state owns its reset: an outcome stays 3 s and
// a cancel notice 2 s, unless a newer state was shown in between.
class UploadDisplayState : public QObject {
    Q_OBJECT

public:
    explicit UploadDisplayState(QObject *parent = nullptr);

    bool isFileTransferInProgress() const { return m_isFileTransferInProgress; }
    double fileTransferProgress() const { return m_fileTransferProgress; }
    QString fileTransferFileName() const { return m_fileTransferFileName; }
    QString fileTransferStatus() const { return m_fileTransferStatus; }

    void beginFileTransfer(const QString &fileName);
    void updateFileTransferProgress(const QString &status, double fraction);
    void completeFileTransfer(const QString &message);
    void cancelFileTransfer();

    void setDisplayDurationsForTesting(int outcomeMs, int cancelMs);

Q_SIGNALS:
    void changed();

private:
    // Shows the state just set and clears it after `displayMs`.
    void showFor(int displayMs);

    bool m_isFileTransferInProgress = false;
    double m_fileTransferProgress = 0.0;
    QString m_fileTransferFileName;
    QString m_fileTransferStatus;
    quint64 m_generation = 0;
    int m_outcomeDisplayMs = 3000;
    int m_cancelDisplayMs = 2000;
};
