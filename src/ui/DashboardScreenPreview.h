#pragma once

#include <QByteArray>
#include <QWidget>
#include <optional>

class QHBoxLayout;
class ThumbnailView;

// The screen preview: a heading, then the thumbnail when it decodes to an image, else
// "No preview available" while connected or "Connect to view screen" while not. The
// thumbnail is decoded once per change; one that does not decode shows the placeholder.
class DashboardScreenPreview : public QWidget {
    Q_OBJECT

public:
    explicit DashboardScreenPreview(QWidget *parent = nullptr);

    void setThumbnail(const std::optional<QByteArray> &data);
    void setConnected(bool isConnected);
    // Adds a widget at the right of the heading (the detail's "Update Preview").
    void addHeaderWidget(QWidget *widget);
    // The height of the image area; by default it takes what the layout gives.
    void setImageHeight(int height);

    ThumbnailView *thumbnailView() const { return m_thumbnail; }

private:
    void showPlaceholder();

    QHBoxLayout *m_header;
    ThumbnailView *m_thumbnail;
    std::optional<QByteArray> m_data;
    QImage m_image;
    bool m_isConnected = false;
};
