#include "DownloadFileNames.h"

#include <QDir>
#include <QFileInfo>

namespace DownloadFileNames {

QString plainName(const QString &suggested, const QString &fallback)
{
    QString name = suggested;
    name.replace(QLatin1Char('\\'), QLatin1Char('/'));
    name = name.section(QLatin1Char('/'), -1).trimmed();
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        return fallback;
    return name;
}

QString numbered(const QString &name, int n)
{
    const QString suffix = QStringLiteral(" (%1)").arg(n);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0)
        return name + suffix;
    return name.left(dot) + suffix + name.mid(dot);
}

QString partialFilePath(const QString &path)
{
    return path + QLatin1String(".download");
}

QString firstFreeName(const QString &folder, const QString &name)
{
    const QDir dir(folder);
    const auto isFree = [&dir](const QString &candidate) {
        const QString path = dir.filePath(candidate);
        // exists() follows links; a dangling link still takes the name.
        return !QFileInfo(path).exists() && !QFileInfo(path).isSymLink() &&
               !QFileInfo::exists(partialFilePath(path));
    };
    if (isFree(name))
        return name;
    for (int n = 1;; ++n) {
        const QString candidate = numbered(name, n);
        if (isFree(candidate))
            return candidate;
    }
}

} // namespace DownloadFileNames
