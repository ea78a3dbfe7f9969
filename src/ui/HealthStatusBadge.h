#pragma once

#include "presentation/HealthStatus.h"

#include <QWidget>

// A computer's health as a small capsule: the text in its colour over the same colour,
// faint. Repaints only when the status changes.
class HealthStatusBadge : public QWidget {
    Q_OBJECT

public:
    explicit HealthStatusBadge(QWidget *parent = nullptr);

    const HealthStatus &status() const { return m_status; }
    void setStatus(const HealthStatus &status);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    HealthStatus m_status;
};
