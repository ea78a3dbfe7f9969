#include "DashboardScreenPreview.h"

#include "SymbolIcon.h"
#include "ThumbnailView.h"
#include "ViewFonts.h"

#include <QBuffer>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QVBoxLayout>

namespace {

// Thumbnails are small; anything far larger is not one of ours and is not decoded.
constexpr int maxThumbnailPixels = 4096 * 4096;

QImage decode(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > maxThumbnailPixels)
        return {};
    return reader.read();
}

} // namespace

DashboardScreenPreview::DashboardScreenPreview(QWidget *parent)
    : QWidget(parent), m_header(new QHBoxLayout), m_thumbnail(new ThumbnailView(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    QLabel *symbol = SymbolIcon::label(u"rectangle.inset.filled", fontMetrics().height(), QColor(),
                                       tr("Screen"), this);
    auto *heading = new QLabel(tr("Screen Preview"), this);
    heading->setFont(ViewFonts::emphasized(font()));
    m_header->setContentsMargins(0, 0, 0, 0);
    m_header->addWidget(symbol);
    m_header->addWidget(heading);
    m_header->addStretch();
    layout->addLayout(m_header);
    layout->addWidget(m_thumbnail, 1);
    showPlaceholder();
}

void DashboardScreenPreview::addHeaderWidget(QWidget *widget)
{
    m_header->addWidget(widget);
}

void DashboardScreenPreview::setImageHeight(int height)
{
    m_thumbnail->setFixedHeight(height);
}

void DashboardScreenPreview::setThumbnail(const std::optional<QByteArray> &data)
{
    if (data == m_data)
        return;
    m_data = data;
    m_image = data ? decode(*data) : QImage();
    if (!m_image.isNull())
        m_thumbnail->setImage(m_image);
    else
        showPlaceholder();
}

void DashboardScreenPreview::setConnected(bool isConnected)
{
    m_isConnected = isConnected;
    if (m_image.isNull())
        showPlaceholder();
}

void DashboardScreenPreview::showPlaceholder()
{
    if (m_isConnected)
        m_thumbnail->setPlaceholder(QStringLiteral("eye.slash"), tr("No preview available"));
    else
        m_thumbnail->setPlaceholder(QStringLiteral("desktopcomputer"),
                                    tr("Connect to view screen"));
}
