#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

// Change notification of the shared preferences suite. QSettings replaces the file on
// write, so the folder is watched too and the file is re-added after each change;
// bursts (lock files, temporary files, several keys) are folded into one signal.
class SharedSuiteWatcher : public QObject {
    Q_OBJECT

public:
    explicit SharedSuiteWatcher(const QString &suitePath, int debounceMs = 150,
                                QObject *parent = nullptr);

Q_SIGNALS:
    void changed();

private:
    void rearm();

    QString m_path;
    QFileSystemWatcher m_watcher;
    QTimer m_debounce;
};
