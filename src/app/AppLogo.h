#pragma once

#include <QIcon>
#include <QRectF>

class QPainter;

// Telvane's own logo ("LogoAlone", an SVG resource): the launch ripple draws it, and it is the
// icon of the application and its windows.
class AppLogo {
public:
    static QString resourcePath();
    // The logo at the usual icon sizes, drawn from the SVG (no icon-engine plugin needed).
    static QIcon icon();
    // Draws the logo into `target`; false when the resource cannot be drawn.
    static bool paint(QPainter &painter, const QRectF &target);
};
