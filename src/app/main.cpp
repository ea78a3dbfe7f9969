#include "MainWindow.h"
#include "model/ComputerJson.h"
#include "platform/AppIdentity.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/SupervisionController.h"
#include "ui/QtAlertPresenter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>

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
    // The assistant panel's web view shares the GUI's OpenGL contexts; it must be set before
    // the application object exists.
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QLatin1String(AppIdentity::organizationName));
    QApplication::setApplicationName(QLatin1String(AppIdentity::applicationName));
    QApplication::setApplicationVersion(QStringLiteral(TELVANE_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("main", "Telvane console"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption seedOption(
        QStringLiteral("add-computer-if-empty"),
        QApplication::translate("main",
                                "Add this computer (a JSON record) when the list is empty."),
        QStringLiteral("json"));
    parser.addOption(seedOption);
    parser.process(app);

    std::optional<RemoteComputer> seed;
    if (parser.isSet(seedOption)) {
        QString error;
        seed = ComputerJson::decode(parser.value(seedOption).toUtf8(), &error);
        if (!seed) {
            std::fprintf(stderr, "telvane: --add-computer-if-empty: %s\n", qPrintable(error));
            return 2;
        }
    }

    // The one state object lives for the whole process, created before any window.
    QtAlertPresenter alertPresenter; // outlives the state, which may still raise an alert
    AppState appState;
    appState.zektManager().setAlertPresenter(&alertPresenter);
    if (seed && appState.computers().isEmpty())
        appState.addComputer(*seed);
    SupervisionController supervision(
        appState, Preferences::shared(),
        int(positiveFromEnvironment("TELVANE_SUPERVISION_PERIOD_MS",
                                    SupervisionController::defaultPeriodMs)),
        positiveFromEnvironment("TELVANE_SUPERVISION_RETRY_SECONDS",
                                SupervisionController::defaultRetryIntervalSeconds));
    MainWindow window(appState);
    window.show();
    QTimer::singleShot(0, &supervision, &SupervisionController::mainViewAppeared);
    return app.exec();
}
