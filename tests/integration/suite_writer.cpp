// Saves the computer list through the store's own save path until it is killed.
// The list always has the same number of records; only their descriptions change, so
// the file's size changes with every write.
//   suite_writer COUNT            saves random changes every millisecond
//   suite_writer COUNT --numbered N
//       saves N numbered lists, one after the other: list k has "save k" in every
//       description (k counting on from the list it loaded), and "saved k" is printed once
//       it is on disk.

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

    if (argc > 3 && QByteArray(argv[2]) == "--numbered") {
        const int saves = QString::fromLocal8Bit(argv[3]).toInt();
        const QString loaded = state.computers().first().description.value_or(QString());
        // "save k" and padding dots.
        const int first = loaded.startsWith(QLatin1String("save "))
                              ? loaded.section(u'.', 0, 0).mid(5).toInt()
                              : 0;
        for (int k = first + 1; k <= first + saves; ++k) {
            QList<RemoteComputer> list = state.computers();
            for (int i = 0; i < list.size(); ++i)
                list[i].description = QStringLiteral("save %1").arg(k) +
                                      QString(QRandomGenerator::global()->bounded(2000), u'.');
            state.setComputers(list);
            state.saveComputers();
            state.waitForPendingWrites();
            std::printf("saved %d\n", k);
            std::fflush(stdout);
        }
        return 0;
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
