#include "ZEKTKnownAgents.h"

#include "posix/PrivateFiles.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutex>
#include <QStandardPaths>

namespace {
QMutex g_lock;
QString g_testPath;

struct Loaded {
    QJsonObject agents;
    QString error;
};

// Caller holds g_lock.
Loaded load(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {};
    if (!file.open(QIODevice::ReadOnly))
        return {{},
                QStringLiteral("Cannot read the known agents file %1: %2")
                    .arg(path, file.errorString())};
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(file.read(16 * 1024 * 1024), &parseError);
    if (parseError.error != QJsonParseError::NoError || !doc.isObject() ||
        !doc.object().value(QStringLiteral("agents")).isObject())
        return {{},
                QStringLiteral("The known agents file %1 is damaged; fix or remove it").arg(path)};
    return {doc.object().value(QStringLiteral("agents")).toObject(), {}};
}
// Caller holds g_lock.
std::optional<QString> save(const QString &file, QJsonObject agents, const QString &endpoint,
                            const QString &fingerprint)
{
    QJsonObject entry;
    entry.insert(QStringLiteral("fingerprint"), fingerprint);
    entry.insert(QStringLiteral("trustedAt"),
                 QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    agents.insert(endpoint, entry);
    QJsonObject root;
    root.insert(QStringLiteral("version"), 1);
    root.insert(QStringLiteral("agents"), agents);

    // The console's configuration folder: for the user alone, like everything in it.
    const QString folder = QFileInfo(file).absolutePath();
    PrivateFiles::makeFolder(folder, folder);
    if (const auto error = PrivateFiles::write(file, QJsonDocument(root).toJson()))
        return QStringLiteral("Cannot write the known agents file %1: %2").arg(file, *error);
    return std::nullopt;
}
} // namespace

QString ZEKTKnownAgents::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Quorvel/known_agents.json");
}

QString ZEKTKnownAgents::path()
{
    QMutexLocker locker(&g_lock);
    return g_testPath.isEmpty() ? defaultPath() : g_testPath;
}

void ZEKTKnownAgents::setPathForTesting(const QString &path)
{
    QMutexLocker locker(&g_lock);
    g_testPath = path;
}

QString ZEKTKnownAgents::endpoint(const QString &host, quint16 port)
{
    QHostAddress address;
    if (address.setAddress(host) && address.protocol() == QAbstractSocket::IPv6Protocol)
        return QStringLiteral("[%1]:%2").arg(address.toString()).arg(port);
    return QStringLiteral("%1:%2").arg(host.toLower()).arg(port);
}

ZEKTKnownAgents::Lookup ZEKTKnownAgents::fingerprint(const QString &endpoint)
{
    const QString file = path();
    QMutexLocker locker(&g_lock);
    Loaded loaded = load(file);
    if (!loaded.error.isEmpty())
        return {std::nullopt, loaded.error};
    const QJsonValue entry = loaded.agents.value(endpoint);
    const QString fp = entry.toObject().value(QStringLiteral("fingerprint")).toString();
    if (fp.isEmpty())
        return {};
    return {fp, {}};
}

ZEKTKnownAgents::Trust ZEKTKnownAgents::trustOnFirstUse(const QString &endpoint,
                                                        const QString &fingerprint)
{
    const QString file = path();
    QMutexLocker locker(&g_lock);
    Loaded loaded = load(file);
    if (!loaded.error.isEmpty())
        return {Trust::Kind::error, {}, loaded.error};
    const QString stored =
        loaded.agents.value(endpoint).toObject().value(QStringLiteral("fingerprint")).toString();
    if (stored == fingerprint)
        return {Trust::Kind::unchanged, {}, {}};
    if (!stored.isEmpty())
        return {Trust::Kind::changed, stored, {}};
    if (const auto error = save(file, std::move(loaded.agents), endpoint, fingerprint))
        return {Trust::Kind::error, {}, *error};
    return {Trust::Kind::firstUse, {}, {}};
}

std::optional<QString> ZEKTKnownAgents::store(const QString &endpoint, const QString &fingerprint)
{
    const QString file = path();
    QMutexLocker locker(&g_lock);
    Loaded loaded = load(file);
    if (!loaded.error.isEmpty())
        return loaded.error;
    return save(file, std::move(loaded.agents), endpoint, fingerprint);
}
