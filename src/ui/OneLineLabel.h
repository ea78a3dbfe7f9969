#pragma once

#include <QLabel>

// A one-line label that elides its text to the width it gets and shows the whole text as a
// tool tip, so a 10-kB host name never widens a window.
class OneLineLabel : public QLabel {
    Q_OBJECT

public:
    explicit OneLineLabel(QWidget *parent = nullptr);

    void setFullText(const QString &text);
    const QString &fullText() const { return m_fullText; }

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    QString m_fullText;
};
