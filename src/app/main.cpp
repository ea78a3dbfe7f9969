#include "MainWindow.h"
#include "model/ComputerJson.h"
#include "platform/AppIdentity.h"
#include "platform/QtAlertPresenter.h"
#include "state/AppState.h"

#include <QApplication>
#include <QCommandLineParser>
#include <cstdio>

int main(int argc, char *argv[])
{
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

    // Session alerts (identity changes, network access) are message boxes.
    QtAlertPresenter alertPresenter;
    AlertPresenter::setShared(&alertPresenter);

    // The one state object lives for the whole process, created before any window.
    AppState appState;
    if (seed && appState.computers().isEmpty())
        appState.addComputer(*seed);
    MainWindow window(appState);
    window.show();
    return app.exec();
}
