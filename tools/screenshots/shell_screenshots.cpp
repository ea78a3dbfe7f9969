// Shoots the Help menu open over the console's window and three frames of the launch ripple
// (start, middle, end) over it, as the X screen shows them: the ripple's translucency needs a
// compositing manager, which scripts/screenshots/shell.sh starts (xcompmgr) on a private Xvfb.
//   shell_screenshots <output folder>
#include "app/AppLogo.h"
#include "app/HelpMenu.h"
#include "app/LaunchAnimationMetrics.h"
#include "app/LaunchAnimationOverlay.h"
#include "app/LaunchRippleView.h"
#include "app/MainWindow.h"
#include "state/AppState.h"

#include <QAbstractAnimation>
#include <QApplication>
#include <QDir>
#include <QImageWriter>
#include <QMenuBar>
#include <QScreen>
#include <QTest>
#include <cstdio>

namespace {

QList<RemoteComputer> computers()
{
    QList<RemoteComputer> list;
    for (const auto &[name, host] :
         {std::pair{"Studio Mac", "studio.local"}, std::pair{"Build Server", "10.0.0.20"},
          std::pair{"Reception Mac mini", "reception.local"}}) {
        RemoteComputer computer;
        computer.name = QString::fromLatin1(name);
        computer.host = QString::fromLatin1(host);
        list << computer;
    }
    return list;
}

// The screen as the compositor shows it, cut to `area`.
bool save(QScreen *screen, const QRect &area, const QString &path)
{
    QTest::qWait(300); // the compositor's next frames
    QImageWriter writer(path, "png");
    if (!writer.write(screen->grabWindow(0).toImage().copy(area))) {
        std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path),
                     qPrintable(writer.errorString()));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: shell_screenshots <output folder>\n");
        return 2;
    }
    QApplication::setWindowIcon(AppLogo::icon());
    const QDir out(QString::fromLocal8Bit(argv[1]));
    if (!out.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot create %s\n", argv[1]);
        return 1;
    }

    AppState state;
    state.setComputers(computers());
    MainWindow window(state);
    QMenu *help = window.menuBar()->addMenu(QCoreApplication::translate("HelpMenu", "Help"));
    new HelpMenu(help);
    QScreen *screen = QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    window.setGeometry(
        QRect(QPoint(0, 0), QSize(900, 620)).translated(area.center() - QPoint(450, 310)));
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        return 1;

    bool ok = true;
    window.menuBar()->setActiveAction(help->menuAction());
    ok = save(screen, window.frameGeometry(), out.filePath(QStringLiteral("help-menu.png"))) && ok;
    help->hide();

    LaunchAnimationOverlay overlay(area);
    overlay.show();
    if (!QTest::qWaitForWindowExposed(&overlay))
        return 1;
    QAbstractAnimation *ripple = overlay.ripple()->animation();
    ripple->pause();
    for (const auto &[name, time] : {std::pair{"start", 0}, std::pair{"middle", 550},
                                     std::pair{"end", LaunchAnimationMetrics::completionDelay}}) {
        ripple->setCurrentTime(time);
        const QString file = QStringLiteral("launch-animation-%1.png").arg(QLatin1String(name));
        ok = save(screen, area, out.filePath(file)) && ok;
    }
    return ok ? 0 : 1;
}
