#include "ConsoleStartup.h"

#include "MainWindow.h"
#include "model/LogManager.h"

#include <QPointer>

ConsoleStartup::ConsoleStartup(MainWindow &window, QObject *parent)
    : QObject(parent), m_window(window)
{
}

void ConsoleStartup::setCrashReporterInstall(CrashReporterInstall install)
{
    m_installCrashReporter = std::move(install);
}

void ConsoleStartup::start()
{
    if (std::exchange(m_isStarted, true))
        return;
    m_window.show();
    const QPointer<MainWindow> window(&m_window);
    QMetaObject::invokeMethod(
        this,
        [this, window] {
            if (m_installCrashReporter)
                m_installCrashReporter();
            else
                LogManager::shared().log(
                    QStringLiteral("Crash reports are not collected in this build"),
                    QStringLiteral("WARN"));
            if (window)
                window->appear();
        },
        Qt::QueuedConnection);
}
