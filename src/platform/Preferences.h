#pragma once

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QString>

// The user preferences of the standard store. Every reader goes through this one
// object, so each key has one default everywhere and a change reaches every view at once.
// Values are read from the file once and then kept in memory: views read many keys on
// every statistics report.
class Preferences : public QObject {
    Q_OBJECT

public:
    static Preferences &shared();

    // Any thread.
    bool boolValue(const QString &key) const;
    void setBoolValue(const QString &key, bool value);
    static bool defaultBool(const QString &key);
    // Every key of the table of defaults.
    static QStringList knownKeys();

    // Forgets the values read so far and reads the file again; a key whose value differs
    // announces it.
    void reload();

Q_SIGNALS:
    void changed(const QString &key);

private:
    Preferences();
    static bool readFromFile(const QString &key);

    mutable QMutex m_mutex;
    mutable QHash<QString, bool> m_values;
};
