#pragma once

#include "model/RemoteComputer.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

class ZEKTClient;

// One try at opening a session: the client's connect and authenticate raced against one
// overall deadline. The first of the two to finish decides; later results are ignored.
// A cancelled attempt reports nothing at all. Main thread only.
class ConnectionAttempt : public QObject {
    Q_OBJECT

public:
    // `error` is empty on success.
    using Finished = std::function<void(const std::optional<QString> &error)>;

    ConnectionAttempt(quint64 generation, std::shared_ptr<ZEKTClient> client,
                      RemoteComputer computer, double deadlineSeconds);

    quint64 generation() const { return m_generation; }
    const std::shared_ptr<ZEKTClient> &client() const { return m_client; }
    const RemoteComputer &computer() const { return m_computer; }
    double deadlineSeconds() const { return m_deadlineSeconds; }
    bool isCancelled() const { return m_cancelled; }

    // `connected` runs between the handshake and authentication; `finished` once, with
    // the outcome, unless the attempt is cancelled first.
    void start(std::function<void()> connected, Finished finished);
    // Ends the race silently; the client is left as it is.
    void cancel();

    // "Connection timed out after N seconds", N the whole seconds of the deadline.
    static QString timeoutDescription(double deadlineSeconds);

private:
    void settle(const std::optional<QString> &error);

    quint64 m_generation;
    std::shared_ptr<ZEKTClient> m_client;
    RemoteComputer m_computer;
    double m_deadlineSeconds;
    bool m_cancelled = false;
    bool m_settled = false;
    QTimer m_deadline;
    std::function<void()> m_connected;
    Finished m_finished;
};
