#include "LaunchRippleView.h"

#include "AppLogo.h"

#include <QPainter>
#include <QParallelAnimationGroup>
#include <QPauseAnimation>
#include <QSequentialAnimationGroup>
#include <QVariantAnimation>

namespace {

QVariantAnimation *movement(qreal from, qreal to, int duration, QObject *parent,
                            std::function<void(qreal)> apply)
{
    auto *animation = new QVariantAnimation(parent);
    animation->setStartValue(from);
    animation->setEndValue(to);
    animation->setDuration(duration);
    animation->setEasingCurve(LaunchAnimationMetrics::easeOut());
    QObject::connect(animation, &QVariantAnimation::valueChanged, parent,
                     [apply = std::move(apply)](const QVariant &value) { apply(value.toReal()); });
    return animation;
}

} // namespace

LaunchRippleView::LaunchRippleView(QWidget *parent)
    : QWidget(parent), m_animation(new QParallelAnimationGroup(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);

    const auto repaintWith = [this](qreal *field) {
        return [this, field](qreal value) {
            *field = value;
            update();
        };
    };
    m_animation->addAnimation(movement(LaunchAnimationMetrics::logoStartScale, 1,
                                       LaunchAnimationMetrics::logoScaleDuration, this,
                                       repaintWith(&m_logoScale)));
    m_animation->addAnimation(movement(1, LaunchAnimationMetrics().expansionScale,
                                       LaunchAnimationMetrics::ringExpansionDuration, this,
                                       repaintWith(&m_ringScale)));
    auto *fade = new QSequentialAnimationGroup(this);
    fade->addPause(LaunchAnimationMetrics::logoFadeDelay);
    fade->addAnimation(movement(1, 0, LaunchAnimationMetrics::logoFadeDuration, this,
                                repaintWith(&m_logoOpacity)));
    m_animation->addAnimation(fade);
}

void LaunchRippleView::start()
{
    m_animation->stop();
    m_animation->start();
}

QAbstractAnimation *LaunchRippleView::animation() const
{
    return m_animation;
}

LaunchAnimationMetrics LaunchRippleView::metrics() const
{
    return LaunchAnimationMetrics::forScreenSize(QSizeF(size()));
}

void LaunchRippleView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();

    const LaunchAnimationMetrics sizes = metrics();
    const qreal ringRadius = sizes.ringDiameter * m_ringScale / 2;
    QPen ring(LaunchAnimationMetrics::ringColor(), sizes.strokeWidth);
    painter.setPen(ring);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(centre, ringRadius, ringRadius);

    if (m_logoOpacity <= 0)
        return;
    const qreal side = LaunchAnimationMetrics::logoSide * m_logoScale;
    painter.setOpacity(m_logoOpacity);
    AppLogo::paint(painter, QRectF(centre.x() - side / 2, centre.y() - side / 2, side, side));
}
