// The server-identity prompt: answers, time-out, the first-writer rule and late blocks.
#include "SessionHarness.h"

#include "session/TOFUPromptDecision.h"

#include <QThread>
#include <future>

namespace {

// Runs the prompt on a library-like thread and returns its answer.
std::future<bool> promptFromThread(ZEKTManager *manager)
{
    return std::async(std::launch::async, [manager] {
        return manager->promptServerIdentityChange("Studio", "0123456789abcdefXYZ", "short");
    });
}

bool waitWhileProcessingEvents(std::future<bool> &answer)
{
    return QTest::qWaitFor(
        [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; },
        10000);
}

} // namespace

class IdentityPromptTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { ZEKT::resetTimeoutsForTesting(); }

    void answersFromAnyThread()
    {
        SessionHarness h;
        h.presenter.script = {0, 1, AlertPresenter::closed};
        for (const bool expected : {true, false, false}) {
            std::future<bool> answer = promptFromThread(h.manager);
            QVERIFY(waitWhileProcessingEvents(answer));
            QCOMPARE(answer.get(), expected);
        }
        const Alert &alert = h.presenter.shown.first();
        QCOMPARE(alert.title, QStringLiteral("Server Identity Changed"));
        QCOMPARE(alert.buttons, QStringList({"Trust New Identity", "Reject"}));
        QVERIFY(alert.text.startsWith("The security fingerprint for Studio changed.\n\n"
                                      "Previous: 0123456789abcdef…\nNew: short…\n\n"));
        // On the main thread the alert runs in the call itself.
        h.presenter.script = {0};
        QVERIFY(h.manager->promptServerIdentityChange("Studio", "a", "b"));
    }

    void unansweredPromptTimesOut()
    {
        ZEKT::setTimeoutsForTesting({10.0, 5.0, 0.2});
        SessionHarness h; // empty script: nobody answers
        std::future<bool> answer = promptFromThread(h.manager);
        QVERIFY(waitWhileProcessingEvents(answer));
        QCOMPARE(answer.get(), false);
        QCOMPARE(h.presenter.aborted, 1);
    }

    void lateMainQueueBlockShowsNothing()
    {
        ZEKT::setTimeoutsForTesting({10.0, 5.0, 0.05});
        SessionHarness h;
        h.presenter.script = {0};
        std::future<bool> answer = promptFromThread(h.manager);
        // The main thread is busy past the waiter's limit (time-out + 1 s).
        QCOMPARE(answer.wait_for(std::chrono::seconds(5)), std::future_status::ready);
        QCOMPARE(answer.get(), false);
        QTest::qWait(20);
        QVERIFY(h.presenter.shown.isEmpty());
    }

    void firstWriterWins()
    {
        TOFUPromptDecision decision;
        QVERIFY(!decision.storedValue());
        std::atomic<int> winners{0};
        std::vector<std::thread> writers;
        for (int i = 0; i < 8; ++i)
            writers.emplace_back([&, i] { winners += decision.decide(i % 2 == 0); });
        for (auto &writer : writers)
            writer.join();
        QCOMPARE(winners.load(), 1);
        const bool stored = *decision.storedValue();
        QVERIFY(!decision.decide(!stored));
        QCOMPARE(*decision.storedValue(), stored);
    }

    void noPresenterRejects()
    {
        SessionHarness h;
        h.manager->setAlertPresenter(nullptr);
        AlertPresenter::setShared(nullptr);
        QVERIFY(!h.manager->promptServerIdentityChange("Studio", "a", "b"));
        QCOMPARE(LogLines::count("WARN", "No alert presenter to show: Server Identity Changed"), 1);
    }
};

QTEST_MAIN(IdentityPromptTest)
#include "IdentityPromptTest.moc"
