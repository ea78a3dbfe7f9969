#include "RemoteComputer.h"

QString RemoteComputer::displayName() const
{
    return name && !name->isEmpty() ? *name : host;
}

QString RemoteComputer::connectionString() const
{
    return host + QLatin1Char(':') + QString::number(port);
}

size_t qHash(const RemoteComputer &c, size_t seed)
{
    seed = FieldHash::combine(seed, c.id, c.name, c.host, c.port, c.username, c.password,
                              c.description, c.tags, c.isConnected, c.isConnecting);
    return FieldHash::combine(seed, c.lastConnected, c.thumbnailImage, c.lastError, c.systemStats);
}
