#include "LogEntryDelegate.h"

#include "ToneColors.h"
#include "ViewFonts.h"
#include "presentation/LogEntryRow.h"

#include <QApplication>
#include <QPainter>

namespace {

constexpr int padding = 4;
constexpr int gap = 10;
// A message longer than a line can show is cut before eliding, so a 10 kB entry costs
// no more to paint than a short one.
constexpr int longestShownMessage = 400;

QFont timeFont(const QFont &base)
{
    QFont font = base;
    font.setFamily(QStringLiteral("monospace"));
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace

void LogEntryDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);

    const LogEntryRow row = LogEntryRow::parse(index.data().toString());
    const bool selected = option.state & QStyle::State_Selected;
    const QPalette &palette = option.palette;
    const QColor text = palette.color(selected ? QPalette::HighlightedText : QPalette::Text);
    QRect rect = option.rect.adjusted(padding * 2, 0, -padding * 2, 0);

    painter->save();
    const QFont time = timeFont(option.font);
    painter->setFont(time);
    painter->setPen(selected ? text : ToneColors::color(Tone::secondary, palette));
    const int timeWidth = QFontMetrics(time).horizontalAdvance(QStringLiteral("00:00:00 PM"));
    painter->drawText(QRect(rect.x(), rect.y(), timeWidth, rect.height()),
                      Qt::AlignVCenter | Qt::AlignLeft, row.time);
    rect.setLeft(rect.left() + timeWidth + gap);

    const QFont category = ViewFonts::emphasized(ViewFonts::caption(option.font));
    painter->setFont(category);
    painter->setPen(selected ? text
                             : ToneColors::color(LogEntryRow::categoryTone(row.category), palette));
    const int categoryWidth =
        QFontMetrics(category).horizontalAdvance(QStringLiteral("PERSISTENCE")) + padding;
    painter->drawText(
        QRect(rect.x(), rect.y(), categoryWidth, rect.height()), Qt::AlignVCenter | Qt::AlignLeft,
        QFontMetrics(category).elidedText(row.category, Qt::ElideRight, categoryWidth));
    rect.setLeft(rect.left() + categoryWidth + gap);

    painter->setFont(option.font);
    painter->setPen(text);
    QString message = row.message.left(longestShownMessage);
    message.replace(QLatin1Char('\n'), QLatin1Char(' '));
    painter->drawText(rect, Qt::AlignVCenter | Qt::AlignLeft,
                      option.fontMetrics.elidedText(message, Qt::ElideRight, rect.width()));
    painter->restore();
}

QSize LogEntryDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {0, option.fontMetrics.height() + padding * 2};
}
