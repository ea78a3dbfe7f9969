#pragma once

#include <QString>
#include <QUuid>

class AppState;

// What the console does when a view asks for an action on a computer: it looks the
// computer up in the store and hands it to the session manager or the store. A computer
// that is no longer in the store is left alone.
class ComputerActions {
public:
    explicit ComputerActions(AppState &appState);

    void connectComputer(const QUuid &id);
    void disconnectComputer(const QUuid &id);
    void requestPreview(const QUuid &id);
    void sendFile(const QUuid &id, const QString &filePath);
    void cancelFileTransfer();
    // Closes its session first when it is connected.
    void removeComputer(const QUuid &id);

private:
    AppState &m_appState;
};
