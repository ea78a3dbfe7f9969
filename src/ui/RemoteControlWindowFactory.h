#pragma once

#include <QUuid>

class QObject;

// How a view opens a remote-control window, so views need not know the window. Each call
// opens a new top-level window for that computer and returns its controller, which deletes
// itself when its window closes: hold it in a QPointer.
class RemoteControlWindowFactory {
public:
    virtual ~RemoteControlWindowFactory() = default;

    virtual QObject *openRemoteControlWindow(const QUuid &computerId) = 0;
};
