#include "TintedIconEngine.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace {
constexpr qreal disabledOpacity = 0.35;
}

TintedIconEngine::TintedIconEngine(QIcon source, QColor color)
    : m_source(std::move(source)), m_color(std::move(color))
{
}

QColor TintedIconEngine::colorFor(QIcon::Mode mode) const
{
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Selected)
        return palette.color(QPalette::HighlightedText);
    QColor color = m_color.isValid() ? m_color : palette.color(QPalette::WindowText);
    if (mode == QIcon::Disabled)
        color.setAlphaF(color.alphaF() * disabledOpacity);
    return color;
}

QPixmap TintedIconEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                                       qreal scale)
{
    const QColor color = colorFor(mode);
    const QString cacheKey = QStringLiteral("%1x%2@%3/%4")
                                 .arg(size.width())
                                 .arg(size.height())
                                 .arg(scale)
                                 .arg(color.rgba(), 0, 16);
    if (const auto it = m_cache.constFind(cacheKey); it != m_cache.cend())
        return *it;
    const QSize pixels = size * scale;
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    {
        QPainter painter(&pixmap);
        m_source.paint(&painter, QRect(QPoint(), pixels), Qt::AlignCenter, QIcon::Normal, state);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
    }
    pixmap.setDevicePixelRatio(scale);
    if (m_cache.size() > 64) // sizes and palettes come and go; never grow without bound
        m_cache.clear();
    m_cache.insert(cacheKey, pixmap);
    return pixmap;
}

QPixmap TintedIconEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state)
{
    return scaledPixmap(size, mode, state, 1.0);
}

void TintedIconEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode,
                             QIcon::State state)
{
    const qreal scale = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    painter->drawPixmap(rect, scaledPixmap(rect.size(), mode, state, scale));
}

QSize TintedIconEngine::actualSize(const QSize &size, QIcon::Mode, QIcon::State)
{
    return size; // drawings scale to any size
}

QIconEngine *TintedIconEngine::clone() const
{
    return new TintedIconEngine(m_source, m_color);
}

QString TintedIconEngine::key() const
{
    return QStringLiteral("TintedIconEngine");
}

bool TintedIconEngine::isNull()
{
    return m_source.isNull();
}
