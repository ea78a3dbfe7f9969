#include "ScriptedDiscoveryBackend.h"

namespace {

ServiceInstance instance(const QString &name, int interfaceIndex, int protocol)
{
    return {interfaceIndex, protocol, name, QStringLiteral("_zekt._tcp"), QStringLiteral("local")};
}

} // namespace

void ScriptedDiscoveryBackend::startBrowse(quint64 browse, const QString &, const QString &)
{
    calls << QStringLiteral("browse %1").arg(browse);
    this->browse = browse;
}

void ScriptedDiscoveryBackend::stopBrowse(quint64 browse)
{
    calls << QStringLiteral("stop %1").arg(browse);
    resolving.clear();
}

void ScriptedDiscoveryBackend::resolve(quint64, quint64 resolution, const ServiceInstance &service)
{
    calls << QStringLiteral("resolve ") + service.name;
    resolving.insert(resolution, service);
}

void ScriptedDiscoveryBackend::cancelResolve(quint64 resolution)
{
    calls << QStringLiteral("cancel ") + resolving.value(resolution).name;
    resolving.remove(resolution);
}

void ScriptedDiscoveryBackend::found(const QString &name, int interfaceIndex, int protocol,
                                     quint64 olderBrowse)
{
    Q_EMIT serviceFound(olderBrowse ? olderBrowse : browse,
                        instance(name, interfaceIndex, protocol));
}

void ScriptedDiscoveryBackend::removed(const QString &name, int interfaceIndex, int protocol)
{
    Q_EMIT serviceRemoved(browse, instance(name, interfaceIndex, protocol));
}

void ScriptedDiscoveryBackend::resolved(const QString &name, const QString &host, int port,
                                        const QList<QByteArray> &txt)
{
    const quint64 resolution = resolutionOf(name);
    resolving.remove(resolution);
    Q_EMIT serviceResolved(resolution, host, port, txt);
}

void ScriptedDiscoveryBackend::failed(const QString &name)
{
    const quint64 resolution = resolutionOf(name);
    resolving.remove(resolution);
    Q_EMIT resolveFailed(resolution);
}

quint64 ScriptedDiscoveryBackend::resolutionOf(const QString &name) const
{
    for (auto it = resolving.begin(); it != resolving.end(); ++it) {
        if (it->name == name)
            return it.key();
    }
    return 0;
}
