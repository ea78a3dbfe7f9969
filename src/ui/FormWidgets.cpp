#include "FormWidgets.h"

#include <QApplication>
#include <QDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

namespace {

// Dark enough on the light and the usual dark palettes' bases to read as an error.
QColor errorColor(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() > 128 ? QColor(0xb0, 0x1e, 0x1e)
                                                           : QColor(0xff, 0x8a, 0x80);
}

constexpr char hintProperty[] = "telvaneHint";

} // namespace

void FormWidgets::setHint(QLineEdit *field, QLabel *hint)
{
    field->setProperty(hintProperty, hint->text());
    field->setAccessibleDescription(hint->text());
}

QWidget *FormWidgets::header(const QString &title, QLabel *text, QWidget *parent)
{
    auto *header = new QWidget(parent);
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *icon = new QLabel(header);
    QIcon computer = QIcon::fromTheme(QStringLiteral("computer"));
    if (computer.isNull())
        computer = header->style()->standardIcon(QStyle::SP_ComputerIcon);
    icon->setPixmap(computer.pixmap(40, 40));
    icon->setAlignment(Qt::AlignTop);
    layout->addWidget(icon);
    auto *texts = new QVBoxLayout;
    auto *heading = new QLabel(title, header);
    QFont font = heading->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.3);
    heading->setFont(font);
    heading->setTextFormat(Qt::PlainText);
    heading->setAccessibleName(title);
    texts->addWidget(heading);
    texts->addWidget(text);
    layout->addLayout(texts, 1);
    return header;
}

QLineEdit *FormWidgets::addField(QFormLayout *form, const QString &label,
                                 std::initializer_list<QWidget *> below)
{
    auto *field = new QLineEdit(form->parentWidget());
    field->setAccessibleName(label);
    auto *caption = new QLabel(label, form->parentWidget());
    caption->setBuddy(field);
    if (below.size() == 0) {
        form->addRow(caption, field);
        return field;
    }
    auto *box = new QWidget(form->parentWidget());
    auto *column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(field);
    for (QWidget *widget : below)
        column->addWidget(widget);
    form->addRow(caption, box);
    return field;
}

QLabel *FormWidgets::note(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel *FormWidgets::errorLabel(QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, errorColor(palette));
    label->setPalette(palette);
    label->hide();
    return label;
}

void FormWidgets::showError(QLabel *label, QLineEdit *field, const QString &message)
{
    label->setText(message);
    label->setVisible(!message.isEmpty());
    // Screen readers announce the field together with what is wrong with it, else with
    // its hint.
    field->setAccessibleDescription(message.isEmpty() ? field->property(hintProperty).toString()
                                                      : message);
}

QPushButton *FormWidgets::button(const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setAccessibleName(text);
    return button;
}

void FormWidgets::makeOnlyDefault(QDialog *dialog, QPushButton *defaultButton)
{
    for (QPushButton *button : dialog->findChildren<QPushButton *>())
        button->setAutoDefault(false);
    defaultButton->setDefault(true);
}

void FormWidgets::resizeToFit(QWidget *window, const QSize &preferred)
{
    const QWidget *anchor = window->parentWidget() ? window->parentWidget() : window;
    const QScreen *screen = anchor->screen();
    const QSize room = screen ? screen->availableSize() - QSize(40, 60) : preferred;
    window->resize(preferred.boundedTo(room).expandedTo(window->minimumSize()));
}

QString FormWidgets::oneLine(QString text)
{
    for (QChar &c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\t' || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return text;
}
