#pragma once

#include <QUuid>

class QWidget;

// How a view opens the add and edit forms, so views need not know the forms. The forms are
// window-modal dialogs over `parent`, opened with open(); the call returns at once.
class ComputerFormFactory {
public:
    virtual ~ComputerFormFactory() = default;

    virtual void openAddForm(QWidget *parent) = 0;
    // A computer that is gone by the time the form saves is left alone.
    virtual void openEditForm(const QUuid &computerId, QWidget *parent) = 0;
};
