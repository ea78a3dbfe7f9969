#include "FormDialog.h"

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
