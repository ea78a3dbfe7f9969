#pragma once

#include "FormDialog.h"

class AddComputerView;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListView;
class QModelIndex;
class QPushButton;
class QStackedWidget;

// The add form's window: arranges AddComputerView and forwards to it. Window-modal, opened
// with open(); Return presses "Add Now" from every field, Escape presses "Cancel".
class AddComputerDialog : public FormDialog {
    Q_OBJECT

public:
    // Takes `view` as its child.
    AddComputerDialog(AddComputerView *view, QWidget *parent = nullptr);

    AddComputerView &view() const { return *m_view; }

protected:
    void formAppeared() override;
    void formClosing() override;

private:
    QWidget *buildDiscoveredSection();
    QWidget *buildManualSection();
    QWidget *buildAuthenticationSection();
    void refresh();
    void followSelection();
    void currentRowChanged(const QModelIndex &current);
    void addNow();

    AddComputerView *m_view;
    QLabel *m_caption = nullptr;
    QWidget *m_headSearching = nullptr;
    QPushButton *m_headSearchAgain = nullptr;
    QStackedWidget *m_pages = nullptr;
    QListView *m_list = nullptr;
    QPushButton *m_emptySearchAgain = nullptr;
    QPushButton *m_manualButton = nullptr;
    QGroupBox *m_manualSection = nullptr;
    QLineEdit *m_nameEdit = nullptr;
    QLineEdit *m_hostEdit = nullptr;
    QLineEdit *m_portEdit = nullptr;
    QLineEdit *m_usernameEdit = nullptr;
    QLineEdit *m_passwordEdit = nullptr;
    QPushButton *m_addButton = nullptr;
    bool m_followingView = false; // the list's current row is being set from the view model
};
