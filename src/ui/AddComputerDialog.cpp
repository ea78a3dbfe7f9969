#include "AddComputerDialog.h"

#include "DiscoveredServerDelegate.h"
#include "FormWidgets.h"
#include "discovery/forms/AddComputerView.h"
#include "discovery/forms/DiscoveredServerListModel.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

enum Page { rowsPageIndex, searchingPageIndex, nothingFoundPageIndex };

// An indeterminate progress bar small enough to sit beside a line of text.
QProgressBar *busyIndicator(QWidget *parent, int width)
{
    auto *bar = new QProgressBar(parent);
    bar->setRange(0, 0);
    bar->setTextVisible(false);
    bar->setFixedSize(width, 8);
    bar->setAccessibleName(AddComputerView::searchingText());
    return bar;
}

void setTextIfChanged(QLineEdit *field, const QString &text)
{
    if (field->text() != text)
        field->setText(text);
}

} // namespace

AddComputerDialog::AddComputerDialog(AddComputerView *view, QWidget *parent)
    : FormDialog(parent), m_view(view)
{
    view->setParent(this);
    setWindowTitle(tr("Add Remote Computer or Server"));
    setWindowModality(Qt::WindowModal);

    auto *note = FormWidgets::note(tr("TelvaneAgent background app should be installed and "
                                      "configured on the remote configuration (freeware)"),
                                   this);
    auto *body = new QWidget;
    auto *bodyLayout = new QVBoxLayout(body);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->addWidget(buildDiscoveredSection(), 1);
    bodyLayout->addWidget(buildManualSection());
    bodyLayout->addWidget(buildAuthenticationSection());
    auto *cancel = FormWidgets::button(tr("Cancel"), this);
    m_addButton = FormWidgets::button(tr("Add Now"), this);
    arrange(FormWidgets::header(tr("Add Remote Computer or Server"), note, this), body, cancel,
            m_addButton);
    connect(m_addButton, &QPushButton::clicked, this, &AddComputerDialog::addNow);
    connect(m_view, &AddComputerView::changed, this, &AddComputerDialog::refresh);
    connect(m_view, &AddComputerView::closed, this, &AddComputerDialog::formClosed);

    setMinimumSize(440, 420);
    FormWidgets::resizeToFit(this, {560, 640});
    m_usernameEdit->setFocus();
    refresh();
}

QWidget *AddComputerDialog::buildDiscoveredSection()
{
    auto *section = new QWidget;
    auto *layout = new QVBoxLayout(section);
    layout->setContentsMargins(0, 0, 0, 0);

    auto *head = new QHBoxLayout;
    m_caption = new QLabel(AddComputerView::listCaption(), section);
    m_caption->setWordWrap(true);
    head->addWidget(m_caption, 1);
    m_headSearching = new QWidget(section);
    auto *searching = new QHBoxLayout(m_headSearching);
    searching->setContentsMargins(0, 0, 0, 0);
    searching->addWidget(busyIndicator(m_headSearching, 40));
    searching->addWidget(new QLabel(AddComputerView::searchingText(), m_headSearching));
    head->addWidget(m_headSearching);
    m_headSearchAgain = FormWidgets::button(tr("Search again"), section);
    head->addWidget(m_headSearchAgain);
    layout->addLayout(head);

    m_pages = new QStackedWidget(section);
    m_pages->setFrameShape(QFrame::StyledPanel); // one frame around the list and its notices
    m_list = new QListView(m_pages);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setAccessibleName(AddComputerView::listCaption());
    m_list->setItemDelegate(new DiscoveredServerDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumHeight(120);
    // Connected before the view's own handlers: a removed current row moves the view's
    // current index, which must not pick the neighbouring server.
    DiscoveredServerListModel *rows = &m_view->rows();
    connect(rows, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this] { m_followingView = true; });
    connect(rows, &QAbstractItemModel::rowsRemoved, this, [this] {
        m_followingView = false;
        followSelection();
    });
    m_list->setModel(rows);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &AddComputerDialog::currentRowChanged);
    m_pages->insertWidget(rowsPageIndex, m_list);

    auto *searchingPage = new QWidget(m_pages);
    auto *searchingLayout = new QVBoxLayout(searchingPage);
    searchingLayout->addStretch(1);
    searchingLayout->addWidget(busyIndicator(searchingPage, 120), 0, Qt::AlignHCenter);
    auto *searchingText = new QLabel(AddComputerView::searchingListText(), searchingPage);
    searchingLayout->addWidget(searchingText, 0, Qt::AlignHCenter);
    searchingLayout->addStretch(1);
    m_pages->insertWidget(searchingPageIndex, searchingPage);

    auto *emptyPage = new QWidget(m_pages);
    auto *emptyLayout = new QVBoxLayout(emptyPage);
    emptyLayout->addStretch(1);
    emptyLayout->addWidget(new QLabel(AddComputerView::nothingFoundText(), emptyPage), 0,
                           Qt::AlignHCenter);
    m_emptySearchAgain = FormWidgets::button(tr("Search again"), emptyPage);
    emptyLayout->addWidget(m_emptySearchAgain, 0, Qt::AlignHCenter);
    emptyLayout->addStretch(1);
    m_pages->insertWidget(nothingFoundPageIndex, emptyPage);
    layout->addWidget(m_pages, 1);

    m_manualButton = FormWidgets::button(tr("Add custom computer or server..."), section);
    layout->addWidget(m_manualButton, 0, Qt::AlignLeft);

    connect(m_headSearchAgain, &QPushButton::clicked, m_view, &AddComputerView::startSearch);
    connect(m_emptySearchAgain, &QPushButton::clicked, m_view, &AddComputerView::startSearch);
    connect(m_manualButton, &QPushButton::clicked, this, [this] {
        m_view->openManualEntry();
        m_hostEdit->setFocus();
    });
    return section;
}

QWidget *AddComputerDialog::buildManualSection()
{
    m_manualSection = new QGroupBox(tr("Custom Computer or Server Information"));
    auto *layout = new QVBoxLayout(m_manualSection);
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    // The add form's own labels: "Computer IP Address" and "Used Port Number" here,
    // against "Remote IP Address" and "Port" in the edit form.
    m_nameEdit = FormWidgets::addField(form, tr("Computer Name (optional)"));
    m_hostEdit = FormWidgets::addField(form, tr("Computer IP Address"));
    m_portEdit = FormWidgets::addField(form, tr("Used Port Number"));
    layout->addLayout(form);
    auto *cancelManual = FormWidgets::button(tr("Cancel custom entry"), m_manualSection);
    layout->addWidget(cancelManual, 0, Qt::AlignRight);

    connect(m_nameEdit, &QLineEdit::textEdited, m_view, &AddComputerView::setName);
    connect(m_hostEdit, &QLineEdit::textEdited, m_view, &AddComputerView::setHost);
    connect(m_portEdit, &QLineEdit::textEdited, m_view, &AddComputerView::setPort);
    connect(cancelManual, &QPushButton::clicked, this, [this] {
        m_view->cancelManualEntry();
        m_manualButton->setFocus();
    });
    return m_manualSection;
}

QWidget *AddComputerDialog::buildAuthenticationSection()
{
    auto *section = new QGroupBox(tr("Authentication"));
    auto *layout = new QVBoxLayout(section);
    layout->addWidget(FormWidgets::note(
        tr("Enter the username and password of the logged-in account on the remote Mac."),
        section));
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_usernameEdit = FormWidgets::addField(form, tr("Username"));
    m_passwordEdit = FormWidgets::addField(form, tr("Password"));
    m_passwordEdit->setEchoMode(QLineEdit::Password);
    layout->addLayout(form);
    connect(m_usernameEdit, &QLineEdit::textEdited, m_view, &AddComputerView::setUsername);
    connect(m_passwordEdit, &QLineEdit::textEdited, m_view, &AddComputerView::setPassword);
    return section;
}

void AddComputerDialog::formAppeared()
{
    m_view->appear();
}

void AddComputerDialog::formClosing()
{
    m_view->dismiss();
}

void AddComputerDialog::refresh()
{
    const AddComputerView &view = *m_view;
    setTextIfChanged(m_nameEdit, view.name());
    setTextIfChanged(m_hostEdit, view.host());
    setTextIfChanged(m_portEdit, view.port());
    setTextIfChanged(m_usernameEdit, view.username());
    setTextIfChanged(m_passwordEdit, view.password());

    const AddComputerView::ListState state = view.listState();
    const bool hasRows = state == AddComputerView::ListState::rows;
    m_pages->setCurrentIndex(hasRows ? rowsPageIndex
                             : state == AddComputerView::ListState::searching
                                 ? searchingPageIndex
                                 : nothingFoundPageIndex);
    // With no rows the page below says it all; the head would repeat it.
    m_caption->setVisible(hasRows);
    m_headSearching->setVisible(hasRows && view.isDiscovering());
    m_headSearchAgain->setVisible(hasRows && !view.isDiscovering());
    m_manualButton->setVisible(!view.showManualEntry());
    m_manualSection->setVisible(view.showManualEntry());
    m_addButton->setEnabled(view.canAddNow());
    followSelection();
}

void AddComputerDialog::followSelection()
{
    const auto &selected = m_view->selectedServer();
    const int row = selected ? m_view->rows().row(selected->id()) : -1;
    const QModelIndex index = row >= 0 ? m_view->rows().index(row) : QModelIndex();
    if (m_list->currentIndex() == index)
        return;
    m_followingView = true;
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    m_followingView = false;
}

void AddComputerDialog::currentRowChanged(const QModelIndex &current)
{
    if (m_followingView || !current.isValid())
        return;
    m_view->selectServer(current.data(DiscoveredServerListModel::IdRole).toUuid());
}

void AddComputerDialog::addNow()
{
    if (m_view->addNow() == AddComputerView::AddOutcome::invalidPort) {
        m_portEdit->setFocus();
        m_portEdit->selectAll();
    }
}
