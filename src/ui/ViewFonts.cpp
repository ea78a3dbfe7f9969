#include "ViewFonts.h"

namespace ViewFonts {

namespace {
QFont scaled(const QFont &base, double factor, QFont::Weight weight)
{
    QFont font = base;
    if (base.pointSizeF() > 0)
        font.setPointSizeF(base.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(base.pixelSize() * factor));
    font.setWeight(weight);
    return font;
}
} // namespace

QFont caption(const QFont &base)
{
    return scaled(base, 0.85, QFont::Normal);
}

QFont emphasized(const QFont &base)
{
    return scaled(base, 1.0, QFont::DemiBold);
}

QFont title(const QFont &base)
{
    return scaled(base, 1.15, QFont::DemiBold);
}

QFont pageTitle(const QFont &base)
{
    return scaled(base, 1.6, QFont::Bold);
}

} // namespace ViewFonts
