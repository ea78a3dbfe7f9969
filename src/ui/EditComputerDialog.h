#pragma once

#include "FormDialog.h"

#include <QHash>

class EditComputerView;
class QLabel;
class QLineEdit;
class QPushButton;

// The edit form's window: arranges EditComputerView and forwards to it, with each
// validation message under its field. Window-modal, opened with open(); Return presses
// "Save Changes" (while the form is valid), Escape presses "Cancel".
class EditComputerDialog : public FormDialog {
    Q_OBJECT

public:
    // Takes `view` as its child.
    EditComputerDialog(EditComputerView *view, QWidget *parent = nullptr);

    EditComputerView &view() const { return *m_view; }

protected:
    void formAppeared() override;
    void formClosing() override;

private:
    struct Field {
        QLineEdit *edit;
        QLabel *error;
    };

    QWidget *section(const QString &title, QLayout *content);
    void showValidation(const QString &key);

    EditComputerView *m_view;
    QHash<QString, Field> m_checkedFields;
    QPushButton *m_saveButton = nullptr;
};
