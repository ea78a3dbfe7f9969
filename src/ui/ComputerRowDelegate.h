#pragma once

#include <QStyledItemDelegate>

// One computer in the sidebar: a dot in the colour of its health, the display name and,
// below it, "host:port". Rows have one height, so the list never measures them.
class ComputerRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
