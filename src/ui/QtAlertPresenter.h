#pragma once

#include "platform/AlertPresenter.h"

#include <QHash>
#include <QPointer>
#include <QSet>

class QMessageBox;
class QWidget;

// Alerts as message boxes: the first button is the default and the last one answers Escape,
// unless the alert names a destructive or a cancel button.
class QtAlertPresenter : public AlertPresenter {
public:
    int runModal(const Alert &alert, Handle handle) override;
    void abortModal(Handle handle) override;
    void show(const Alert &alert, Completion completion) override;

private:
    QHash<Handle, QPointer<QMessageBox>> m_running;
    QSet<Handle> m_abortedEarly;
};
