#include "ComputerDetailView.h"

#include "ComputerFormFactory.h"
#include "DashboardScreenPreview.h"
#include "ElidedLabel.h"
#include "ITInventoryDetailSection.h"
#include "MetricGaugeView.h"
#include "RemoteControlWindowFactory.h"
#include "StatusFactTile.h"
#include "SymbolIcon.h"
#include "TechnicalSpecGrid.h"
#include "ToneColors.h"
#include "ViewFonts.h"
#include "model/LogManager.h"
#include "platform/AlertPresenter.h"
#include "platform/Preferences.h"
#include "presentation/ITInventory.h"
#include "presentation/MetricGauge.h"
#include "presentation/StatusFacts.h"
#include "presentation/TechnicalSpecPills.h"
#include "state/AppState.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace {

constexpr int margin = 20;

QLabel *label(const QString &text, QWidget *parent, Tone tone = Tone::secondary)
{
    auto *label = new QLabel(text, parent);
    ToneColors::applyTo(label, tone);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

} // namespace

ComputerDetailView::ComputerDetailView(AppState &appState, const QUuid &id,
                                       ComputerFormFactory *formFactory,
                                       RemoteControlWindowFactory *remoteControlFactory,
                                       QWidget *parent, AlertPresenter *alerts)
    : QWidget(parent), m_appState(appState), m_formFactory(formFactory),
      m_remoteControlFactory(remoteControlFactory),
      m_alerts(alerts ? alerts : AlertPresenter::shared())
{
    if (const std::optional<RemoteComputer> computer = appState.computer(id))
        m_snapshot.computerSnapshot = *computer;
    else
        m_snapshot.computerSnapshot.id = id;

    // Made in reading order, which is also the order Tab follows.
    auto *top = new QVBoxLayout;
    top->setContentsMargins(margin, 16, margin, 0);
    top->setSpacing(12);
    top->addWidget(makeHeader());
    m_actionBar = new QGridLayout;
    m_actionBar->setSpacing(8);
    for (int i = 0; i < 5; ++i) {
        auto *button = new QPushButton(this);
        connect(button, &QPushButton::clicked, this, [this, i] { runAction(i); });
        m_actions.append(button);
    }
    placeActionButtons(false);
    top->addLayout(m_actionBar);
    top->addWidget(makeUploadPanel());

    m_segments = new QTabBar(this);
    m_segments->addTab(tr("Status"));
    m_segments->addTab(tr("Preview"));
    m_segments->setDocumentMode(true);
    m_segments->setExpanding(false);
    m_segments->setAccessibleName(tr("Detail sections"));
    top->addWidget(m_segments);
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(makeStatusPage());
    m_pages->addWidget(makePreviewPage());
    connect(m_segments, &QTabBar::currentChanged, this, [this](int index) {
        setSelectedSegment(index == 1 ? DetailSegment::preview : DetailSegment::status);
    });

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addLayout(top);
    layout->addWidget(m_pages, 1);

    connect(&appState, &AppState::computerChanged, this, &ComputerDetailView::computerChanged);
    connect(&appState, &AppState::computerRemoved, this, [this](const QUuid &removed) {
        if (removed == computerId())
            refresh(); // the flags now come from the snapshot, which stays as it was
    });
    connect(&appState, &AppState::fileTransferChanged, this,
            &ComputerDetailView::refreshFileTransfer);
    connect(&Preferences::shared(), &Preferences::changed, this, [this](const QString &key) {
        if (TechnicalSpecPills::isSwitchKey(key))
            refreshStatusPage();
    });
    refresh();
    refreshFileTransfer();
}

QWidget *ComputerDetailView::makeHeader()
{
    auto *header = new QWidget(this);
    QLabel *symbol = SymbolIcon::label(u"desktopcomputer", 40, QColor(), tr("Computer"), header);
    m_name = new QLabel(header);
    m_name->setTextFormat(Qt::PlainText);
    m_name->setFont(ViewFonts::pageTitle(font()));
    m_connectionText = label(QString(), header);
    m_description = label(QString(), header);
    m_statusLine = label(QString(), header);
    m_name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_connectionText->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(m_name);
    names->addWidget(m_connectionText);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(symbol, 0, Qt::AlignTop);
    row->addLayout(names, 1);
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addLayout(row);
    layout->addWidget(m_description);
    layout->addWidget(m_statusLine);
    return header;
}

QWidget *ComputerDetailView::makeUploadPanel()
{
    m_uploadPanel = new QFrame(this);
    static_cast<QFrame *>(m_uploadPanel)->setFrameShape(QFrame::StyledPanel);
    m_uploadTitle = new ElidedLabel(m_uploadPanel);
    m_uploadTitle->setFont(ViewFonts::emphasized(font()));
    m_uploadProgress = new QProgressBar(m_uploadPanel);
    m_uploadProgress->setRange(0, 1000);
    m_uploadProgress->setTextVisible(false);
    m_uploadProgress->setAccessibleName(tr("Upload progress"));
    m_uploadStatus = new ElidedLabel(m_uploadPanel);
    m_uploadStatus->setColor(ToneColors::color(Tone::secondary, palette()));
    auto *cancel = new QPushButton(tr("Cancel"), m_uploadPanel);
    cancel->setAccessibleName(tr("Cancel upload"));
    connect(cancel, &QPushButton::clicked, this, &ComputerDetailView::cancelFileTransferRequested);
    auto *texts = new QVBoxLayout;
    texts->addWidget(m_uploadTitle);
    texts->addWidget(m_uploadProgress);
    texts->addWidget(m_uploadStatus);
    auto *layout = new QHBoxLayout(m_uploadPanel);
    layout->addLayout(texts, 1);
    layout->addWidget(cancel, 0, Qt::AlignVCenter);
    return m_uploadPanel;
}

QWidget *ComputerDetailView::makeStatusPage()
{
    auto *page = new QWidget;
    auto *heading = new QLabel(tr("Technical Status"), page);
    heading->setFont(ViewFonts::title(font()));
    m_statusSubtitle = label(QString(), page);

    m_noStatistics = new QWidget(page);
    QLabel *symbol = SymbolIcon::label(u"chart.bar.doc.horizontal", 44,
                                       ToneColors::color(Tone::secondary, palette()),
                                       tr("No technical specs"), m_noStatistics);
    auto *noStatisticsTitle = new QLabel(tr("No technical specs yet"), m_noStatistics);
    noStatisticsTitle->setFont(ViewFonts::title(font()));
    auto *noStatisticsText = label(tr("Connect to this Mac to start receiving CPU, memory, disk, "
                                      "OS, model, and active app details."),
                                   m_noStatistics);
    auto *noStatistics = new QVBoxLayout(m_noStatistics);
    noStatistics->setContentsMargins(0, 24, 0, 24);
    for (QLabel *item : {symbol, noStatisticsTitle, noStatisticsText}) {
        item->setAlignment(Qt::AlignCenter);
        noStatistics->addWidget(item);
    }

    m_statistics = new QWidget(page);
    auto *gauges = new QHBoxLayout;
    auto *facts = new QHBoxLayout;
    facts->setSpacing(10);
    for (int i = 0; i < 3; ++i) {
        m_gauges.append(new MetricGaugeView(m_statistics));
        gauges->addWidget(m_gauges.last());
        m_facts.append(new StatusFactTile(m_statistics));
        facts->addWidget(m_facts.last());
    }
    m_pills = new TechnicalSpecGrid(false, m_statistics);
    m_inventory = new ITInventoryDetailSection(m_statistics);
    auto *statistics = new QVBoxLayout(m_statistics);
    statistics->setContentsMargins(0, 0, 0, 0);
    statistics->setSpacing(16);
    statistics->addLayout(gauges);
    statistics->addLayout(facts);
    statistics->addWidget(m_pills);
    statistics->addWidget(m_inventory);

    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(margin, 8, margin, margin);
    layout->setSpacing(4);
    layout->addWidget(heading);
    layout->addWidget(m_statusSubtitle);
    layout->addSpacing(12);
    layout->addWidget(m_noStatistics);
    layout->addWidget(m_statistics);
    layout->addStretch();

    auto *scroll = new QScrollArea;
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Focusable, so the keyboard can scroll it; a reader names it.
    scroll->setAccessibleName(tr("Technical Status"));
    return scroll;
}

QWidget *ComputerDetailView::makePreviewPage()
{
    auto *page = new QWidget;
    m_preview = new DashboardScreenPreview(page);
    m_updatePreview =
        new QPushButton(SymbolIcon::icon(u"arrow.clockwise"), tr("Update Preview"), page);
    connect(m_updatePreview, &QPushButton::clicked, this, [this] {
        if (isComputerInStore())
            Q_EMIT previewRequested(computerId());
    });
    m_preview->addHeaderWidget(m_updatePreview);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(margin, 8, margin, margin);
    layout->addWidget(m_preview);
    return page;
}

void ComputerDetailView::placeActionButtons(bool inTwoRows)
{
    for (QPushButton *button : std::as_const(m_actions))
        m_actionBar->removeWidget(button);
    const int perRow = inTwoRows ? 3 : int(m_actions.size());
    for (int i = 0; i < m_actions.size(); ++i)
        m_actionBar->addWidget(m_actions[i], i / perRow, i % perRow);
    m_actionBar->setColumnStretch(perRow, 1);
    for (int column = perRow + 1; column <= m_actions.size(); ++column)
        m_actionBar->setColumnStretch(column, 0);
    m_isActionBarInTwoRows = inTwoRows;
}

void ComputerDetailView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // The bar wraps rather than cutting its buttons' texts in a narrow window.
    int needed = 2 * margin + m_actionBar->spacing() * int(m_actions.size() - 1);
    for (const QPushButton *button : std::as_const(m_actions))
        needed += button->sizeHint().width();
    const bool inTwoRows = needed > width();
    if (inTwoRows != m_isActionBarInTwoRows)
        placeActionButtons(inTwoRows);
}

void ComputerDetailView::setSelectedSegment(DetailSegment segment)
{
    m_snapshot.selectedDetailSegment = segment;
    const int index = segment == DetailSegment::preview ? 1 : 0;
    m_segments->setCurrentIndex(index);
    m_pages->setCurrentIndex(index);
}

void ComputerDetailView::computerChanged(const QUuid &id, ComputerFields)
{
    if (id != computerId())
        return;
    if (const std::optional<RemoteComputer> computer = m_appState.computer(id))
        m_snapshot.computerSnapshot = *computer;
    refresh();
}

bool ComputerDetailView::isComputerInStore() const
{
    return m_appState.computer(computerId()).has_value();
}

void ComputerDetailView::refresh()
{
    m_flags = m_snapshot.liveFlags(m_appState.computers());
    m_name->setText(m_snapshot.displayName());
    m_connectionText->setText(m_snapshot.connectionText());
    m_description->setText(m_snapshot.description());
    m_description->setVisible(!m_snapshot.description().isEmpty());
    const auto status = ComputerPreviewViewSnapshot::statusLine(m_flags);
    m_statusLine->setVisible(status.has_value());
    if (status) {
        m_statusLine->setText(status->text);
        ToneColors::applyTo(m_statusLine, status->tone);
    }

    const QList<DetailAction> actions = ComputerPreviewViewSnapshot::actionBar(m_flags);
    for (qsizetype i = 0; i < actions.size() && i < m_actions.size(); ++i) {
        QPushButton *button = m_actions[i];
        if (button->text() != actions[i].label) {
            button->setText(actions[i].label);
            button->setIcon(SymbolIcon::icon(actions[i].systemImage));
        }
        button->setEnabled(actions[i].enabled);
    }
    m_updatePreview->setEnabled(m_flags.isConnected);
    m_preview->setConnected(m_flags.isConnected);
    m_preview->setThumbnail(m_snapshot.computerSnapshot.thumbnailImage);
    refreshStatusPage();
}

void ComputerDetailView::refreshStatusPage()
{
    m_statusSubtitle->setText(ComputerPreviewViewSnapshot::statusSubtitle(m_flags));
    const std::optional<SystemStats> &stats = m_snapshot.computerSnapshot.systemStats;
    m_noStatistics->setVisible(!stats);
    m_statistics->setVisible(stats.has_value());
    if (!stats)
        return;
    const QList<MetricGauge> gauges = MetricGauge::gauges(*stats);
    const QList<FactTile> facts = StatusFacts::tiles(*stats);
    for (int i = 0; i < 3; ++i) {
        m_gauges[i]->setGauge(gauges[i]);
        m_facts[i]->setFact(facts[i]);
    }
    const QList<SpecPill> pills =
        TechnicalSpecPills::pills(*stats, TechnicalSpecPills::switchesFromPreferences());
    m_pills->setPills(pills);
    m_pills->setVisible(!pills.isEmpty());
    m_inventory->setGroups(ITInventory::groups(*stats));
}

void ComputerDetailView::refreshFileTransfer()
{
    m_snapshot.isFileTransferInProgress = m_appState.isFileTransferInProgress();
    m_snapshot.fileTransferFileName = m_appState.fileTransferFileName();
    m_snapshot.fileTransferProgress = m_appState.fileTransferProgress();
    m_snapshot.fileTransferStatus = m_appState.fileTransferStatus();
    m_uploadPanel->setVisible(m_snapshot.isFileTransferInProgress);
    m_uploadTitle->setText(m_snapshot.transferTitle());
    m_uploadProgress->setValue(qRound(m_snapshot.shownTransferProgress() * 1000));
    m_uploadStatus->setText(m_snapshot.fileTransferStatus);
}

void ComputerDetailView::runAction(int index)
{
    const QList<DetailAction> actions = ComputerPreviewViewSnapshot::actionBar(m_flags);
    if (index < 0 || index >= actions.size() || !actions[index].enabled)
        return;
    // A computer that is gone keeps its view, but there is nothing left to act on.
    if (!isComputerInStore())
        return;
    using Effect = DetailAction::Effect;
    switch (actions[index].effect) {
    case Effect::connect:
        Q_EMIT connectRequested(computerId());
        break;
    case Effect::disconnect:
        Q_EMIT disconnectRequested(computerId());
        break;
    case Effect::none:
        break;
    case Effect::openRemoteControl:
        openRemoteControl();
        break;
    case Effect::chooseFileToUpload:
        chooseFileToUpload();
        break;
    case Effect::openEditForm:
        openEditForm();
        break;
    case Effect::confirmRemoval:
        confirmRemoval();
        break;
    }
}

void ComputerDetailView::chooseFileToUpload()
{
    auto *dialog = new QFileDialog(this, tr("Upload File"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
        if (!path.isEmpty() && isComputerInStore())
            Q_EMIT fileTransferRequested(computerId(), path);
    });
    dialog->open();
}

void ComputerDetailView::openRemoteControl()
{
    static bool logged = false;
    if (!m_remoteControlFactory) {
        LogManager::shared().logOnce(
            logged, QStringLiteral("Remote control is not available in this build"),
            QStringLiteral("UI"));
        return;
    }
    // Every press opens a new window; the last one is kept.
    m_remoteControl = m_remoteControlFactory->openRemoteControlWindow(computerId());
}

void ComputerDetailView::openEditForm()
{
    static bool logged = false;
    if (!m_formFactory) {
        LogManager::shared().logOnce(
            logged, QStringLiteral("Editing computers is not available in this build"),
            QStringLiteral("UI"));
        return;
    }
    m_formFactory->openEditForm(computerId(), this);
}

void ComputerDetailView::confirmRemoval()
{
    static bool logged = false;
    if (!m_alerts) {
        LogManager::shared().logOnce(
            logged,
            QStringLiteral("Removing computers needs a confirmation, which cannot be shown"),
            QStringLiteral("UI"));
        return;
    }
    if (std::exchange(m_isConfirmingRemoval, true))
        return;
    const QPointer<ComputerDetailView> self(this);
    const Alert alert = m_snapshot.removalConfirmation();
    m_alerts->show(alert, [self, alert](int button) {
        if (!self)
            return;
        self->m_isConfirmingRemoval = false;
        // Removed meanwhile (elsewhere): there is nothing left to remove.
        if (button == alert.destructiveButton && self->isComputerInStore())
            Q_EMIT self->removeRequested(self->computerId());
    });
}
