#include "QtAlertPresenter.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

const char *const indexProperty = "alertButtonIndex";

QMessageBox::Icon iconOf(Alert::Style style)
{
    switch (style) {
    case Alert::Style::warning:
        return QMessageBox::Warning;
    case Alert::Style::critical:
        return QMessageBox::Critical;
    case Alert::Style::informational:
        break;
    }
    return QMessageBox::Information;
}

QMessageBox::ButtonRole roleOf(const Alert &alert, int index)
{
    if (index == alert.destructiveButton)
        return QMessageBox::DestructiveRole;
    if (index == alert.cancelButton)
        return QMessageBox::RejectRole;
    return QMessageBox::ActionRole;
}

// The default button: the first, unless a button is destructive; then the cancel button,
// else the first that is not destructive, so Return never destroys anything.
int defaultIndex(const Alert &alert)
{
    if (alert.destructiveButton == Alert::none)
        return 0;
    if (alert.cancelButton != Alert::none)
        return alert.cancelButton;
    return alert.destructiveButton == 0 ? 1 : 0;
}

void fill(QMessageBox &box, const Alert &alert)
{
    box.setIcon(iconOf(alert.style));
    box.setWindowTitle(alert.title);
    box.setText(alert.title);
    box.setInformativeText(alert.text);
    // Paths in alerts are there to be copied.
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const int defaultButton = defaultIndex(alert);
    const int escapeButton =
        alert.cancelButton != Alert::none ? alert.cancelButton : int(alert.buttons.size()) - 1;
    for (int i = 0; i < alert.buttons.size(); ++i) {
        QPushButton *button = box.addButton(alert.buttons[i], roleOf(alert, i));
        button->setProperty(indexProperty, i);
        if (i == defaultButton)
            box.setDefaultButton(button);
        if (i == escapeButton)
            box.setEscapeButton(button);
    }
}

// Aborted or closed boxes have no clicked button.
int indexOfClicked(const QMessageBox &box)
{
    const QAbstractButton *clicked = box.clickedButton();
    return clicked ? clicked->property(indexProperty).toInt() : AlertPresenter::closed;
}

} // namespace

int QtAlertPresenter::runModal(const Alert &alert, Handle handle)
{
    if (m_abortedEarly.remove(handle))
        return closed;
    QMessageBox box;
    fill(box, alert);
    m_running.insert(handle, &box);
    box.exec();
    m_running.remove(handle);
    return indexOfClicked(box);
}

void QtAlertPresenter::abortModal(Handle handle)
{
    const QPointer<QMessageBox> box = m_running.value(handle);
    if (box)
        box->done(QDialog::Rejected);
    else
        m_abortedEarly.insert(handle);
}

void QtAlertPresenter::show(const Alert &alert, Completion completion)
{
    auto *box = new QMessageBox;
    fill(*box, alert);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::ApplicationModal);
    QObject::connect(box, &QMessageBox::finished, box,
                     [box, completion] { completion(indexOfClicked(*box)); });
    box->show();
}
