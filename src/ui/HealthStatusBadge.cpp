#include "HealthStatusBadge.h"

#include "ToneColors.h"
#include "ViewFonts.h"

#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int paddingX = 8;
constexpr int paddingY = 2;
constexpr double backgroundOpacity = 0.12;
} // namespace

HealthStatusBadge::HealthStatusBadge(QWidget *parent) : QWidget(parent)
{
    setFont(ViewFonts::emphasized(ViewFonts::caption(font())));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void HealthStatusBadge::setStatus(const HealthStatus &status)
{
    if (status == m_status)
        return;
    const bool resized = status.text != m_status.text;
    m_status = status;
    setAccessibleName(status.text);
    if (resized)
        updateGeometry();
    update();
}

QSize HealthStatusBadge::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    // Wide enough for any of the four texts, so a change of state never moves its row.
    int widest = 0;
    for (const auto &[connected, connecting, error] : {std::tuple{true, false, false},
                                                       {false, true, false},
                                                       {false, false, true},
                                                       {false, false, false}})
        widest = std::max(
            widest, metrics.horizontalAdvance(HealthStatus::of(connected, connecting, error).text));
    return {widest + 2 * paddingX, metrics.height() + 2 * paddingY};
}

void HealthStatusBadge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor color = ToneColors::color(m_status.tone, palette());
    const int textWidth = fontMetrics().horizontalAdvance(m_status.text) + 2 * paddingX;
    const QRectF capsule(width() - textWidth, 0, textWidth, height());
    QColor faint = color;
    faint.setAlphaF(backgroundOpacity);
    QPainterPath path;
    path.addRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
    painter.fillPath(path, faint);
    painter.setPen(color);
    painter.drawText(capsule, Qt::AlignCenter, m_status.text);
}
