// Saves the whole X screen as a PNG: the screenshot scripts' camera.
//   screen_grab OUT.png

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: screen_grab OUT.png\n");
        return 2;
    }
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || !screen->grabWindow(0).save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "screen_grab: cannot grab the screen into %s\n", argv[1]);
        return 1;
    }
    return 0;
}
