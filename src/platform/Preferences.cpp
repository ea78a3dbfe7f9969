#include "Preferences.h"

#include "PreferenceKeys.h"
#include "SettingsFiles.h"

#include <QCoreApplication>
#include <QSettings>

namespace {

// One table of defaults for every boolean preference.
const QHash<QString, bool> &defaults()
{
    static const QHash<QString, bool> table = {
        {QLatin1String(PreferenceKeys::supervisionAutoConnectAll), false},
    };
    return table;
}

} // namespace

Preferences::Preferences()
{
    if (auto *app = QCoreApplication::instance(); app && thread() != app->thread())
        moveToThread(app->thread());
}

Preferences &Preferences::shared()
{
    static Preferences *instance = new Preferences;
    return *instance;
}

bool Preferences::defaultBool(const QString &key)
{
    return defaults().value(key, false);
}

bool Preferences::boolValue(const QString &key) const
{
    const QVariant value = SettingsFiles::openStandard()->value(key);
    // A stored value that is not a boolean is ignored rather than misread.
    if (value.isValid() &&
        (value.typeId() == QMetaType::Bool || value.toString() == QLatin1String("true") ||
         value.toString() == QLatin1String("false")))
        return value.toBool();
    return defaultBool(key);
}

void Preferences::setBoolValue(const QString &key, bool value)
{
    if (boolValue(key) == value)
        return;
    auto settings = SettingsFiles::openStandard();
    settings->setValue(key, value);
    SettingsFiles::syncDurably(*settings);
    Q_EMIT changed(key);
}
