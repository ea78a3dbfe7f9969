#include "AppLogo.h"
#include "ConsoleOptions.h"
#include "ConsoleShutdown.h"
#include "ConsoleStartup.h"
#include "CrashReportHelper.h"
#include "HelpMenu.h"
#include "MainWindow.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/avahi/AvahiDiscoveryBackend.h"
#include "platform/AppIdentity.h"
#include "platform/Preferences.h"
#include "remotecontrol/RemoteControlWindowLauncher.h"
#include "services/CrashReporter.h"
#include "services/windows/AboutWindowController.h"
#include "services/windows/AssistantWindowController.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "state/SetAsideReporter.h"
#include "state/SupervisionController.h"
#include "ui/DialogComputerFormFactory.h"
#include "ui/QtAlertPresenter.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

// Test-only shortening of the supervision timing; anything but a positive number keeps
// the default.
double positiveFromEnvironment(const char *name, double fallback)
{
    bool ok = false;
    const double value = qEnvironmentVariable(name).toDouble(&ok);
    return ok && value > 0 ? value : fallback;
}

} // namespace

int main(int argc, char *argv[])
{
    // Before the application object: --help needs no display, and none means exit 1.
    const ConsoleOptions options = ConsoleOptions::parse(ConsoleOptions::arguments(argc, argv),
                                                         QProcessEnvironment::systemEnvironment());
    // A crashing console's helper: no window, no state, and no reporter of its own.
    if (options.action == ConsoleOptions::Action::crashReport)
        return CrashReportHelper::run(argc, argv);
    if (options.action == ConsoleOptions::Action::exit)
        return options.finish();

    // The assistant panel's web view shares the GUI's OpenGL contexts; it must be set before
    // the application object exists.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    // The user's language when a translation for it is built in, with Qt's own texts (the
    // standard dialogs' buttons) where Qt's translations are installed; English otherwise.
    QTranslator qtTranslator;
    if (qtTranslator.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&qtTranslator);
    if (QTranslator *translator = ConsoleOptions::translator())
        QCoreApplication::installTranslator(translator);
    QApplication::setOrganizationName(QLatin1String(AppIdentity::organizationName));
    QApplication::setApplicationName(QLatin1String(AppIdentity::applicationName));
    QApplication::setApplicationVersion(ConsoleOptions::version());
    QApplication::setWindowIcon(AppLogo::icon());
    // SIGTERM, SIGINT and SIGHUP close the windows and quit like the window's close button.
    ConsoleShutdown shutdown;

    // The one state object lives for the whole process, created before any window.
    QtAlertPresenter alertPresenter; // outlives the state, which may still raise an alert
    SetAsideReporter setAsideReporter(alertPresenter); // hears what loading sets aside
    AlertPresenter::setShared(&alertPresenter);
    AppState appState;
    appState.zektManager().setAlertPresenter(&alertPresenter);
    // The one discovery manager, for the add form; it outlives every window.
    BonjourDiscoveryManager discovery(std::make_unique<AvahiDiscoveryBackend>());
    if (options.computerIfEmpty)
        appState.addComputerIfEmpty(*options.computerIfEmpty);
    SupervisionController supervision(
        appState, Preferences::shared(),
        int(positiveFromEnvironment("TELVANE_SUPERVISION_PERIOD_MS",
                                    SupervisionController::defaultPeriodMs)),
        positiveFromEnvironment("TELVANE_SUPERVISION_RETRY_SECONDS",
                                SupervisionController::defaultRetryIntervalSeconds));
    DialogComputerFormFactory formFactory(appState, discovery);
    RemoteControlWindowLauncher remoteControl(appState); // closes its windows before the state goes
    MainWindow window(appState, nullptr, &formFactory, &remoteControl);
    // The appearance sequence ends by asking for a supervision pass (when it is on).
    QObject::connect(window.state(), &MainWindowState::appeared, &supervision,
                     &SupervisionController::mainViewAppeared);
    window.helpMenu()->setShowAbout([] { AboutWindowController::shared().showWindow(); });
    window.helpMenu()->setShowAssistant(
        [](const QUrl &url) { AssistantWindowController::shared().show(url); });
    // Shows the window; the crash reporter is installed on the first turn of the event loop,
    // with this very executable (as it is, even if replaced on disk since) as its helper.
    ConsoleStartup startup(window);
    startup.setCrashReporterInstall(
        [] { CrashReporter::install(QStringLiteral("/proc/self/exe")); });
    startup.start();
    return app.exec();
}
