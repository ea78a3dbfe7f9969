#pragma once

#include <QStyledItemDelegate>

// Draws a discovered server as two elided lines: its display text, and host:port smaller
// beneath, so two agents on one host can be told apart.
class DiscoveredServerDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    static QFont secondaryFont(const QFont &font);
};
