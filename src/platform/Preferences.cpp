#include "Preferences.h"

#include "PreferenceKeys.h"
#include "SettingsFiles.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QSettings>

namespace {

// One table of defaults for every boolean preference. A key missing here reads false,
// so each key a view reads must be listed.
const QHash<QString, bool> &defaults()
{
    using namespace PreferenceKeys;
    static const QHash<QString, bool> table = {
        {QLatin1String(supervisionAutoConnectAll), false},
        {QLatin1String(dashboardShowSummaryTiles), true},
        {QLatin1String(dashboardShowHealthMetrics), true},
        {QLatin1String(dashboardShowTechnicalSpecs), true},
        {QLatin1String(dashboardShowScreenPreview), false},
        {QLatin1String(pillsShowOS), true},
        {QLatin1String(pillsShowModel), true},
        {QLatin1String(pillsShowMemory), true},
        {QLatin1String(pillsShowDiskFree), true},
        {QLatin1String(pillsShowUptime), true},
        {QLatin1String(pillsShowIPAddress), true},
        {QLatin1String(pillsShowLoggedInUser), true},
        {QLatin1String(pillsShowNetworkName), true},
        {QLatin1String(pillsShowDisplayCount), true},
        {QLatin1String(pillsShowMainResolution), true},
        {QLatin1String(pillsShowAgentVersion), true},
        {QLatin1String(pillsShowSession), true},
        {QLatin1String(pillsShowScreenAccess), true},
        {QLatin1String(pillsShowRemoteControl), true},
        {QLatin1String(pillsShowFrontApp), true},
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

QStringList Preferences::knownKeys()
{
    return defaults().keys();
}

bool Preferences::readFromFile(const QString &key)
{
    const QVariant value = SettingsFiles::openStandard()->value(key);
    // A stored value that is not a boolean is ignored rather than misread.
    if (value.isValid() &&
        (value.typeId() == QMetaType::Bool || value.toString() == QLatin1String("true") ||
         value.toString() == QLatin1String("false")))
        return value.toBool();
    return defaultBool(key);
}

bool Preferences::boolValue(const QString &key) const
{
    {
        const QMutexLocker lock(&m_mutex);
        if (const auto it = m_values.constFind(key); it != m_values.cend())
            return *it;
    }
    // The file is read outside the lock; a write that lands meanwhile wins.
    const bool value = readFromFile(key);
    const QMutexLocker lock(&m_mutex);
    auto it = m_values.find(key);
    if (it == m_values.end())
        it = m_values.insert(key, value);
    return *it;
}

void Preferences::setBoolValue(const QString &key, bool value)
{
    if (boolValue(key) == value)
        return;
    {
        const QMutexLocker lock(&m_mutex);
        m_values.insert(key, value);
    }
    auto settings = SettingsFiles::openStandard();
    settings->setValue(key, value);
    SettingsFiles::syncDurably(*settings);
    Q_EMIT changed(key);
}

void Preferences::reload()
{
    QHash<QString, bool> before;
    {
        const QMutexLocker lock(&m_mutex);
        before.swap(m_values);
    }
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (boolValue(it.key()) != it.value())
            Q_EMIT changed(it.key());
    }
}
