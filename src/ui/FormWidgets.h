#pragma once

#include <QString>
#include <initializer_list>

class QAbstractButton;
class QDialog;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSize;
class QWidget;

// The pieces the add and edit dialogs share.
struct FormWidgets {
    // Icon, title and a line under it.
    static QWidget *header(const QString &title, QLabel *text, QWidget *parent);
    // A line edit labelled `label` in `form` (the label is its buddy and accessible name);
    // `below` sit under the field (hints, an error).
    static QLineEdit *addField(QFormLayout *form, const QString &label,
                               std::initializer_list<QWidget *> below = {});
    // A word-wrapped explanation.
    static QLabel *note(const QString &text, QWidget *parent = nullptr);
    // An error shown under a field, hidden while empty.
    static QLabel *errorLabel(QWidget *parent = nullptr);
    static void showError(QLabel *label, QLineEdit *field, const QString &message);
    // `hint` explains `field`; screen readers hear it while the field has no error.
    static void setHint(QLineEdit *field, QLabel *hint);
    static QPushButton *button(const QString &text, QWidget *parent = nullptr);
    // Return presses `defaultButton` from every field and button: no other button takes
    // the default role when it has focus.
    static void makeOnlyDefault(QDialog *dialog, QPushButton *defaultButton);
    // `preferred`, or less where the screen is smaller.
    static void resizeToFit(QWidget *window, const QSize &preferred);
    // Line breaks and tabs as blanks, for texts shown on one line.
    static QString oneLine(QString text);
};
