#include "NetworkState.h"

#include <cerrno>

bool NetworkState::isNetworkDown() const
{
    return m_kind == Kind::waiting && m_errorCode == ENETDOWN;
}

QString NetworkState::text() const
{
    auto withError = [this](const char *name) {
        const QString detail =
            m_errorDescription.isEmpty() ? QString::number(m_errorCode) : m_errorDescription;
        return QStringLiteral("%1(%2)").arg(QLatin1String(name), detail);
    };
    switch (m_kind) {
    case Kind::setup:
        return QStringLiteral("setup");
    case Kind::waiting:
        return withError("waiting");
    case Kind::preparing:
        return QStringLiteral("preparing");
    case Kind::ready:
        return QStringLiteral("ready");
    case Kind::failed:
        return withError("failed");
    case Kind::cancelled:
        return QStringLiteral("cancelled");
    }
    return QStringLiteral("unknown");
}
