#include "LaunchAnimationOverlay.h"

#include "LaunchAnimationMetrics.h"
#include "LaunchRippleView.h"

#include <QVBoxLayout>

LaunchAnimationOverlay::LaunchAnimationOverlay(const QRect &area)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus |
                           Qt::NoDropShadowWindowHint),
      m_ripple(new LaunchRippleView(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setObjectName(QStringLiteral("LaunchAnimationOverlay"));
    setWindowTitle(tr("Telvane launch animation"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_ripple);
    setGeometry(area);

    m_completion.setSingleShot(true);
    m_completion.setInterval(LaunchAnimationMetrics::completionDelay);
    connect(&m_completion, &QTimer::timeout, this, &LaunchAnimationOverlay::completed);
}

void LaunchAnimationOverlay::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_completion.isActive())
        return;
    m_ripple->start();
    m_completion.start();
}
