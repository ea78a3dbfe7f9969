#include "ComputerListView.h"

#include "ComputerRowDelegate.h"
#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"
#include "state/ComputerListModel.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QToolButton *navigationRow(QStringView symbol, const QString &text, QWidget *parent)
{
    auto *row = new QToolButton(parent);
    row->setText(text);
    row->setIcon(SymbolIcon::icon(symbol));
    row->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    row->setCheckable(true);
    row->setAutoRaise(true);
    row->setFocusPolicy(Qt::StrongFocus);
    row->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    row->setMinimumHeight(30);
    return row;
}

} // namespace

ComputerListView::ComputerListView(AppState &appState, QWidget *parent)
    : QWidget(parent), m_model(new ComputerListModel(appState, this)),
      m_dashboardRow(navigationRow(u"house", tr("Dashboard"), this)), m_list(new QListView(this)),
      m_logsRow(navigationRow(u"doc.text", tr("Logs"), this)), m_addButton(new QPushButton(this))
{
    auto *title = new QLabel(tr("Telvane"), this);
    title->setFont(ViewFonts::title(font()));

    auto *section = new QHBoxLayout;
    section->setContentsMargins(6, 8, 0, 0);
    section->setSpacing(6);
    section->addWidget(SymbolIcon::label(u"desktopcomputer", 14,
                                         ToneColors::color(Tone::secondary, palette()),
                                         tr("Monitored"), this));
    auto *sectionTitle = new QLabel(tr("Monitored"), this);
    sectionTitle->setFont(ViewFonts::emphasized(ViewFonts::caption(font())));
    ToneColors::applyTo(sectionTitle, Tone::secondary);
    section->addWidget(sectionTitle, 1);

    // Ahead of the list's own handlers, which move its selection off removed rows.
    const auto rowsAboutToChange = [this] { m_isShowingSelection = true; };
    for (auto about :
         {&QAbstractItemModel::rowsAboutToBeInserted, &QAbstractItemModel::rowsAboutToBeRemoved})
        connect(m_model, about, this, rowsAboutToChange);
    connect(m_model, &QAbstractItemModel::modelAboutToBeReset, this, rowsAboutToChange);
    m_list->setModel(m_model);
    m_list->setItemDelegate(new ComputerRowDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setAccessibleName(tr("Monitored computers"));
    m_list->viewport()->setAutoFillBackground(false);
    m_list->installEventFilter(this);
    m_dashboardRow->installEventFilter(this);
    m_logsRow->installEventFilter(this);

    m_addButton->setText(tr("Add..."));
    m_addButton->setIcon(SymbolIcon::icon(u"plus", palette().color(QPalette::HighlightedText)));
    // The prominent style: the accent as the button's colour.
    QPalette prominent = m_addButton->palette();
    prominent.setColor(QPalette::Button, prominent.color(QPalette::Highlight));
    prominent.setColor(QPalette::ButtonText, prominent.color(QPalette::HighlightedText));
    m_addButton->setPalette(prominent);
    m_addButton->setMinimumHeight(32);

    auto *divider = new QFrame(this);
    divider->setFrameShape(QFrame::HLine);
    divider->setFrameShadow(QFrame::Sunken);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 14, 10, 12);
    layout->setSpacing(4);
    layout->addWidget(title);
    layout->addSpacing(8);
    layout->addWidget(m_dashboardRow);
    layout->addLayout(section);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_logsRow);
    layout->addStretch();
    layout->addWidget(divider);
    layout->addWidget(m_addButton);

    connect(m_dashboardRow, &QToolButton::clicked, this,
            [this] { Q_EMIT itemChosen(NavigationItem::dashboard()); });
    connect(m_logsRow, &QToolButton::clicked, this,
            [this] { Q_EMIT itemChosen(NavigationItem::logs()); });
    connect(m_addButton, &QPushButton::clicked, this, &ComputerListView::addRequested);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const QModelIndexList rows = m_list->selectionModel()->selectedRows();
        if (!m_isShowingSelection && !rows.isEmpty())
            chooseRow(rows.first().row());
    });
    connect(m_list, &QListView::customContextMenuRequested, this,
            &ComputerListView::showContextMenu);
    // The list moves its current row off a removed one by itself; that is no choice of the
    // user's, so the selection it was given is shown again once the list is done.
    const auto rowsChanged = [this] {
        m_isShowingSelection = false;
        setSelectedItem(m_shownItem);
        fitListHeight();
    };
    for (auto done : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_model, done, this, rowsChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, rowsChanged);
    fitListHeight();
}

void ComputerListView::setSelectedItem(const std::optional<NavigationItem> &item)
{
    using Kind = NavigationItem::Kind;
    m_shownItem = item;
    m_isShowingSelection = true;
    m_dashboardRow->setChecked(item && item->kind == Kind::dashboard);
    m_logsRow->setChecked(item && item->kind == Kind::logs);
    const int row = item && item->kind == Kind::computer ? m_model->row(item->computerId) : -1;
    if (row >= 0) {
        const QModelIndex index = m_model->index(row);
        m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        m_list->scrollTo(index);
    } else {
        m_list->selectionModel()->clearSelection();
    }
    m_isShowingSelection = false;
}

void ComputerListView::chooseRow(int row)
{
    if (row >= 0 && row < m_model->rowCount())
        Q_EMIT itemChosen(NavigationItem::computer(m_model->computerAt(row).id));
}

bool ComputerListView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    const int rows = m_model->rowCount();
    const int current = m_list->currentIndex().isValid() ? m_list->currentIndex().row() : -1;
    // Arrows walk Dashboard, the computers and Logs as one list, choosing as they go.
    const auto goToRow = [this](int row) {
        m_list->setFocus(Qt::OtherFocusReason);
        m_list->setCurrentIndex(m_model->index(row));
    };
    const auto goTo = [](QToolButton *navigation) {
        navigation->setFocus(Qt::OtherFocusReason);
        navigation->click();
    };
    if (watched == m_dashboardRow && key == Qt::Key_Down) {
        rows > 0 ? goToRow(0) : goTo(m_logsRow);
        return true;
    }
    if (watched == m_logsRow && key == Qt::Key_Up) {
        rows > 0 ? goToRow(rows - 1) : goTo(m_dashboardRow);
        return true;
    }
    if (watched == m_list) {
        if (key == Qt::Key_Up && current <= 0) {
            goTo(m_dashboardRow);
            return true;
        }
        if (key == Qt::Key_Down && current >= rows - 1) {
            goTo(m_logsRow);
            return true;
        }
        if ((key == Qt::Key_Delete || key == Qt::Key_Backspace) && current >= 0) {
            Q_EMIT deleteRequested(m_model->computerAt(current).id);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ComputerListView::showContextMenu(const QPoint &position)
{
    QModelIndex index = m_list->indexAt(position);
    if (!index.isValid())
        index = m_list->currentIndex(); // the menu key: the row with the focus
    if (!index.isValid())
        return;
    const QUuid id = m_model->computerAt(index.row()).id;
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addAction(tr("Edit...")), &QAction::triggered, this,
            [this, id] { Q_EMIT editRequested(id); });
    connect(menu->addAction(tr("Delete...")), &QAction::triggered, this,
            [this, id] { Q_EMIT deleteRequested(id); });
    menu->popup(m_list->viewport()->mapToGlobal(m_list->visualRect(index).center()));
}

void ComputerListView::fitListHeight()
{
    // As tall as its rows, so "Logs" follows the last computer; the window's height
    // limits it, and then the list scrolls.
    const int rowHeight = m_list->sizeHintForRow(0);
    m_list->setMaximumHeight(std::max(1, m_model->rowCount() * std::max(rowHeight, 0)) +
                             2 * m_list->frameWidth());
}
