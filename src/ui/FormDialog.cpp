#include "FormDialog.h"

#include "FormWidgets.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

void FormDialog::done(int result)
{
    m_closing = true;
    formClosing();
    QDialog::done(result);
}

void FormDialog::formClosed()
{
    if (!m_closing)
        accept();
}

void FormDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (!m_appeared) {
        m_appeared = true;
        formAppeared();
    }
}

void FormDialog::arrange(QWidget *header, QWidget *body, QPushButton *cancel, QPushButton *confirm)
{
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(body);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus); // Tab goes from the last field to the buttons
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(confirm);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(header);
    layout->addWidget(scroll, 1);
    layout->addLayout(buttons);
    FormWidgets::makeOnlyDefault(this, confirm);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}
