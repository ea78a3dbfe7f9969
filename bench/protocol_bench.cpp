// Prints throughput and latency figures of the session protocol over loopback; never run
// by ctest. Both ends run in this process: the agent end on the main thread, the console
// end on the library's I/O threads.
//   protocol_bench [--seconds N] [--sessions N]

#include "ZEKTClient.h"
#include "ZEKTCredentialVerifier.h"
#include "ZEKTFileReceiver.h"
#include "ZEKTIdentity.h"
#include "ZEKTKnownAgents.h"
#include "ZEKTScreenProvider.h"
#include "ZEKTServer.h"

#include "FileTransferResponseMessage.h"
#include "ScreenCaptureMessage.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <sys/resource.h>

namespace {

struct AcceptAll : ZEKTCredentialVerifier {
    bool verify(const QString &, const QString &) override { return true; }
};

// A fixed frame the size of a 1920x1080 JPEG at the console's streaming quality.
struct FixedScreen : ZEKTScreenProvider {
    QByteArray frame;
    ZEKTCapturedFrame capture(float, bool, quintptr) override
    {
        return {ZEKTCapturedFrame::Status::ok, frame, 1920, 1080, {}};
    }
};

// Counts the bytes and drops them: the measurement is the protocol, not the disk.
struct NullReceiver : ZEKTFileReceiver {
    struct Sink : ZEKTIncomingFile {
        std::optional<QString> write(const QByteArray &) override { return std::nullopt; }
        Committed commit() override { return {true, QStringLiteral("null")}; }
        void discard() override {}
    };
    Decision begin(const QString &, qint64) override { return {std::make_unique<Sink>(), {}}; }
};

// Runs the event loop (the agent end lives on it) until `done` or the time-out; polls
// every millisecond instead of spinning, so the waiting costs no CPU.
bool waitUntil(const std::function<bool()> &done, int timeoutMs)
{
    if (done())
        return true;
    QElapsedTimer timer;
    timer.start();
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || timer.elapsed() > timeoutMs)
            loop.quit();
    });
    poll.start(1);
    loop.exec();
    return done();
}

bool settled(QFuture<void> future, int timeoutMs = 30000)
{
    if (!waitUntil([&] { return future.isFinished(); }, timeoutMs))
        return false;
    try {
        future.waitForFinished();
    } catch (const ZEKTError &e) {
        std::fprintf(stderr, "error: %s\n", qPrintable(e.description()));
        return false;
    }
    return true;
}

// CPU seconds per thread name, from /proc.
QMap<QString, double> threadCpu()
{
    QMap<QString, double> out;
    const long ticks = sysconf(_SC_CLK_TCK);
    for (const QString &tid :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile stat(QStringLiteral("/proc/self/task/%1/stat").arg(tid));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const qsizetype open = line.indexOf('('), close = line.lastIndexOf(')');
        const QString name = QString::fromLatin1(line.mid(open + 1, close - open - 1));
        const QList<QByteArray> f = line.mid(close + 2).split(' ');
        out[name] += (f.value(11).toLongLong() + f.value(12).toLongLong()) / double(ticks);
    }
    return out;
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

long residentKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    return -1;
}

std::shared_ptr<ZEKTClient> loggedIn(quint16 port)
{
    auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), port);
    if (!settled(client->connect()) ||
        !settled(client->authenticate(QStringLiteral("bench"), QStringLiteral("bench"))))
        return nullptr;
    return client;
}

void streaming(quint16 port, FixedScreen &screen, int seconds)
{
    auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), port);
    std::atomic<qint64> frames{0};
    std::atomic<qint64> bytes{0};
    // The console's handler releases each frame at once, as a fast reader would.
    client->setMessageHandler([&](const ZEKTMessagePtr &m) {
        if (m->type() == ZEKTMessage::Type::screenCapture) {
            const auto *image = static_cast<const ScreenCaptureMessage *>(m.get());
            ++frames;
            bytes += image->imageData.size();
        }
    });
    if (!settled(client->connect()) ||
        !settled(client->authenticate(QStringLiteral("bench"), QStringLiteral("bench"))))
        return;
    if (!settled(client->startContinuousStreaming(0, 0.5f, 120)))
        return;
    waitUntil([] { return false; }, 500); // warm-up
    const qint64 f0 = frames;
    const qint64 b0 = bytes;
    const double cpu0 = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    waitUntil([] { return false; }, seconds * 1000);
    const double wall = timer.elapsed() / 1000.0;
    const double cpu = cpuSeconds() - cpu0;
    const qint64 n = frames - f0;
    const double mb = (bytes - b0) / 1e6;
    std::printf("streaming, %lld-byte frames (1920x1080 JPEG size), rate asked 120/s:\n",
                static_cast<long long>(screen.frame.size()));
    std::printf("  %.1f frames/s, %.1f MB/s, CPU %.2f ms per frame (both ends)\n", n / wall,
                mb / wall, n ? cpu * 1000.0 / n : 0.0);
    (void)settled(client->stopContinuousStreaming());
    client->disconnect();
}

double zektFileTransfer(quint16 port, const QString &path, qint64 size)
{
    auto client = ZEKTClient::create(QStringLiteral("127.0.0.1"), port);
    std::atomic<bool> verdict{false};
    client->setMessageHandler([&](const ZEKTMessagePtr &m) {
        if (m->type() == ZEKTMessage::Type::fileTransferResponse)
            verdict = true;
    });
    if (!settled(client->connect()) ||
        !settled(client->authenticate(QStringLiteral("bench"), QStringLiteral("bench"))))
        return 0;
    QElapsedTimer timer;
    timer.start();
    const double cpu0 = cpuSeconds();
    const auto threads0 = threadCpu();
    if (!settled(client->sendFileTransfer(path, QStringLiteral("bench.bin"), {}), 600000) ||
        !waitUntil([&] { return verdict.load(); }, 600000))
        return 0;
    const double seconds = timer.elapsed() / 1000.0;
    std::printf("  zekt upload: %.2f s wall, %.2f s CPU (both ends)\n", seconds,
                cpuSeconds() - cpu0);
    const auto threads1 = threadCpu();
    for (auto it = threads1.cbegin(); it != threads1.cend(); ++it)
        if (it.value() - threads0.value(it.key()) > 0.01)
            std::printf("    %s %.2f s\n", qPrintable(it.key()),
                        it.value() - threads0.value(it.key()));
    client->disconnect();
    return size / 1e6 / seconds;
}

// The same bytes through a bare QSslSocket pair (no framing, no hashing): the ceiling of
// Qt's TLS socket that the protocol runs on.
double qtSocketTransfer(const ZEKTIdentity &identity, qint64 size)
{
    struct Sink : QTcpServer {
        ZEKTIdentity identity;
        qint64 received = 0;
        void incomingConnection(qintptr descriptor) override
        {
            auto *socket = new QSslSocket(this);
            socket->setSocketDescriptor(descriptor);
            QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
            tls.setProtocol(QSsl::TlsV1_3);
            tls.setLocalCertificate(identity.certificate());
            tls.setPrivateKey(identity.privateKey());
            socket->setSslConfiguration(tls);
            connect(socket, &QSslSocket::readyRead, socket,
                    [this, socket] { received += socket->readAll().size(); });
            socket->startServerEncryption();
        }
    } sink;
    sink.identity = identity;
    sink.listen(QHostAddress::LocalHost, 0);
    QThread thread;
    thread.start();
    auto *socket = new QSslSocket;
    socket->moveToThread(&thread);
    QElapsedTimer timer;
    timer.start();
    const double cpu0 = cpuSeconds();
    QMetaObject::invokeMethod(socket, [socket, size, port = sink.serverPort()] {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setProtocol(QSsl::TlsV1_3);
        tls.setPeerVerifyMode(QSslSocket::VerifyNone);
        socket->setSslConfiguration(tls);
        auto sent = std::make_shared<qint64>(0);
        const QByteArray chunk(1024 * 1024, 'x');
        auto pump = [socket, sent, chunk, size] {
            while (*sent < size &&
                   socket->bytesToWrite() + socket->encryptedBytesToWrite() < 4 * 1024 * 1024) {
                socket->write(chunk);
                *sent += chunk.size();
            }
        };
        QObject::connect(socket, &QSslSocket::encrypted, socket, pump);
        QObject::connect(socket, &QSslSocket::bytesWritten, socket, pump);
        QObject::connect(socket, &QSslSocket::encryptedBytesWritten, socket, pump);
        socket->connectToHostEncrypted(QStringLiteral("127.0.0.1"), port);
    });
    const bool done = waitUntil([&] { return sink.received >= size; }, 600000);
    const double seconds = timer.elapsed() / 1000.0;
    std::printf("  bare QSslSocket pair: %.2f s wall, %.2f s CPU (both ends)\n", seconds,
                cpuSeconds() - cpu0);
    QMetaObject::invokeMethod(socket, [socket] { socket->deleteLater(); });
    thread.quit();
    thread.wait();
    return done ? size / 1e6 / seconds : 0;
}

double childrenCpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

double opensslFileTransfer(const QString &identityDir, const QString &path, qint64 size)
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    QProcess server;
    server.setStandardOutputFile(QProcess::nullDevice());
    server.start(QStringLiteral("openssl"),
                 {"s_server", "-quiet", "-tls1_3", "-naccept", "1", "-accept",
                  QStringLiteral("127.0.0.1:%1").arg(port), "-cert",
                  identityDir + "/" + ZEKTIdentity::certificateFileName(), "-key",
                  identityDir + "/" + ZEKTIdentity::keyFileName()});
    if (!server.waitForStarted())
        return 0;
    QThread::msleep(300);
    QProcess client;
    client.setStandardInputFile(path);
    client.setStandardOutputFile(QProcess::nullDevice());
    const double childCpu0 = childrenCpuSeconds();
    QElapsedTimer timer;
    timer.start();
    client.start(QStringLiteral("openssl"),
                 {"s_client", "-quiet", "-no_ign_eof", "-nocommands", "-tls1_3", "-connect",
                  QStringLiteral("127.0.0.1:%1").arg(port)});
    if (!client.waitForFinished(600000) || !server.waitForFinished(600000))
        return 0;
    const double seconds = timer.elapsed() / 1000.0;
    // Both processes are reaped by now, so their CPU time is in the children's total.
    std::printf("  openssl transfer: %.2f s wall, %.2f s CPU (both processes)\n", seconds,
                childrenCpuSeconds() - childCpu0);
    return size / 1e6 / seconds;
}

void latency(quint16 port, int rounds)
{
    QList<double> ms;
    for (int i = 0; i < rounds; ++i) {
        QElapsedTimer timer;
        timer.start();
        auto client = loggedIn(port);
        if (!client)
            return;
        ms << timer.nsecsElapsed() / 1e6;
        client->disconnect();
    }
    std::sort(ms.begin(), ms.end());
    std::printf("connect + handshake + authentication, %d rounds: median %.2f ms, p90 %.2f ms\n",
                rounds, ms[ms.size() / 2], ms[ms.size() * 9 / 10]);
}

void manySessions(quint16 port, int count)
{
    const long before = residentKiB();
    QList<std::shared_ptr<ZEKTClient>> clients;
    for (int i = 0; i < count; ++i) {
        auto client = loggedIn(port);
        if (!client)
            break;
        client->setMessageHandler([](const ZEKTMessagePtr &) {});
        clients << client;
    }
    waitUntil([] { return false; }, 1000);
    const long after = residentKiB();
    std::printf("%lld sessions open: process resident %.1f MB (%.1f MB before; both ends of "
                "every session live in this process)\n",
                static_cast<long long>(clients.size()), after / 1024.0, before / 1024.0);
    for (auto &c : clients)
        c->disconnect();
}

void fileTransfers(quint16 port, const QTemporaryDir &dir, const QString &identityDir)
{
    const qint64 size = 256ll * 1024 * 1024;
    const QString path = dir.filePath(QStringLiteral("transfer.bin"));
    {
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        QByteArray block(1024 * 1024, Qt::Uninitialized);
        for (qint64 done = 0; done < size; done += block.size()) {
            QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(block.data()),
                                                  block.size() / 4);
            file.write(block);
        }
    }
    const double zekt = zektFileTransfer(port, path, size);
    const double openssl = opensslFileTransfer(identityDir, path, size);
    const double qt = qtSocketTransfer(ZEKTIdentity::loadOrCreate(identityDir), size);
    std::printf("256 MiB file over TLS 1.3 on loopback: zekt %.1f MB/s, openssl s_client -> "
                "s_server %.1f MB/s, ratio %.2f\n",
                zekt, openssl, openssl > 0 ? zekt / openssl : 0.0);
    std::printf("  bare QSslSocket pair, same bytes: %.1f MB/s (%.2f of openssl)\n", qt,
                openssl > 0 ? qt / openssl : 0.0);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int seconds = 5;
    int sessions = 200;
    QString only; // latency, streaming, file or sessions
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--seconds"))
            seconds = args[i + 1].toInt();
        if (args[i] == QLatin1String("--sessions"))
            sessions = args[i + 1].toInt();
        if (args[i] == QLatin1String("--only"))
            only = args[i + 1];
    }

    QTemporaryDir dir;
    ZEKTKnownAgents::setPathForTesting(dir.filePath(QStringLiteral("known.json")));
    const QString identityDir = dir.filePath(QStringLiteral("identity"));
    ZEKTServerConfig config;
    config.bindAddress = QHostAddress::LocalHost;
    config.port = 0;
    config.statsIntervalSeconds = 3600;
    config.maxUnauthenticatedConnections = 1000;
    config.identity = ZEKTIdentity::loadOrCreate(identityDir);
    ZEKTServer server(config);
    auto screen = std::make_shared<FixedScreen>();
    screen->frame = QByteArray(300 * 1024, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32 *>(screen->frame.data()),
                                          screen->frame.size() / 4);
    server.setCredentialVerifier(std::make_shared<AcceptAll>());
    server.setScreenProvider(screen);
    server.setFileReceiver(std::make_shared<NullReceiver>());
    if (!server.listen()) {
        std::fprintf(stderr, "listen: %s\n", qPrintable(server.errorString()));
        return 1;
    }
    const quint16 port = server.serverPort();

    auto wanted = [&only](const char *part) {
        return only.isEmpty() || only.split(QLatin1Char(',')).contains(QLatin1String(part));
    };
    if (wanted("latency"))
        latency(port, 50);
    if (wanted("streaming"))
        streaming(port, *screen, seconds);
    if (wanted("file"))
        fileTransfers(port, dir, identityDir);
    if (wanted("sessions"))
        manySessions(port, sessions);
    server.stop(QStringLiteral("Benchmark finished"));
    return 0;
}
