#pragma once

#include <QHash>
#include <QObject>
#include <QString>

// The user preferences of the standard store. Every reader goes through this one
// object, so each key has one default everywhere and a change reaches every view at once.
class Preferences : public QObject {
    Q_OBJECT

public:
    static Preferences &shared();

    bool boolValue(const QString &key) const;
    void setBoolValue(const QString &key, bool value);
    static bool defaultBool(const QString &key);

Q_SIGNALS:
    void changed(const QString &key);

private:
    Preferences();
};
