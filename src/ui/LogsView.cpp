#include "LogsView.h"

#include "LogEntryDelegate.h"
#include "SymbolIcon.h"
#include "ToneColors.h"
#include "ViewFonts.h"
#include "model/LogManager.h"
#include "presentation/LogListModel.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

// The small filled circle beside "Logging Active".
class ActivityDot : public QWidget {
public:
    explicit ActivityDot(QWidget *parent) : QWidget(parent) { setFixedSize(6, 6); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ToneColors::color(Tone::green, palette()));
        painter.drawEllipse(rect());
    }
};

} // namespace

LogsView::LogsView(LogManager &logManager, QWidget *parent)
    : QWidget(parent), m_logManager(logManager), m_model(new LogListModel(logManager, this)),
      m_count(new QLabel(this)), m_copyAll(new QPushButton(this)), m_clear(new QPushButton(this)),
      m_pages(new QStackedWidget(this)), m_list(new QListView(this))
{
    auto *title = new QLabel(tr("Logs"), this);
    title->setFont(ViewFonts::pageTitle(font()));
    ToneColors::applyTo(m_count, Tone::secondary);
    auto *activeText = new QLabel(tr("Logging Active"), this);
    activeText->setFont(ViewFonts::caption(font()));
    ToneColors::applyTo(activeText, Tone::secondary);
    auto *active = new QHBoxLayout;
    active->setSpacing(6);
    active->addWidget(new ActivityDot(this), 0, Qt::AlignVCenter);
    active->addWidget(activeText);
    active->addStretch();
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(title);
    names->addWidget(m_count);
    names->addLayout(active);

    m_copyAll->setText(tr("Copy All"));
    m_copyAll->setIcon(SymbolIcon::icon(u"doc.on.doc"));
    m_clear->setText(tr("Clear Logs"));
    m_clear->setIcon(SymbolIcon::icon(u"trash"));
    connect(m_copyAll, &QPushButton::clicked, this, &LogsView::copyAll);
    connect(m_clear, &QPushButton::clicked, this, [this] { m_logManager.clearLogs(); });
    auto *header = new QHBoxLayout;
    header->addLayout(names, 1);
    header->addWidget(m_copyAll, 0, Qt::AlignTop);
    header->addWidget(m_clear, 0, Qt::AlignTop);

    m_list->setModel(m_model);
    m_list->setItemDelegate(new LogEntryDelegate(m_list));
    m_list->setUniformItemSizes(true);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setAlternatingRowColors(true);
    m_list->setAccessibleName(tr("Log entries"));

    auto *emptyPage = new QWidget(this);
    auto *emptyLayout = new QVBoxLayout(emptyPage);
    QLabel *emptySymbol =
        SymbolIcon::label(u"text.alignleft", 64, ToneColors::color(Tone::secondary, palette()),
                          tr("No log entries"), emptyPage);
    emptySymbol->setAlignment(Qt::AlignCenter);
    emptyLayout->addStretch();
    emptyLayout->addWidget(emptySymbol);
    emptyLayout->addStretch();
    m_pages->addWidget(emptyPage);
    m_pages->addWidget(m_list);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(16);
    layout->addLayout(header);
    layout->addWidget(m_pages, 1);

    connect(m_model, &QAbstractItemModel::rowsAboutToBeInserted, this,
            &LogsView::rowsAboutToChange);
    connect(m_model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &LogsView::rowsAboutToChange);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &LogsView::rowsInserted);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex &, int first, int last) { rowsRemoved(first, last); });
    updateCount();
    m_list->scrollToBottom();
}

bool LogsView::isShowingEmptyState() const
{
    return m_pages->currentWidget() != m_list;
}

void LogsView::copyAll()
{
    m_model->flush(); // everything logged so far
    QClipboard *clipboard = QApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_model->joinedText());
}

void LogsView::rowsAboutToChange()
{
    const QScrollBar *bar = m_list->verticalScrollBar();
    m_wasAtEnd = bar->value() >= bar->maximum();
    m_scrollBeforeChange = bar->value();
}

void LogsView::rowsInserted()
{
    updateCount();
    if (m_wasAtEnd)
        m_list->scrollToBottom();
}

void LogsView::rowsRemoved(int first, int last)
{
    updateCount();
    if (m_wasAtEnd) {
        m_list->scrollToBottom();
        return;
    }
    // Rows taken from above the visible ones: move up with them, so the rows in view stay.
    if (first == 0) {
        m_list->doItemsLayout();
        m_list->verticalScrollBar()->setValue(std::max(0, m_scrollBeforeChange - (last + 1)));
    }
}

void LogsView::updateCount()
{
    const int count = m_model->rowCount();
    m_count->setText(tr("%1 log entries").arg(QString::number(count)));
    m_pages->setCurrentIndex(count == 0 ? 0 : 1);
}
