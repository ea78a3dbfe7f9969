#include "StoredListGuard.h"

#include "SetAsideNotices.h"
#include "SettingsFiles.h"
#include "SuiteCopies.h"
#include "model/ComputerJson.h"

#include <QSettings>

namespace StoredListGuard {
namespace {

bool isUndecodable(const QVariant &stored, const QByteArray &knownGood)
{
    if (!stored.isValid())
        return false;
    const QByteArray bytes = stored.toByteArray();
    if (!knownGood.isEmpty() && bytes == knownGood)
        return false;
    return !ComputerJson::decodeList(bytes).has_value();
}

// Caller holds the suite's write lock.
QString keepCopy(const QSettings &settings)
{
    const QString path = settings.fileName();
    const QString copy =
        SuiteCopies::copyAside(path, QLatin1String(SuiteCopies::undecodable), keptCopies);
    if (!copy.isEmpty())
        SetAsideNotices::shared().report(
            SetAsideCopy{SetAsideCopy::Reason::undecodableList, path, copy});
    return copy;
}

} // namespace

void replace(QSettings &suite, const QString &key, const QByteArray &data,
             const QByteArray &knownGood)
{
    SettingsFiles::writeSynchronized(suite, [&](QSettings &settings) {
        if (isUndecodable(settings.value(key), knownGood))
            keepCopy(settings);
        settings.setValue(key, data);
    });
}

QString keepCopyIfUndecodable(QSettings &suite, const QString &key)
{
    if (!isUndecodable(suite.value(key), {}))
        return {};
    // Looked at again under the lock: another process may have replaced it meanwhile.
    QString copy;
    SettingsFiles::writeSynchronized(suite, [&](QSettings &settings) {
        if (isUndecodable(settings.value(key), {}))
            copy = keepCopy(settings);
    });
    return copy;
}

} // namespace StoredListGuard
