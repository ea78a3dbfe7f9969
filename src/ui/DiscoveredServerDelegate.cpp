#include "DiscoveredServerDelegate.h"

#include "FormWidgets.h"
#include "discovery/forms/DiscoveredServerListModel.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int padding = 6;

QColor mixed(const QColor &a, const QColor &b, double share)
{
    return QColor::fromRgbF(float(a.redF() * share + b.redF() * (1 - share)),
                            float(a.greenF() * share + b.greenF() * (1 - share)),
                            float(a.blueF() * share + b.blueF() * (1 - share)));
}

} // namespace

QFont DiscoveredServerDelegate::secondaryFont(const QFont &font)
{
    QFont smaller = font;
    smaller.setPointSizeF(font.pointSizeF() * 0.88);
    return smaller;
}

void DiscoveredServerDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    const QWidget *widget = opt.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    opt.text.clear();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, painter, widget);

    const bool selected = opt.state & QStyle::State_Selected;
    const QPalette::ColorGroup group =
        opt.state & QStyle::State_Enabled ? QPalette::Normal : QPalette::Disabled;
    const QColor text =
        opt.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text);
    const QColor background =
        opt.palette.color(group, selected ? QPalette::Highlight : QPalette::Base);
    const QRect area = opt.rect.adjusted(padding, padding / 2, -padding, -padding / 2);
    const QFont small = secondaryFont(opt.font);
    const QFontMetrics primaryMetrics(opt.font);
    const QFontMetrics secondaryMetrics(small);

    painter->save();
    painter->setFont(opt.font);
    painter->setPen(text);
    const QString primary = primaryMetrics.elidedText(
        FormWidgets::oneLine(index.data(Qt::DisplayRole).toString()), Qt::ElideRight, area.width());
    painter->drawText(QRect(area.left(), area.top(), area.width(), primaryMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter, primary);
    painter->setFont(small);
    painter->setPen(mixed(text, background, 0.7));
    const QString secondary = secondaryMetrics.elidedText(
        FormWidgets::oneLine(index.data(DiscoveredServerListModel::AddressRole).toString()),
        Qt::ElideMiddle, area.width());
    painter->drawText(QRect(area.left(), area.top() + primaryMetrics.height(), area.width(),
                            secondaryMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter, secondary);
    painter->restore();
}

QSize DiscoveredServerDelegate::sizeHint(const QStyleOptionViewItem &option,
                                         const QModelIndex &) const
{
    const QFontMetrics primary(option.font);
    const QFontMetrics secondary(secondaryFont(option.font));
    return {primary.averageCharWidth() * 30, primary.height() + secondary.height() + padding};
}
