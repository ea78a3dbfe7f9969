#pragma once

#include <QDialog>

class QPushButton;

// A dialog over a form's view model: the view model hears when the dialog first appears
// and when it closes, whichever way (a button, Escape, the window's close button), and the
// dialog closes when the view model says the form is done.
class FormDialog : public QDialog {
    Q_OBJECT

public:
    using QDialog::QDialog;

    void done(int result) override;

protected:
    // Once, when the dialog is first shown.
    virtual void formAppeared() = 0;
    // When the dialog closes; the view model's own close is then a no-op.
    virtual void formClosing() = 0;
    // Connect the view model's "closed" here.
    void formClosed();
    // The header on top, `body` scrolling beneath it, then "Cancel" and the confirming
    // button, which alone answers Return; "Cancel" (and Escape) rejects.
    void arrange(QWidget *header, QWidget *body, QPushButton *cancel, QPushButton *confirm);

    void showEvent(QShowEvent *event) override;

private:
    bool m_appeared = false;
    bool m_closing = false;
};
