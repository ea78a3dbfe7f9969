#pragma once

#include <QList>
#include <QWidget>

class QCheckBox;

// The settings window: "Supervision" with its switch and what it does, and "Displayed
// Pills" with one switch per technical pill. Each switch writes its preference at once
// (there is nothing to save or cancel) and follows changes made elsewhere.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr int windowWidth = 460;

    explicit SettingsView(QWidget *parent = nullptr);

    // The supervision switch first, then the pill switches in display order.
    const QList<QCheckBox *> &toggles() const { return m_toggles; }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QCheckBox *addToggle(const char *key, const QString &label, QWidget *parent);

    QList<QCheckBox *> m_toggles;
};
