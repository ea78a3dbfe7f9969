#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

// A screen image scaled to fit, or in its place a symbol with a line of text. The image
// is scaled once per size, never per paint.
class ThumbnailView : public QWidget {
    Q_OBJECT

public:
    explicit ThumbnailView(QWidget *parent = nullptr);

    void setImage(const QImage &image);
    void setPlaceholder(const QString &symbol, const QString &text);
    bool hasImage() const { return !m_image.isNull(); }
    QString placeholderText() const { return m_text; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QImage m_image;
    QPixmap m_scaled;
    QString m_symbol;
    QString m_text;
};
