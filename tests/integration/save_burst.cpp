// Saves one computer's description N times, a millisecond apart, through the store's own
// save path, printing each description once it is saved; ended by a signal, it quits the
// way the console does.

#include "app/ConsoleShutdown.h"
#include "state/AppState.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Quorvel"));
    QApplication::setApplicationName(QStringLiteral("Telvane"));
    const int count = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 0;
    if (count < 1) {
        std::fprintf(stderr, "usage: save_burst COUNT\n");
        return 2;
    }
    ConsoleShutdown shutdown;
    AppState state(nullptr, nullptr, false);
    RemoteComputer computer;
    computer.host = QStringLiteral("burst.local");
    state.addComputer(computer);

    int saves = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &state, [&] {
        computer.description = QStringLiteral("save %1").arg(++saves);
        state.updateComputer(computer);
        std::printf("%s\n", qPrintable(*computer.description));
        std::fflush(stdout);
        if (saves == count)
            timer.stop();
    });
    timer.start(1);
    return QApplication::exec();
}
