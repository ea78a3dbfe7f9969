#include "ComputerRowDelegate.h"

#include "ToneColors.h"
#include "ViewFonts.h"
#include "presentation/HealthStatus.h"
#include "state/ComputerListModel.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int padding = 6;
constexpr int dotSize = 8;

} // namespace

void ComputerRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    background.icon = QIcon();
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    const HealthStatus health =
        HealthStatus::of(index.data(ComputerListModel::IsConnectedRole).toBool(),
                         index.data(ComputerListModel::IsConnectingRole).toBool(),
                         !index.data(ComputerListModel::LastErrorRole).isNull());
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette &palette = option.palette;
    const QRect rect = option.rect.adjusted(padding * 2, padding, -padding, -padding);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ToneColors::color(health.tone, palette));
    painter->drawEllipse(QRect(rect.x(), rect.center().y() - dotSize / 2, dotSize, dotSize));

    const QRect text = rect.adjusted(dotSize + padding * 2, 0, 0, 0);
    const QFont nameFont = ViewFonts::emphasized(option.font);
    const QFont addressFont = ViewFonts::caption(option.font);
    const int nameHeight = QFontMetrics(nameFont).height();
    painter->setFont(nameFont);
    painter->setPen(palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(
        QRect(text.x(), text.y(), text.width(), nameHeight), Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(nameFont).elidedText(index.data().toString(), Qt::ElideRight, text.width()));
    painter->setFont(addressFont);
    if (!selected)
        painter->setPen(ToneColors::color(Tone::secondary, palette));
    painter->drawText(
        QRect(text.x(), text.y() + nameHeight, text.width(), text.height() - nameHeight),
        Qt::AlignLeft | Qt::AlignTop,
        QFontMetrics(addressFont)
            .elidedText(index.data(ComputerListModel::AddressRole).toString(), Qt::ElideMiddle,
                        text.width()));
    painter->restore();
}

QSize ComputerRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {0, QFontMetrics(ViewFonts::emphasized(option.font)).height() +
                   QFontMetrics(ViewFonts::caption(option.font)).height() + padding * 2};
}
