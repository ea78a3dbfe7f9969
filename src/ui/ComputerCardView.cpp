#include "ComputerCardView.h"

#include "DashboardScreenPreview.h"
#include "ElidedLabel.h"
#include "HealthStatusBadge.h"
#include "MetricGaugeView.h"
#include "RoundedBox.h"
#include "SymbolIcon.h"
#include "TechnicalSpecGrid.h"
#include "ToneColors.h"
#include "ViewFonts.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace {
constexpr int radius = 12;
constexpr int previewHeight = 150;
} // namespace

ComputerCardView::ComputerCardView(const QUuid &id, QWidget *parent)
    : QFrame(parent), m_id(id), m_title(new ElidedLabel(this)), m_subtitle(new ElidedLabel(this)),
      m_badge(new HealthStatusBadge(this)), m_error(new ElidedLabel(this)),
      m_gauges(new QWidget(this)), m_pills(new TechnicalSpecGrid(true, this)),
      m_placeholder(new QWidget(this)), m_lastConnected(new ElidedLabel(m_placeholder)),
      m_preview(new DashboardScreenPreview(this))
{
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    const QColor secondary = ToneColors::color(Tone::secondary, palette());

    m_title->setFont(ViewFonts::title(font()));
    m_subtitle->setFont(ViewFonts::caption(font()));
    m_subtitle->setColor(secondary);
    const int chevronSize = fontMetrics().height();
    QLabel *chevron =
        SymbolIcon::label(u"chevron.right", chevronSize, secondary, tr("Show details"), this);
    auto *names = new QVBoxLayout;
    names->setSpacing(0);
    names->addWidget(m_title);
    names->addWidget(m_subtitle);
    auto *header = new QHBoxLayout;
    header->addLayout(names, 1);
    header->addWidget(m_badge, 0, Qt::AlignTop);
    header->addWidget(chevron, 0, Qt::AlignTop);

    m_error->setFont(ViewFonts::caption(font()));
    m_error->setColor(ToneColors::color(Tone::red, palette()));

    auto *gauges = new QHBoxLayout(m_gauges);
    gauges->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        auto *gauge = new MetricGaugeView(m_gauges);
        gauge->setBackgroundRole(QPalette::Base); // the card's
        gauges->addWidget(gauge);
        m_gaugeViews.append(gauge);
    }

    QLabel *placeholderSymbol =
        SymbolIcon::label(u"chart.bar.doc.horizontal", chevronSize * 2, secondary,
                          tr("No technical specs"), m_placeholder);
    placeholderSymbol->setAlignment(Qt::AlignCenter);
    auto *placeholderText =
        new QLabel(tr("Connect to collect live technical specs"), m_placeholder);
    placeholderText->setAlignment(Qt::AlignCenter);
    placeholderText->setWordWrap(true);
    m_lastConnected->setFont(ViewFonts::caption(font()));
    m_lastConnected->setColor(secondary);
    m_lastConnected->setAlignment(Qt::AlignCenter);
    auto *placeholder = new QVBoxLayout(m_placeholder);
    placeholder->setContentsMargins(0, 8, 0, 8);
    placeholder->addWidget(placeholderSymbol);
    placeholder->addWidget(placeholderText);
    placeholder->addWidget(m_lastConnected);

    m_preview->setImageHeight(previewHeight);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 12, 14, 14);
    layout->setSpacing(10);
    layout->addLayout(header);
    layout->addWidget(m_error);
    layout->addWidget(m_gauges);
    layout->addWidget(m_pills);
    layout->addWidget(m_placeholder);
    layout->addWidget(m_preview);
    layout->addStretch();
    apply(m_content, true);
}

void ComputerCardView::setContent(const ComputerCardContent &content)
{
    if (content == m_content)
        return;
    apply(content, false);
}

void ComputerCardView::apply(const ComputerCardContent &content, bool initial)
{
    const ComputerCardContent &old = m_content;
    if (initial || content.title != old.title || content.subtitle != old.subtitle ||
        content.badge != old.badge) {
        m_title->setText(content.title);
        m_subtitle->setText(content.subtitle);
        m_badge->setStatus(content.badge);
        setAccessibleName(content.title);
        setAccessibleDescription(tr("%1, %2").arg(content.badge.text, content.subtitle));
    }
    m_error->setText(content.errorText.value_or(QString()));
    m_error->setVisible(content.errorText.has_value());

    for (qsizetype i = 0; i < m_gaugeViews.size() && i < content.gauges.size(); ++i)
        m_gaugeViews[i]->setGauge(content.gauges[i]);
    m_gauges->setVisible(!content.gauges.isEmpty());
    m_pills->setPills(content.pills);
    m_pills->setVisible(!content.pills.isEmpty());

    m_lastConnected->setText(content.lastConnectedText);
    m_lastConnected->setVisible(!content.lastConnectedText.isEmpty());
    m_placeholder->setVisible(content.showPlaceholder);

    if (content.showPreview) {
        m_preview->setConnected(content.isConnected);
        m_preview->setThumbnail(content.thumbnail);
    }
    m_preview->setVisible(content.showPreview);
    m_content = content;
}

void ComputerCardView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT selected(m_id);
    QFrame::mouseReleaseEvent(event);
}

void ComputerCardView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Q_EMIT selected(m_id);
        return;
    default:
        QFrame::keyPressEvent(event);
    }
}

void ComputerCardView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const bool focused = hasFocus();
    RoundedBox::paint(painter, rect(), radius, palette().color(QPalette::Base),
                      palette().color(focused ? QPalette::Highlight : QPalette::Mid),
                      focused ? 2 : 1);
}

void ComputerCardView::focusInEvent(QFocusEvent *event)
{
    update();
    QFrame::focusInEvent(event);
}

void ComputerCardView::focusOutEvent(QFocusEvent *event)
{
    update();
    QFrame::focusOutEvent(event);
}
