#pragma once

#include "presentation/SummaryTile.h"

#include <QWidget>

// One counter of the summary strip: its symbol and value in the tile's colour, the title
// beneath. Repaints only when the tile changes.
class SummaryTileView : public QWidget {
    Q_OBJECT

public:
    explicit SummaryTileView(QWidget *parent = nullptr);

    const SummaryTile &tile() const { return m_tile; }
    void setTile(const SummaryTile &tile);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    SummaryTile m_tile;
};
