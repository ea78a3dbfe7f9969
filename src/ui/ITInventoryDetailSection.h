#pragma once

#include "presentation/InventoryGroup.h"

#include <QList>
#include <QWidget>

class InventoryGroupView;
class QVBoxLayout;

// The IT inventory: its heading and the groups that have something to show.
class ITInventoryDetailSection : public QWidget {
    Q_OBJECT

public:
    explicit ITInventoryDetailSection(QWidget *parent = nullptr);

    void setGroups(const QList<InventoryGroup> &groups);

private:
    QVBoxLayout *m_layout;
    QList<InventoryGroupView *> m_groups;
};
