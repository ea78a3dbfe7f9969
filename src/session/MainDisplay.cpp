#include "MainDisplay.h"

#include <QGuiApplication>
#include <QScreen>

namespace MainDisplay {

quint32 identifier()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return 0;
    const QList<QScreen *> screens = QGuiApplication::screens();
    const qsizetype index = screens.indexOf(QGuiApplication::primaryScreen());
    return index < 0 ? 0 : quint32(index);
}

} // namespace MainDisplay
