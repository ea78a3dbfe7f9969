#include "SymbolIcon.h"

#include "TintedIconEngine.h"
#include "platform/IconTable.h"

#include <QHash>
#include <QLabel>
#include <QSet>
#include <QtDebug>

// Resources of a static library must be registered by name, outside any namespace.
static void registerSymbolResources()
{
    Q_INIT_RESOURCE(symbols);
}

namespace {

QIcon sourceIcon(QStringView symbol)
{
    static QHash<QString, QIcon> cache;
    if (const auto it = cache.constFind(symbol.toString()); it != cache.cend())
        return *it;
    static const bool registered = (registerSymbolResources(), true);
    Q_UNUSED(registered);
    QIcon icon;
    if (const IconTable::Entry *entry = IconTable::find(symbol)) {
        // Only symbolic theme icons are monochrome, so only they can take a role's colour.
        const QString symbolic = QLatin1String(entry->themeName) + QStringLiteral("-symbolic");
        icon = QIcon::hasThemeIcon(symbolic) ? QIcon::fromTheme(symbolic)
                                             : QIcon(QLatin1String(entry->fallback));
    } else {
        static QSet<QString> warned;
        if (!warned.contains(symbol.toString())) {
            warned.insert(symbol.toString());
            qWarning("SymbolIcon: \"%s\" is not in the icon table", qPrintable(symbol.toString()));
        }
    }
    cache.insert(symbol.toString(), icon);
    return icon;
}

} // namespace

QIcon SymbolIcon::icon(QStringView symbol, const QColor &color)
{
    const QIcon source = sourceIcon(symbol);
    if (source.isNull())
        return {};
    return QIcon(new TintedIconEngine(source, color));
}

QLabel *SymbolIcon::label(QStringView symbol, int size, const QColor &color,
                          const QString &accessibleName, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setPixmap(icon(symbol, color).pixmap(size, size));
    label->setAccessibleName(accessibleName);
    return label;
}
