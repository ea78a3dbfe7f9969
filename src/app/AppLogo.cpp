#include "AppLogo.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// Resources of a static library must be registered by name, outside any namespace.
static void registerAppResources()
{
    Q_INIT_RESOURCE(app);
}

namespace {

QSvgRenderer &renderer()
{
    static const bool registered = (registerAppResources(), true);
    Q_UNUSED(registered);
    static QSvgRenderer logo(AppLogo::resourcePath());
    return logo;
}

} // namespace

QString AppLogo::resourcePath()
{
    return QStringLiteral(":/app/LogoAlone.svg");
}

QIcon AppLogo::icon()
{
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        if (!paint(painter, QRectF(0, 0, side, side)))
            return {};
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

bool AppLogo::paint(QPainter &painter, const QRectF &target)
{
    QSvgRenderer &logo = renderer();
    if (!logo.isValid())
        return false;
    logo.render(&painter, target);
    return true;
}
