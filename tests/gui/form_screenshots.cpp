// Shoots the add and edit dialogs in the states the docs show, as PNGs into the folder
// given. Run by scripts/screenshots/forms.sh under Xvfb.
#include "ScriptedDiscoveryBackend.h"
#include "discovery/BonjourDiscoveryManager.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/EditComputerView.h"
#include "state/AppState.h"
#include "ui/AddComputerDialog.h"
#include "ui/EditComputerDialog.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTest>
#include <cstdio>

namespace {

QString outputDir;
bool ok = true;

void showAndWait(QWidget &window)
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        ok = false;
}

void shoot(QWidget &window, const QString &name)
{
    QTest::qWait(150); // let busy indicators and layouts settle
    const QString path = QDir(outputDir).filePath(name + QStringLiteral(".png"));
    // A palette of 256 colours keeps the files small; these views have few.
    const QImage image = window.grab().toImage().convertToFormat(
        QImage::Format_Indexed8, Qt::ThresholdDither | Qt::AvoidDither);
    if (!image.save(path)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        ok = false;
    }
}

void announce(ScriptedDiscoveryBackend &backend, const QString &name, const QString &host, int port,
              const QList<QByteArray> &txt)
{
    backend.found(name);
    QCoreApplication::processEvents();
    backend.resolved(name, host, port, txt);
    QCoreApplication::processEvents();
}

void addDialogStates(AppState &state, const QSize &size, const QString &suffix)
{
    auto scripted = std::make_unique<ScriptedDiscoveryBackend>();
    ScriptedDiscoveryBackend &backend = *scripted;
    BonjourDiscoveryManager discovery(std::move(scripted));
    auto *view = new AddComputerView(state, discovery);
    AddComputerDialog dialog(view);
    dialog.resize(size);
    showAndWait(dialog);
    shoot(dialog, QStringLiteral("add-searching") + suffix);

    announce(backend, "Studio", "studio.local", 5905,
             {"name=Studio Mac", "hostname=studio", "version=0.1.0"});
    announce(backend, "Build", "build-02.local", 5905, {"hostname=build-02"});
    announce(backend, "Lab agent", "lab-7.local", 5906, {});
    if (!suffix.isEmpty()) // long texts elide
        announce(backend, "Long", QString(300, u'x') + ".local", 5907,
                 {"name=" + QByteArray(200, 'n'), "hostname=line\nbreak"});
    view->selectServer(discovery.discoveredServers().first().id());
    view->setUsername("admin");
    view->setPassword("secret");
    shoot(dialog, QStringLiteral("add-rows") + suffix);

    view->openManualEntry();
    shoot(dialog, QStringLiteral("add-hand-entry") + suffix);
}

void nothingFound(AppState &state)
{
    BonjourDiscoveryManager discovery(std::make_unique<ScriptedDiscoveryBackend>());
    AddComputerDialog dialog(new AddComputerView(state, discovery));
    showAndWait(dialog);
    discovery.stopDiscovery();
    shoot(dialog, QStringLiteral("add-nothing-found"));
}

void editDialogStates(AppState &state, const RemoteComputer &computer)
{
    {
        EditComputerDialog dialog(new EditComputerView(state, computer));
        dialog.resize(420, 380);
        showAndWait(dialog);
        shoot(dialog, QStringLiteral("edit-valid-small"));
    }
    {
        EditComputerDialog dialog(new EditComputerView(state, computer));
        showAndWait(dialog);
        shoot(dialog, QStringLiteral("edit-valid"));
    }
    RemoteComputer incomplete = computer;
    incomplete.host.clear();
    incomplete.port = 0;
    incomplete.username.clear();
    incomplete.password.clear();
    EditComputerDialog dialog(new EditComputerView(state, incomplete));
    showAndWait(dialog);
    shoot(dialog, QStringLiteral("edit-errors"));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    outputDir = app.arguments().value(1);
    if (outputDir.isEmpty() || !QDir().mkpath(outputDir)) {
        std::fprintf(stderr, "usage: form_screenshots <output-folder>\n");
        return 2;
    }
    AppState state;
    RemoteComputer computer;
    computer.name = "Studio Mac";
    computer.host = "studio.local";
    computer.username = "admin";
    computer.password = "secret";
    computer.description = "Editing suite, second floor";
    computer.tags = {"studio", "floor-2"};

    addDialogStates(state, {560, 640}, QString());
    addDialogStates(state, {440, 420}, QStringLiteral("-small"));
    nothingFound(state);
    editDialogStates(state, computer);
    state.waitForPendingWrites();
    return ok ? 0 : 1;
}
