#pragma once

#include "platform/AlertPresenter.h"

#include <QEventLoop>
#include <QHash>
#include <QList>
#include <QSet>

// Answers alerts from a script: each alert takes the next answer (a button index, `closed`
// or `neverAnswer`, which waits until the alert is aborted). An empty script never answers.
class ScriptedAlertPresenter : public AlertPresenter {
public:
    static constexpr int neverAnswer = -2;

    int runModal(const Alert &alert, Handle handle) override;
    void abortModal(Handle handle) override;
    void show(const Alert &alert, Completion completion) override;

    QList<int> script;
    QList<Alert> shown;
    QList<int> asyncAnswers;
    int aborted = 0;

private:
    int nextAnswer();
    QHash<Handle, QEventLoop *> m_running;
    QSet<Handle> m_abortedEarly;
};
