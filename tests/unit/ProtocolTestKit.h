#pragma once

// Fakes and helpers shared by the protocol tests: providers with scripted answers, a
// recorder for everything a client reports, and a way to settle a future.

#include "ZEKTClient.h"
#include "ZEKTCredentialVerifier.h"
#include "ZEKTFileReceiver.h"
#include "ZEKTInputProvider.h"
#include "ZEKTScreenProvider.h"
#include "ZEKTServer.h"
#include "ZEKTStatsProvider.h"

#include <QMutex>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QtEndian>
#include <atomic>

// A frame header as it goes on the wire: the big-endian length (type and body), the type.
inline QByteArray frameHeader(quint32 length, quint16 type)
{
    QByteArray h(6, 0);
    qToBigEndian(length, h.data());
    qToBigEndian(type, h.data() + 4);
    return h;
}

struct FakeVerifier : ZEKTCredentialVerifier {
    std::atomic<int> calls{0};
    bool verify(const QString &user, const QString &password) override
    {
        ++calls;
        return user == QLatin1String("admin") && password == QLatin1String("secret");
    }
};

struct FakeStats : ZEKTStatsProvider {
    SystemStatsMessage collect() override
    {
        SystemStatsMessage s;
        s.totalMemory = 8ull << 30;
        s.osVersion = QStringLiteral("Debian 12");
        s.cpuUsage = 12.5;
        s.diskVolumes =
            QList<ZEKTDiskVolumeInfo>{{QStringLiteral("root"), QStringLiteral("/"), 100, 40}};
        return s;
    }
};

struct FakeScreen : ZEKTScreenProvider {
    std::atomic<bool> broken{false};
    std::atomic<int> captures{0};
    std::atomic<int> ended{0};
    ZEKTCapturedFrame capture(float, bool, quintptr) override
    {
        ++captures;
        ZEKTCapturedFrame f;
        if (broken) {
            f.error = QStringLiteral("No display available");
            return f;
        }
        f.status = ZEKTCapturedFrame::Status::ok;
        f.imageData = QByteArray(1000, 'j');
        f.width = 1920;
        f.height = 1080;
        return f;
    }
    void endStream(quintptr) override { ++ended; }
};

struct FakeInput : ZEKTInputProvider {
    QMutex lock;
    QStringList events;
    std::optional<QString> note(const QString &e)
    {
        QMutexLocker l(&lock);
        events << e;
        return std::nullopt;
    }
    std::optional<QString> mouseButton(double x, double y, int b, bool p) override
    {
        return note(QStringLiteral("button %1 %2 %3 %4").arg(x).arg(y).arg(b).arg(p));
    }
    std::optional<QString> mouseMove(double x, double y, double dx, double dy) override
    {
        return note(QStringLiteral("move %1 %2 %3 %4").arg(x).arg(y).arg(dx).arg(dy));
    }
    std::optional<QString> key(quint16 k, bool p, quint32 m) override
    {
        return note(QStringLiteral("key %1 %2 %3").arg(k).arg(p).arg(m));
    }
};

// Keeps uploads in memory; refuses names starting with "refuse".
struct MemoryReceiver : ZEKTFileReceiver {
    struct Sink : ZEKTIncomingFile {
        MemoryReceiver *owner;
        QByteArray data;
        explicit Sink(MemoryReceiver *o) : owner(o) {}
        std::optional<QString> write(const QByteArray &chunk) override
        {
            if (owner->slowWrites)
                QThread::msleep(20);
            data += chunk;
            return std::nullopt;
        }
        Committed commit() override
        {
            QMutexLocker l(&owner->lock);
            owner->stored = data;
            return {true, QStringLiteral("stored.bin")};
        }
        void discard() override { ++owner->discarded; }
    };
    QMutex lock;
    QByteArray stored;
    std::atomic<int> begun{0};
    std::atomic<int> discarded{0};
    std::atomic<bool> slowWrites{false}; // a disk slower than the network
    Decision begin(const QString &name, qint64) override
    {
        ++begun;
        if (name.startsWith(QLatin1String("refuse")))
            return {nullptr, QStringLiteral("Disk full")};
        return {std::make_unique<Sink>(this), {}};
    }
};

// Everything a client reported, recorded from its I/O thread.
struct Recorder {
    QMutex lock;
    QList<ZEKTMessagePtr> messages;
    QList<NetworkState> states;
    QStringList logCategories;
    std::atomic<int> calls{0};

    void attach(ZEKTClient &client)
    {
        client.setLogFunction([this](const QString &, const QString &category) {
            QMutexLocker l(&lock);
            logCategories << category;
        });
        client.setMessageHandler([this](const ZEKTMessagePtr &m) {
            ++calls;
            QMutexLocker l(&lock);
            messages << m;
        });
        client.setStateUpdateHandler([this](const NetworkState &s) {
            ++calls;
            QMutexLocker l(&lock);
            states << s;
        });
    }
    QStringList typeNames()
    {
        QMutexLocker l(&lock);
        QStringList names;
        for (const auto &m : messages)
            names << m->typeName();
        return names;
    }
    template <typename T> QList<std::shared_ptr<const T>> all()
    {
        QMutexLocker l(&lock);
        QList<std::shared_ptr<const T>> out;
        for (const auto &m : messages)
            if (auto t = std::dynamic_pointer_cast<const T>(m))
                out << t;
        return out;
    }
    int count(const QString &typeName) { return typeNames().count(typeName); }
    NetworkState lastState()
    {
        QMutexLocker l(&lock);
        return states.isEmpty() ? NetworkState() : states.last();
    }
};

// Waits (running the event loop) until the future settles; returns its error text or "".
inline QString settle(QFuture<void> future, int timeoutMs = 10000)
{
    if (!QTest::qWaitFor([&] { return future.isFinished(); }, timeoutMs))
        return QStringLiteral("<still running>");
    try {
        future.waitForFinished();
    } catch (const ZEKTError &e) {
        return e.description().isEmpty() ? QStringLiteral("<empty error>") : e.description();
    }
    return future.isCanceled() ? QStringLiteral("<cancelled>") : QString();
}

// Readable values in failed comparisons (found by argument-dependent lookup).
inline char *toString(const NetworkState &state)
{
    return qstrdup(state.text().toUtf8().constData());
}
