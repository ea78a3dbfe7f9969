#pragma once

#include <QStyledItemDelegate>

// Paints one log entry on one line: the time, the category in a small semibold font
// coloured by category, then the message, elided. Every row has the same height, so the
// list lays out 5000 rows without measuring them.
class LogEntryDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
