#include "AboutView.h"
#include "AboutLogoView.h"
#include "UpdateDownloadSheet.h"

#include "platform/WebHosts.h"
#include "services/AppVersion.h"
#include "services/UpdateCheckCoordinator.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

namespace {

struct Link {
    const char *title;
    const char *path;
    const char *query;
};

// The maker's pages, in the order of the row.
constexpr Link links[] = {
    {QT_TRANSLATE_NOOP("AboutView", "Website"), "", ""},
    {QT_TRANSLATE_NOOP("AboutView", "Community"), "/support", ""},
    {QT_TRANSLATE_NOOP("AboutView", "FAQs"), "/support/faq", ""},
    {QT_TRANSLATE_NOOP("AboutView", "Feature Request"), "/support/ticket_create",
     "category=Feature%20Request"},
    {QT_TRANSLATE_NOOP("AboutView", "Bug report"), "/support/ticket_create",
     "category=Bug%20Report"},
};

QLabel *label(const QString &text, qreal pointSize, bool bold, QWidget *parent)
{
    auto *result = new QLabel(text, parent);
    QFont font = result->font();
    if (pointSize > 0)
        font.setPointSizeF(pointSize);
    font.setBold(bold);
    result->setFont(font);
    result->setAlignment(Qt::AlignCenter);
    return result;
}

} // namespace

AboutView::AboutView(AlertPresenter *alerts, QWidget *parent)
    : QWidget(parent), m_coordinator(new UpdateCheckCoordinator(alerts, this)),
      m_checkForUpdates(new QPushButton(tr("Check for Updates..."), this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 36, 32, 24);
    layout->setSpacing(6);
    layout->addStretch(1);
    layout->addWidget(label(tr("Telvane"), 28, true, this));
    layout->addWidget(label(AppVersion::running(), 14, false, this));
    layout->addSpacing(14);

    auto *madeBy = new QHBoxLayout;
    madeBy->addStretch();
    QLabel *madeByLabel = label(tr("Made by"), 0, false, this);
    madeByLabel->setForegroundRole(QPalette::PlaceholderText);
    madeBy->addWidget(madeByLabel);
    madeBy->addWidget(new AboutLogoView(this));
    madeBy->addStretch();
    layout->addLayout(madeBy);
    layout->addSpacing(18);

    auto *checkRow = new QHBoxLayout;
    checkRow->addStretch();
    checkRow->addWidget(m_checkForUpdates);
    checkRow->addStretch();
    m_checkForUpdates->setDefault(true);
    m_checkForUpdates->setMinimumWidth(180);
    layout->addLayout(checkRow);
    layout->addStretch(1);

    auto *linkRow = new QHBoxLayout;
    linkRow->setSpacing(4);
    linkRow->addStretch();
    for (const Link &link : links) {
        auto *button = new QPushButton(tr(link.title), this);
        button->setFlat(true);
        button->setCursor(Qt::PointingHandCursor);
        QPalette palette = button->palette();
        palette.setColor(QPalette::ButtonText, palette.color(QPalette::Link));
        button->setPalette(palette);
        const QString path = QString::fromLatin1(link.path);
        const QString query = QString::fromLatin1(link.query);
        connect(button, &QPushButton::clicked, this, [path, query] {
            // An address that cannot be formed opens nothing; WebHosts logs why.
            if (const std::optional<QUrl> address = WebHosts::webAddress(path, query))
                QDesktopServices::openUrl(*address);
        });
        linkRow->addWidget(button);
    }
    linkRow->addStretch();
    layout->addLayout(linkRow);

    connect(m_checkForUpdates, &QPushButton::clicked, m_coordinator,
            [this] { m_coordinator->checkForUpdates(); });
    connect(m_coordinator, &UpdateCheckCoordinator::presentationChanged, this,
            &AboutView::showPresentation);
}

void AboutView::showPresentation()
{
    const auto &presentation = m_coordinator->updateDownloadPresentation();
    if (!presentation || (m_sheet && m_sheet->presentation().id == presentation->id))
        return;
    // A fresh offer always gets a fresh sheet.
    if (m_sheet)
        m_sheet->close();
    auto *sheet = new UpdateDownloadSheet(*presentation, window());
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    const QUuid id = presentation->id;
    connect(sheet, &QDialog::finished, m_coordinator, [coordinator = m_coordinator, id] {
        const auto &shown = coordinator->updateDownloadPresentation();
        if (shown && shown->id == id)
            coordinator->clearPresentation();
    });
    m_sheet = sheet;
    sheet->open();
}

void AboutView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && window()->windowHandle())
        window()->windowHandle()->startSystemMove();
    QWidget::mousePressEvent(event);
}
