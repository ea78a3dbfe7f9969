#pragma once

#include <QColor>
#include <QIcon>
#include <QStringView>

class QLabel;
class QWidget;

// The icon of a symbol of the icon table: the icon theme's symbolic variant when the theme
// has one, else the fallback drawn for Telvane, drawn in `color` (by default the palette's
// text colour). A symbol missing from the table gives an empty icon and one warning.
// Main thread only.
class SymbolIcon {
public:
    static QIcon icon(QStringView symbol, const QColor &color = QColor());
    // A label showing the symbol alone; `accessibleName` says what it stands for.
    static QLabel *label(QStringView symbol, int size, const QColor &color,
                         const QString &accessibleName, QWidget *parent);
};
