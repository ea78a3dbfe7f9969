#include "EditComputerDialog.h"

#include "OneLineLabel.h"
#include "FormWidgets.h"
#include "discovery/forms/EditComputerView.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

EditComputerDialog::EditComputerDialog(EditComputerView *view, QWidget *parent)
    : FormDialog(parent), m_view(view)
{
    view->setParent(this);
    setWindowTitle(tr("Edit Computer"));
    setWindowModality(Qt::WindowModal);

    auto *subtitle = new OneLineLabel(this);
    subtitle->setFullText(view->subtitle());

    // Basic Information.
    auto *basic = new QFormLayout;
    basic->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    QLineEdit *name = FormWidgets::addField(basic, tr("Computer Name (optional)"));
    auto *hostError = FormWidgets::errorLabel();
    QLineEdit *host = FormWidgets::addField(basic, tr("Remote IP Address"), {hostError});
    auto *portHint = new QLabel(tr("Default ZEKT port: 5905"));
    auto *portError = FormWidgets::errorLabel();
    QLineEdit *port = FormWidgets::addField(basic, tr("Port"), {portHint, portError});
    FormWidgets::setHint(port, portHint);

    // Authentication.
    auto *authentication = new QVBoxLayout;
    authentication->addWidget(FormWidgets::note(
        tr("Use the username and password of the logged-in account on the remote Mac.")));
    auto *credentials = new QFormLayout;
    credentials->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    auto *usernameError = FormWidgets::errorLabel();
    QLineEdit *username = FormWidgets::addField(credentials, tr("Username"), {usernameError});
    auto *passwordError = FormWidgets::errorLabel();
    QLineEdit *password = FormWidgets::addField(credentials, tr("Password"), {passwordError});
    password->setEchoMode(QLineEdit::Password);
    authentication->addLayout(credentials);

    // Security.
    auto *security = new QVBoxLayout;
    security->addWidget(
        FormWidgets::note(tr("ZEKT uses built-in encryption for all communications")));
    security->addWidget(FormWidgets::note(tr("No additional TLS configuration required")));

    // Additional Information.
    auto *additional = new QFormLayout;
    additional->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    QLineEdit *description = FormWidgets::addField(additional, tr("Description (optional)"));
    QLineEdit *tags = FormWidgets::addField(additional, tr("Tags (comma-separated)"));

    auto *body = new QWidget;
    auto *bodyLayout = new QVBoxLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->addWidget(section(tr("Basic Information"), basic));
    bodyLayout->addWidget(section(tr("Authentication"), authentication));
    bodyLayout->addWidget(section(tr("Security"), security));
    bodyLayout->addWidget(section(tr("Additional Information"), additional));
    bodyLayout->addStretch(1);
    auto *cancel = FormWidgets::button(tr("Cancel"), this);
    m_saveButton = FormWidgets::button(tr("Save Changes"), this);
    arrange(FormWidgets::header(tr("Edit Computer"), subtitle, this), body, cancel, m_saveButton);

    const struct {
        QLineEdit *edit;
        QString text;
        void (EditComputerView::*set)(const QString &);
    } fields[] = {
        {name, view->name(), &EditComputerView::setName},
        {host, view->host(), &EditComputerView::setHost},
        {port, view->port(), &EditComputerView::setPort},
        {username, view->username(), &EditComputerView::setUsername},
        {password, view->password(), &EditComputerView::setPassword},
        {description, view->description(), &EditComputerView::setDescription},
        {tags, view->tags(), &EditComputerView::setTags},
    };
    for (const auto &field : fields) {
        field.edit->setText(field.text);
        connect(field.edit, &QLineEdit::textEdited, m_view, field.set);
    }
    m_checkedFields = {{EditComputerView::hostKey, {host, hostError}},
                       {EditComputerView::portKey, {port, portError}},
                       {EditComputerView::usernameKey, {username, usernameError}},
                       {EditComputerView::passwordKey, {password, passwordError}}};

    connect(m_saveButton, &QPushButton::clicked, m_view, &EditComputerView::save);
    connect(m_view, &EditComputerView::validated, this, &EditComputerDialog::showValidation);
    connect(m_view, &EditComputerView::closed, this, &EditComputerDialog::formClosed);

    setMinimumSize(420, 380);
    FormWidgets::resizeToFit(this, {520, 640});
    name->setFocus();
}

QWidget *EditComputerDialog::section(const QString &title, QLayout *content)
{
    auto *box = new QGroupBox(title);
    box->setLayout(content);
    return box;
}

void EditComputerDialog::formAppeared()
{
    m_view->appear();
}

void EditComputerDialog::formClosing()
{
    m_view->cancel();
}

void EditComputerDialog::showValidation(const QString &key)
{
    const Field field = m_checkedFields.value(key);
    if (field.edit)
        FormWidgets::showError(field.error, field.edit, m_view->validationErrors().value(key));
    m_saveButton->setEnabled(m_view->isFormValid());
}
