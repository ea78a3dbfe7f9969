#pragma once

#include "FakeZEKTClient.h"
#include "LogLines.h"
#include "ScriptedAlertPresenter.h"
#include "session/ZEKTManager.h"
#include "state/AppState.h"

#include <QBuffer>
#include <QImage>
#include <QTest>

// A plain image of that size in `format`, as an agent would send it.
inline QByteArray encodedImage(int width, int height, const char *format = "JPEG")
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// One AppState with a session manager whose clients are fakes, and one stored computer.
struct SessionHarness {
    SessionHarness()
    {
        auto owned = std::make_unique<ZEKTManager>([this](const QString &host, quint16 port) {
            auto fake = std::make_shared<FakeZEKTClient>(host, port);
            fakes.append(fake);
            return fake;
        });
        manager = owned.get();
        manager->setAlertPresenter(&presenter);
        state = std::make_unique<AppState>(std::move(owned));
        computer.name = QStringLiteral("Studio");
        computer.host = QStringLiteral("127.0.0.1");
        computer.username = QStringLiteral("admin");
        computer.password = QStringLiteral("secret");
        state->addComputer(computer);
        LogLines::clear();
    }
    ~SessionHarness() { state->waitForPendingWrites(); }

    RemoteComputer record() const { return *state->computer(computer.id); }
    FakeZEKTClient &fake() const { return *fakes.last(); }

    // Connects the computer through a fake that completes every step at once.
    bool connect()
    {
        manager->connectToComputer(computer);
        if (fakes.isEmpty())
            return false;
        fake().autoSucceed = {QStringLiteral("connect"), QStringLiteral("authenticate")};
        if (!QTest::qWaitFor([&] { return record().isConnected; }))
            return false;
        fake().state = ZEKT::ConnectionState::connected;
        return true;
    }

    QList<std::shared_ptr<FakeZEKTClient>> fakes;
    ScriptedAlertPresenter presenter;
    ZEKTManager *manager = nullptr;
    std::unique_ptr<AppState> state;
    RemoteComputer computer;
};
