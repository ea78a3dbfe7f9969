// Keeps saving the computer list through the store's own save path until it is killed.
// The list always has the same number of records; only their descriptions change, so
// the file's size changes with every write.

#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QTimer>
#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Quorvel"));
    QCoreApplication::setApplicationName(QStringLiteral("Telvane"));
    const int count = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 0;
    if (count < 1) {
        std::fprintf(stderr, "usage: suite_writer COUNT\n");
        return 2;
    }

    AppState state(nullptr, nullptr, false);
    if (state.computers().size() != count) {
        QList<RemoteComputer> list;
        for (int i = 0; i < count; ++i) {
            RemoteComputer computer;
            computer.name = QStringLiteral("Computer %1").arg(i);
            computer.host = QStringLiteral("host-%1.local").arg(i);
            list.append(computer);
        }
        state.setComputers(list);
        state.saveComputers();
    }

    QTimer churn;
    QObject::connect(&churn, &QTimer::timeout, &state, [&state] {
        QRandomGenerator *random = QRandomGenerator::global();
        RemoteComputer computer =
            state.computers().at(random->bounded(int(state.computers().size())));
        computer.description =
            QString(random->bounded(1, 20000), QLatin1Char('a' + random->bounded(26)));
        state.updateComputer(computer);
    });
    churn.start(1);
    return QCoreApplication::exec();
}
