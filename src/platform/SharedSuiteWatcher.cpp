#include "SharedSuiteWatcher.h"

#include "SettingsFiles.h"

#include <QDir>
#include <QFileInfo>

SharedSuiteWatcher::SharedSuiteWatcher(const QString &suitePath, int debounceMs, QObject *parent)
    : QObject(parent), m_path(suitePath)
{
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(debounceMs);
    connect(&m_debounce, &QTimer::timeout, this, [this] {
        rearm();
        Q_EMIT changed();
    });
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, [this] { m_debounce.start(); });
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this,
            [this] { m_debounce.start(); });
    SettingsFiles::makePrivateFolder(QFileInfo(m_path).absolutePath());
    rearm();
}

void SharedSuiteWatcher::rearm()
{
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!m_watcher.directories().contains(folder))
        m_watcher.addPath(folder);
    if (QFileInfo::exists(m_path) && !m_watcher.files().contains(m_path))
        m_watcher.addPath(m_path);
}
