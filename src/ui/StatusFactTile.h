#pragma once

#include "presentation/FactTile.h"

#include <QWidget>

class ElidedLabel;

// One fact of the detail's status page: its title over its value.
class StatusFactTile : public QWidget {
    Q_OBJECT

public:
    explicit StatusFactTile(QWidget *parent = nullptr);

    void setFact(const FactTile &fact);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ElidedLabel *m_title;
    ElidedLabel *m_value;
};
