#include "ScriptedAlertPresenter.h"

#include <QTimer>

int ScriptedAlertPresenter::nextAnswer()
{
    return script.isEmpty() ? neverAnswer : script.takeFirst();
}

int ScriptedAlertPresenter::runModal(const Alert &alert, Handle handle)
{
    shown.append(alert);
    if (m_abortedEarly.remove(handle))
        return closed;
    const int answer = nextAnswer();
    if (answer != neverAnswer)
        return answer;
    QEventLoop loop;
    m_running.insert(handle, &loop);
    loop.exec();
    m_running.remove(handle);
    return closed;
}

void ScriptedAlertPresenter::abortModal(Handle handle)
{
    ++aborted;
    if (QEventLoop *loop = m_running.value(handle))
        loop->quit();
    else
        m_abortedEarly.insert(handle);
}

void ScriptedAlertPresenter::show(const Alert &alert, Completion completion)
{
    shown.append(alert);
    const int answer = nextAnswer();
    if (answer == neverAnswer)
        return;
    QTimer::singleShot(0, [this, answer, completion] {
        asyncAnswers.append(answer);
        completion(answer);
    });
}
