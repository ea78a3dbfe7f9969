#pragma once

#include <QColor>
#include <QHash>
#include <QIcon>
#include <QIconEngine>

// Draws a monochrome icon in one colour: symbols take the colour of their role (a green
// check, an orange warning) whatever colour the drawing or the theme gave them. Without a
// colour, the application palette's text colour at paint time, so symbols on buttons and
// labels follow the palette. Disabled icons are faded.
class TintedIconEngine : public QIconEngine {
public:
    TintedIconEngine(QIcon source, QColor color);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QIconEngine *clone() const override;
    QString key() const override;
    bool isNull() override;

private:
    QColor colorFor(QIcon::Mode mode) const;

    QIcon m_source;
    QColor m_color;
    QHash<QString, QPixmap> m_cache;
};
