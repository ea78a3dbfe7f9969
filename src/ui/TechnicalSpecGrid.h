#pragma once

#include "presentation/SpecPill.h"

#include <QList>
#include <QWidget>

class QGridLayout;
class SpecPillView;

// The technical pills in two columns, in the order given. It holds one pill view for every
// pill there can be, made once: new values, and pills appearing or going, only fill,
// show and hide them, so a statistics report never creates a widget.
class TechnicalSpecGrid : public QWidget {
    Q_OBJECT

public:
    explicit TechnicalSpecGrid(bool compact, QWidget *parent = nullptr);

    void setPills(const QList<SpecPill> &pills);
    const QList<SpecPill> &pills() const { return m_pills; }

private:
    QList<SpecPill> m_pills;
    QList<SpecPillView *> m_views;
};
