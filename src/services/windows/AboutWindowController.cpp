#include "AboutWindowController.h"
#include "AboutView.h"

#include <QApplication>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace {
AboutWindowController *sharedController = nullptr;
}

AboutWindowController &AboutWindowController::shared()
{
    if (!sharedController) {
        sharedController = new AboutWindowController;
        // Gone with the event loop, before the web engine of an open sheet shuts down.
        QObject::connect(qApp, &QCoreApplication::aboutToQuit, sharedController, [] {
            delete sharedController;
            sharedController = nullptr;
        });
    }
    return *sharedController;
}

AboutWindowController::AboutWindowController(AlertPresenter *alerts, QObject *parent)
    : QObject(parent),
      m_window(new QWidget(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                                        Qt::WindowMinimizeButtonHint)),
      m_view(new AboutView(alerts, m_window))
{
    m_window->setWindowTitle(tr("About Telvane"));
    m_window->setFixedSize(windowWidth, windowHeight);
    auto *layout = new QVBoxLayout(m_window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    // Closing only hides the window; so does the window manager's close.
    new QShortcut(QKeySequence::Close, m_window, m_window, &QWidget::close);

    const QWidget *active = QApplication::activeWindow();
    if (QScreen *screen = active ? active->screen() : QGuiApplication::primaryScreen()) {
        QRect frame(QPoint(), m_window->size());
        frame.moveCenter(screen->availableGeometry().center());
        m_window->move(frame.topLeft());
    }
}

AboutWindowController::~AboutWindowController()
{
    delete m_window;
}

void AboutWindowController::showWindow()
{
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}
