#pragma once

#include "presentation/InventoryGroup.h"

#include <QList>
#include <QWidget>

class QGridLayout;
class QLabel;

// One group of the IT inventory: its heading and label-value rows. Row widgets are kept
// and reused; new ones are made only when a group has more rows than ever before.
class InventoryGroupView : public QWidget {
    Q_OBJECT

public:
    explicit InventoryGroupView(QWidget *parent = nullptr);

    void setGroup(const InventoryGroup &group);
    const InventoryGroup &group() const { return m_group; }

private:
    InventoryGroup m_group;
    QLabel *m_title;
    QGridLayout *m_rows;
    QList<std::pair<QLabel *, QLabel *>> m_rowLabels;
};
