#pragma once

#include <QObject>
#include <functional>

class MainWindow;

// The console's start once the state exists: shows the main window, then on the first
// turn of the event loop installs the crash reporter and runs the window's appearance
// sequence (which sets isAppReady one turn later).
class ConsoleStartup : public QObject {
    Q_OBJECT

public:
    using CrashReporterInstall = std::function<void()>;

    explicit ConsoleStartup(MainWindow &window, QObject *parent = nullptr);

    // What installs the crash reporter; called once. Without one, start() logs that crash
    // reports are not collected.
    void setCrashReporterInstall(CrashReporterInstall install);

    void start();

private:
    MainWindow &m_window;
    CrashReporterInstall m_installCrashReporter;
    bool m_isStarted = false;
};
