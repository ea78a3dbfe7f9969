#include "SettingsView.h"

#include "ToneColors.h"
#include "ViewFonts.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

struct PillToggle {
    const char *key;
    const char *label;
};

// In the order the pills appear.
constexpr PillToggle pillToggles[] = {
    {PreferenceKeys::pillsShowOS, QT_TRANSLATE_NOOP("SettingsView", "OS")},
    {PreferenceKeys::pillsShowModel, QT_TRANSLATE_NOOP("SettingsView", "Model")},
    {PreferenceKeys::pillsShowMemory, QT_TRANSLATE_NOOP("SettingsView", "Memory")},
    {PreferenceKeys::pillsShowDiskFree, QT_TRANSLATE_NOOP("SettingsView", "Disk Free")},
    {PreferenceKeys::pillsShowUptime, QT_TRANSLATE_NOOP("SettingsView", "Uptime")},
    {PreferenceKeys::pillsShowIPAddress, QT_TRANSLATE_NOOP("SettingsView", "IP Address")},
    {PreferenceKeys::pillsShowLoggedInUser, QT_TRANSLATE_NOOP("SettingsView", "Logged-In User")},
    {PreferenceKeys::pillsShowNetworkName, QT_TRANSLATE_NOOP("SettingsView", "Network")},
    {PreferenceKeys::pillsShowDisplayCount, QT_TRANSLATE_NOOP("SettingsView", "Displays")},
    {PreferenceKeys::pillsShowMainResolution, QT_TRANSLATE_NOOP("SettingsView", "Main Resolution")},
    {PreferenceKeys::pillsShowAgentVersion, QT_TRANSLATE_NOOP("SettingsView", "Agent Version")},
    {PreferenceKeys::pillsShowSession, QT_TRANSLATE_NOOP("SettingsView", "Lock Status")},
    {PreferenceKeys::pillsShowScreenAccess, QT_TRANSLATE_NOOP("SettingsView", "Screen Access")},
    {PreferenceKeys::pillsShowRemoteControl, QT_TRANSLATE_NOOP("SettingsView", "Remote Control")},
    {PreferenceKeys::pillsShowFrontApp, QT_TRANSLATE_NOOP("SettingsView", "Front App")},
};

} // namespace

SettingsView::SettingsView(QWidget *parent) : QWidget(parent, Qt::Window)
{
    setWindowTitle(tr("Settings"));
    setAccessibleName(tr("Settings"));

    auto *supervision = new QGroupBox(tr("Supervision"), this);
    auto *supervisionLayout = new QVBoxLayout(supervision);
    supervisionLayout->addWidget(addToggle(PreferenceKeys::supervisionAutoConnectAll,
                                           tr("Keep all computers connected"), supervision));
    auto *explanation =
        new QLabel(tr("Telvane will periodically connect to every configured machine to "
                      "refresh monitoring data and mark unreachable machines as offline."),
                   supervision);
    explanation->setWordWrap(true);
    explanation->setFont(ViewFonts::caption(font()));
    ToneColors::applyTo(explanation, Tone::secondary);
    supervisionLayout->addWidget(explanation);

    auto *pills = new QGroupBox(tr("Displayed Pills"), this);
    auto *pillsLayout = new QVBoxLayout(pills);
    pillsLayout->setSpacing(4);
    for (const PillToggle &toggle : pillToggles)
        pillsLayout->addWidget(addToggle(toggle.key, tr(toggle.label), pills));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 20);
    layout->setSpacing(16);
    layout->addWidget(supervision);
    layout->addWidget(pills);
    layout->addStretch();
    setFixedWidth(windowWidth);

    // A window without buttons: Escape (keyPressEvent) and the close shortcut close it.
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        close();
    else
        QWidget::keyPressEvent(event);
}

QCheckBox *SettingsView::addToggle(const char *key, const QString &label, QWidget *parent)
{
    const QString name = QLatin1String(key);
    auto *toggle = new QCheckBox(label, parent);
    toggle->setChecked(Preferences::shared().boolValue(name));
    connect(toggle, &QCheckBox::toggled, this,
            [name](bool on) { Preferences::shared().setBoolValue(name, on); });
    connect(&Preferences::shared(), &Preferences::changed, toggle,
            [name, toggle](const QString &changed) {
                if (changed == name)
                    toggle->setChecked(Preferences::shared().boolValue(name));
            });
    m_toggles.append(toggle);
    return toggle;
}
