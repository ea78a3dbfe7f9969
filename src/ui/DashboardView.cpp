#include "DashboardView.h"

#include "ComputerCardView.h"
#include "DashboardSummaryStrip.h"
#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "state/AppState.h"
#include "state/ComputerListModel.h"

#include <QAction>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int minimumCardWidth = 290;
constexpr int spacing = 14;

struct DisplayOption {
    const char *key;
    const char *label;
};

// In menu order.
constexpr DisplayOption displayOptionTable[] = {
    {PreferenceKeys::dashboardShowSummaryTiles,
     QT_TRANSLATE_NOOP("DashboardView", "Summary Tiles")},
    {PreferenceKeys::dashboardShowHealthMetrics,
     QT_TRANSLATE_NOOP("DashboardView", "Health Metrics")},
    {PreferenceKeys::dashboardShowTechnicalSpecs,
     QT_TRANSLATE_NOOP("DashboardView", "Technical Specs")},
    {PreferenceKeys::dashboardShowScreenPreview,
     QT_TRANSLATE_NOOP("DashboardView", "Screen Preview")},
};

QLabel *secondaryLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    ToneColors::applyTo(label, Tone::secondary);
    label->setWordWrap(true);
    return label;
}

} // namespace

DashboardView::DashboardView(AppState &appState, QWidget *parent)
    : QWidget(parent), m_appState(appState), m_model(new ComputerListModel(appState, this)),
      m_switches(ComputerCardContent::Switches::fromPreferences()),
      m_pages(new QStackedWidget(this)), m_emptyPage(new QWidget(this)),
      m_scroll(new QScrollArea(this)), m_strip(new DashboardSummaryStrip(this)),
      m_grid(new QGridLayout)
{
    // Header: title, subtitle, display options.
    auto *title = new QLabel(tr("Dashboard"), this);
    title->setFont(ViewFonts::pageTitle(font()));
    auto *subtitle = secondaryLabel(tr("Overview of all configured computers and servers"), this);
    auto *options = new QToolButton(this);
    options->setText(tr("Display Options"));
    options->setIcon(SymbolIcon::icon(u"slider.horizontal.3"));
    options->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    options->setPopupMode(QToolButton::InstantPopup);
    options->setAccessibleName(tr("Display Options"));
    auto *menu = new QMenu(options);
    for (const DisplayOption &option : displayOptionTable) {
        QAction *action = menu->addAction(tr(option.label));
        action->setCheckable(true);
        action->setChecked(Preferences::shared().boolValue(QLatin1String(option.key)));
        const QString key = QLatin1String(option.key);
        connect(action, &QAction::toggled, this,
                [key](bool on) { Preferences::shared().setBoolValue(key, on); });
        m_options.append(action);
    }
    options->setMenu(menu);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(title);
    names->addWidget(subtitle);
    auto *header = new QHBoxLayout;
    header->addLayout(names, 1);
    header->addWidget(options, 0, Qt::AlignTop);

    // Empty state.
    QLabel *emptySymbol =
        SymbolIcon::label(u"desktopcomputer", 64, ToneColors::color(Tone::secondary, palette()),
                          tr("No computers"), m_emptyPage);
    auto *emptyTitle = new QLabel(tr("No computers or servers configured"), m_emptyPage);
    emptyTitle->setFont(ViewFonts::title(font()));
    auto *emptyLayout = new QVBoxLayout(m_emptyPage);
    emptyLayout->addStretch();
    for (QLabel *label :
         {emptySymbol, emptyTitle,
          secondaryLabel(tr("Add a computer or server to get started with remote control"),
                         m_emptyPage),
          secondaryLabel(tr("TelvaneAgent freeware is required on each monitored computer"),
                         m_emptyPage),
          secondaryLabel(tr("Download link is available from the Help menu"), m_emptyPage)}) {
        label->setAlignment(Qt::AlignCenter);
        emptyLayout->addWidget(label);
    }
    emptyLayout->addStretch();

    // Strip and cards.
    auto *content = new QWidget;
    auto *contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(0, 0, 6, 16); // clear of the scroll bar
    contentLayout->setSpacing(spacing + 4);
    m_grid->setSpacing(spacing);
    contentLayout->addWidget(m_strip);
    contentLayout->addLayout(m_grid);
    contentLayout->addStretch();
    m_scroll->setWidget(content);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->installEventFilter(this);
    m_pages->addWidget(m_emptyPage);
    m_pages->addWidget(m_scroll);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 0);
    layout->setSpacing(16);
    layout->addLayout(header);
    layout->addWidget(m_pages, 1);

    connect(m_model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { insertCards(first, last); });
    connect(m_model, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex &, int first, int last) { removeCards(first, last); });
    connect(m_model, &QAbstractItemModel::modelReset, this, &DashboardView::rebuildCards);
    connect(m_model, &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex &topLeft, const QModelIndex &bottomRight) {
                for (int row = topLeft.row(); row <= bottomRight.row(); ++row)
                    updateCard(row);
                updateSummary();
            });
    connect(&Preferences::shared(), &Preferences::changed, this, &DashboardView::preferenceChanged);
    m_strip->setVisible(
        Preferences::shared().boolValue(QLatin1String(PreferenceKeys::dashboardShowSummaryTiles)));
    rebuildCards();
}

bool DashboardView::isShowingEmptyState() const
{
    return m_pages->currentWidget() == m_emptyPage;
}

void DashboardView::insertCards(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        auto *card = new ComputerCardView(m_model->computerAt(row).id);
        connect(card, &ComputerCardView::selected, this, &DashboardView::computerSelected);
        m_cards.insert(row, card);
        updateCard(row);
    }
    m_placedColumns = 0;
    placeCards();
    updateSummary();
    updateEmptyState();
}

void DashboardView::removeCards(int first, int last)
{
    for (int row = last; row >= first; --row)
        delete m_cards.takeAt(row);
    m_placedColumns = 0;
    placeCards();
    updateSummary();
    updateEmptyState();
}

void DashboardView::rebuildCards()
{
    qDeleteAll(m_cards);
    m_cards.clear();
    if (m_model->rowCount() > 0)
        insertCards(0, m_model->rowCount() - 1);
    else {
        updateSummary();
        updateEmptyState();
    }
}

void DashboardView::updateCard(int row)
{
    if (row < 0 || row >= m_cards.size())
        return;
    m_cards[row]->setContent(ComputerCardContent::of(m_model->computerAt(row), m_switches));
}

void DashboardView::updateAllCards()
{
    for (int row = 0; row < m_cards.size(); ++row)
        updateCard(row);
}

void DashboardView::updateSummary()
{
    m_strip->setSummary(DashboardSummary::of(m_appState.computers()));
}

void DashboardView::updateEmptyState()
{
    m_pages->setCurrentWidget(m_cards.isEmpty() ? m_emptyPage : static_cast<QWidget *>(m_scroll));
}

void DashboardView::preferenceChanged(const QString &key)
{
    for (qsizetype i = 0; i < m_options.size(); ++i) {
        if (key == QLatin1String(displayOptionTable[i].key))
            m_options[i]->setChecked(Preferences::shared().boolValue(key));
    }
    if (key == QLatin1String(PreferenceKeys::dashboardShowSummaryTiles)) {
        m_strip->setVisible(Preferences::shared().boolValue(key));
        return;
    }
    const ComputerCardContent::Switches switches = ComputerCardContent::Switches::fromPreferences();
    if (switches == m_switches)
        return;
    m_switches = switches;
    updateAllCards();
}

int DashboardView::columnCount() const
{
    // As if the scroll bar showed, so its coming and going never changes the columns.
    const int available = m_scroll->width() - m_scroll->verticalScrollBar()->sizeHint().width();
    return std::max(1, (available + spacing) / (minimumCardWidth + spacing));
}

void DashboardView::placeCards()
{
    const int columns = columnCount();
    if (columns == m_placedColumns)
        return;
    m_placedColumns = columns;
    // Emptied from the end, which is cheap; the cards themselves stay.
    for (int i = m_grid->count() - 1; i >= 0; --i)
        delete m_grid->takeAt(i);
    for (int column = 0; column < m_grid->columnCount(); ++column)
        m_grid->setColumnStretch(column, 0);
    for (int i = 0; i < m_cards.size(); ++i)
        m_grid->addWidget(m_cards[i], i / columns, i % columns);
    for (int column = 0; column < columns; ++column)
        m_grid->setColumnStretch(column, 1);
    // Tab moves through the cards in reading order.
    QWidget *previous = nullptr;
    for (ComputerCardView *card : std::as_const(m_cards)) {
        if (previous)
            setTabOrder(previous, card);
        previous = card;
    }
}

bool DashboardView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_scroll && event->type() == QEvent::Resize)
        placeCards();
    return QWidget::eventFilter(watched, event);
}
