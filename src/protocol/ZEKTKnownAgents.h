#pragma once

#include <QString>
#include <optional>

// Trust-on-first-use store of agent fingerprints per "host:port", a JSON file in the user's
// configuration folder. Every read-modify-write happens under one process-wide lock and
// the file is replaced atomically, so concurrent sessions never lose an entry.
class ZEKTKnownAgents {
public:
    struct Lookup {
        std::optional<QString> fingerprint; // nullopt: never seen
        QString error;                      // the file exists but cannot be used
    };

    static QString defaultPath();
    static QString path();
    static void setPathForTesting(const QString &path); // empty restores the default

    static QString endpoint(const QString &host, quint16 port);
    static Lookup fingerprint(const QString &endpoint);
    // Looks the endpoint up and, when it was never seen, stores `fingerprint` in the same
    // locked step, so two sessions cannot both trust different first identities.
    struct Trust {
        enum class Kind { firstUse, unchanged, changed, error } kind = Kind::error;
        QString previous; // the stored fingerprint when changed
        QString error;
    };
    static Trust trustOnFirstUse(const QString &endpoint, const QString &fingerprint);
    // Stores or replaces the fingerprint; returns a readable error on failure.
    static std::optional<QString> store(const QString &endpoint, const QString &fingerprint);
};
