#pragma once

#include <QVariantAnimation>
#include <QWidget>

// The maker's logo in the About window, drawn here rather than loaded. The first time it is
// shown it comes in over 0.45 s, easing out: opacity 0 to 1, scale 0.94 to 1 about its centre,
// and a shadow from nothing to 16 % opacity with a 6-pixel spread.
class AboutLogoView : public QWidget {
    Q_OBJECT

public:
    static constexpr int fadeInMs = 450;

    explicit AboutLogoView(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    // 0 before the first show, 1 once the fade-in is over.
    double visibility() const { return m_visibility; }

protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QVariantAnimation m_fadeIn;
    double m_visibility = 0;
    bool m_hasAppeared = false;
};
