#pragma once

#include "presentation/ComputerCardContent.h"

#include <QFrame>
#include <QUuid>

class DashboardScreenPreview;
class ElidedLabel;
class HealthStatusBadge;
class MetricGaugeView;
class QLabel;
class TechnicalSpecGrid;

// One computer on the dashboard: header with health badge, the error while offline,
// gauges and compact pills (or a placeholder without statistics) and the screen preview.
// Every part is made once; a new content updates only the parts that differ, so a report
// that changes nothing shown repaints nothing. Clicking it, or Return or Space while it
// has focus, selects it.
class ComputerCardView : public QFrame {
    Q_OBJECT

public:
    explicit ComputerCardView(const QUuid &id, QWidget *parent = nullptr);

    QUuid computerId() const { return m_id; }
    const ComputerCardContent &content() const { return m_content; }
    void setContent(const ComputerCardContent &content);

Q_SIGNALS:
    void selected(const QUuid &id);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void apply(const ComputerCardContent &content, bool initial);

    QUuid m_id;
    ComputerCardContent m_content;
    ElidedLabel *m_title;
    ElidedLabel *m_subtitle;
    HealthStatusBadge *m_badge;
    ElidedLabel *m_error;
    QWidget *m_gauges;
    QList<MetricGaugeView *> m_gaugeViews;
    TechnicalSpecGrid *m_pills;
    QWidget *m_placeholder;
    ElidedLabel *m_lastConnected;
    DashboardScreenPreview *m_preview;
};
