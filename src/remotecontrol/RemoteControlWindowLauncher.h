#pragma once

#include "ui/RemoteControlWindowFactory.h"

#include <QList>
#include <QPointer>

class AppState;
class RemoteControlWindowController;

// Opens remote-control windows for the views that only know the factory: a new window and
// controller on every call. Windows still open when the launcher goes are closed, so their
// streams stop before the state they use is gone.
class RemoteControlWindowLauncher : public RemoteControlWindowFactory {
public:
    explicit RemoteControlWindowLauncher(AppState &appState);
    ~RemoteControlWindowLauncher() override;

    // The window's controller, or null (and an "ERROR" line) for an id the list does not
    // hold.
    QObject *openRemoteControlWindow(const QUuid &computerId) override;

private:
    AppState &m_appState;
    QList<QPointer<RemoteControlWindowController>> m_controllers;
};
