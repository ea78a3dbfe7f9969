// The dashboard bound to the store: cards follow their computers one by one, every open
// view follows the display preferences at once, and it can be used from the keyboard.
#include "ui/DashboardView.h"
#include "SampleStatistics.h"
#include "platform/PreferenceKeys.h"
#include "platform/Preferences.h"
#include "platform/SettingsFiles.h"
#include "presentation/TechnicalSpecPills.h"
#include "state/AppState.h"
#include "ui/ComputerCardView.h"
#include "ui/ComputerDetailView.h"
#include "ui/DashboardScreenPreview.h"
#include "ui/DashboardSummaryStrip.h"
#include "ui/HealthStatusBadge.h"
#include "ui/MetricGaugeView.h"
#include "ui/SummaryTileView.h"
#include "ui/TechnicalSpecGrid.h"
#include "ui/ThumbnailView.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QChildEvent>
#include <QElapsedTimer>
#include <QFile>
#include <QImageWriter>
#include <QLabel>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace {

// Counts paint events of a widget and everything in it, and widgets created anywhere.
class EventCounter : public QObject {
public:
    int paints = 0;
    int widgetsCreated = 0;

    void watchTree(QWidget *root)
    {
        root->installEventFilter(this);
        for (QWidget *child : root->findChildren<QWidget *>())
            child->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        if (event->type() == QEvent::ChildAdded &&
            static_cast<QChildEvent *>(event)->child()->isWidgetType())
            ++widgetsCreated;
        return QObject::eventFilter(watched, event);
    }
};

SystemStats statistics(double cpu)
{
    SystemStats s = SampleStatistics::required();
    s.cpuUsage = cpu;
    s.uptimeSeconds = 90061;
    return s;
}

RemoteComputer computerNamed(const QString &name)
{
    RemoteComputer computer;
    computer.name = name;
    computer.host = name.toLower() + QStringLiteral(".local");
    return computer;
}

QByteArray jpeg()
{
    QImage image(64, 40, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "jpeg").write(image);
    return bytes;
}

// Waits until nothing has painted for a while, so what counts after it is new.
void settle()
{
    class PaintWatch : public QObject {
    public:
        QElapsedTimer quiet;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint || event->type() == QEvent::LayoutRequest)
                quiet.restart();
            return false;
        }
    } watch;
    watch.quiet.start();
    qApp->installEventFilter(&watch);
    (void)QTest::qWaitFor([&] { return watch.quiet.elapsed() > 150; }, 5000);
    qApp->removeEventFilter(&watch);
}

// Symbols and drawn elements say what they are to assistive technology.
void expectNamesOnElementsWithoutText(const QWidget &view)
{
    for (const QWidget *widget : view.findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(&view))
            continue;
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool drawn =
            widget->inherits("MetricGaugeView") || widget->inherits("HealthStatusBadge") ||
            widget->inherits("SummaryTileView") || widget->inherits("SpecPillView") ||
            widget->inherits("ThumbnailView") || widget->inherits("ComputerCardView");
        if ((label && label->text().isEmpty() && !label->pixmap().isNull()) || drawn)
            QVERIFY2(!widget->accessibleName().isEmpty(), widget->metaObject()->className());
    }
}

bool hasPill(const TechnicalSpecGrid *grid, const QString &title)
{
    return std::any_of(grid->pills().begin(), grid->pills().end(),
                       [&](const SpecPill &pill) { return pill.title == title; });
}

} // namespace

class DashboardViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QFile::remove(SettingsFiles::sharedSuitePath());
        const auto standard = SettingsFiles::openStandard();
        standard->clear();
        standard->sync();
        Preferences::shared().reload();
    }

    void cardsFollowTheirComputersOneByOne()
    {
        AppState state;
        DashboardView view(state);
        view.resize(1000, 700);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        QVERIFY(view.isShowingEmptyState());

        const RemoteComputer studio = computerNamed("Studio");
        const RemoteComputer lab = computerNamed("Lab");
        state.addComputer(studio);
        state.addComputer(lab);
        QVERIFY(!view.isShowingEmptyState());
        QCOMPARE(view.cards().size(), 2);
        QCOMPARE(view.cards().at(1)->content().title, QStringLiteral("Lab"));
        // First reports: the cards grow their gauges and pills.
        state.applySystemStats(studio.id, statistics(0.5));
        state.applySystemStats(lab.id, statistics(0.5));
        settle();

        // A report for one computer touches its card alone and creates no widget.
        EventCounter studioCard, labCard, strip, everywhere;
        studioCard.watchTree(view.cards().at(0));
        labCard.watchTree(view.cards().at(1));
        strip.watchTree(view.summaryStrip());
        qApp->installEventFilter(&everywhere);
        state.applySystemStats(studio.id, statistics(0.95));
        settle();
        QVERIFY(studioCard.paints > 0);
        QCOMPARE(labCard.paints, 0);
        QCOMPARE(strip.paints, 0); // no count changed
        QCOMPARE(view.cards().at(0)->content().gauges.first().label(), QStringLiteral("95%"));

        // The same values again, and a change nothing on the card shows: nothing repaints.
        studioCard.paints = 0;
        SystemStats unseen = statistics(0.95);
        unseen.serialNumber = QStringLiteral("C02XYZ");
        state.applySystemStats(studio.id, unseen);
        settle();
        QCOMPARE(studioCard.paints, 0);
        QCOMPARE(everywhere.widgetsCreated, 0);
        qApp->removeEventFilter(&everywhere);

        // A count that changes repaints the strip.
        state.updateConnectionStatus(lab.id, true);
        settle();
        QVERIFY(strip.paints > 0);
        QCOMPARE(view.summaryStrip()->summary().connected, 1);

        state.removeComputer(studio.id);
        QCOMPARE(view.cards().size(), 1);
        state.removeComputer(lab.id);
        QVERIFY(view.isShowingEmptyState());
        state.waitForPendingWrites();
    }

    // Each switch changes every open view at once, without reopening it.
    void preferencesChangeEveryOpenView_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("menuIndex"); // -1: a pill switch, set as the settings page will
        QTest::addColumn<QString>("pill");
        QTest::newRow("Summary Tiles")
            << QString(PreferenceKeys::dashboardShowSummaryTiles) << 0 << "";
        QTest::newRow("Health Metrics")
            << QString(PreferenceKeys::dashboardShowHealthMetrics) << 1 << "";
        QTest::newRow("Technical Specs")
            << QString(PreferenceKeys::dashboardShowTechnicalSpecs) << 2 << "";
        QTest::newRow("Screen Preview")
            << QString(PreferenceKeys::dashboardShowScreenPreview) << 3 << "";
        for (const TechnicalSpecPills::Definition &pill : TechnicalSpecPills::definitions())
            QTest::newRow(pill.preferenceKey)
                << QString(pill.preferenceKey) << -1 << QString(pill.title);
    }

    void preferencesChangeEveryOpenView()
    {
        QFETCH(QString, key);
        QFETCH(int, menuIndex);
        QFETCH(QString, pill);
        AppState state;
        RemoteComputer studio = computerNamed("Studio");
        studio.systemStats = SampleStatistics::everyPill();
        state.addComputer(studio);
        DashboardView first(state), second(state);
        ComputerDetailView detail(state, studio.id, nullptr, nullptr);

        // What the switch shows, in both dashboards and, for a pill, in the detail.
        const auto shown = [&](const DashboardView &view) {
            const ComputerCardView *card = view.cards().first();
            if (!pill.isEmpty()) {
                const bool inDetail = hasPill(detail.findChild<TechnicalSpecGrid *>(), pill);
                return hasPill(card->findChild<TechnicalSpecGrid *>(), pill) && inDetail;
            }
            if (key == PreferenceKeys::dashboardShowSummaryTiles)
                return !view.summaryStrip()->isHidden();
            if (key == PreferenceKeys::dashboardShowHealthMetrics)
                return !card->content().gauges.isEmpty();
            if (key == PreferenceKeys::dashboardShowTechnicalSpecs)
                return !card->findChild<TechnicalSpecGrid *>()->isHidden();
            return !card->findChild<DashboardScreenPreview *>()->isHidden();
        };
        const bool before = Preferences::shared().boolValue(key);
        QCOMPARE(shown(first), before);
        QCOMPARE(shown(second), before);

        if (menuIndex >= 0) {
            QAction *option = first.displayOptions().at(menuIndex);
            QCOMPARE(option->isChecked(), before);
            option->trigger();
            QCOMPARE(second.displayOptions().at(menuIndex)->isChecked(), !before);
        } else {
            Preferences::shared().setBoolValue(key, !before);
        }
        QCOMPARE(Preferences::shared().boolValue(key), !before);
        QCOMPARE(shown(first), !before);
        QCOMPARE(shown(second), !before);
        state.waitForPendingWrites();
    }

    void usableFromTheKeyboardWithNamedElements()
    {
        AppState state;
        RemoteComputer studio = computerNamed("Studio");
        studio.isConnected = true;
        studio.systemStats = statistics(0.95);
        state.setComputers({studio, computerNamed("Lab")});
        DashboardView view(state);
        view.resize(1000, 700);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));

        auto *options = view.findChild<QToolButton *>();
        options->setFocus();
        QTRY_VERIFY(options->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), view.cards().at(0));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), view.cards().at(1));
        QSignalSpy selected(&view, &DashboardView::computerSelected);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected.first().first().toUuid(), view.cards().at(1)->computerId());

        const ComputerCardView *card = view.cards().at(0);
        QCOMPARE(card->accessibleName(), QStringLiteral("Studio"));
        QCOMPARE(card->findChild<HealthStatusBadge *>()->accessibleName(),
                 QStringLiteral("Connected"));
        QStringList gauges;
        for (const MetricGaugeView *gauge : card->findChildren<MetricGaugeView *>())
            gauges << gauge->accessibleName();
        QCOMPARE(gauges, (QStringList{"CPU 95%", "Memory 75%", "Disk 50%"}));
        QCOMPARE(view.findChildren<SummaryTileView *>().first()->accessibleName(),
                 QStringLiteral("Total Macs: 2"));
        expectNamesOnElementsWithoutText(view);
        state.waitForPendingWrites();
    }

    void thumbnailsThatDoNotDecodeShowThePlaceholder()
    {
        Preferences::shared().setBoolValue(PreferenceKeys::dashboardShowScreenPreview, true);
        AppState state;
        RemoteComputer studio = computerNamed("Studio");
        studio.isConnected = true;
        studio.thumbnailImage = QByteArray("\xff\xd8 not an image at all", 24);
        state.setComputers({studio});
        DashboardView view(state);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const ThumbnailView *thumbnail = view.cards().first()->findChild<ThumbnailView *>();
        QVERIFY(!thumbnail->hasImage());
        QCOMPARE(thumbnail->placeholderText(), QStringLiteral("No preview available"));
        QTest::failOnWarning(QRegularExpression(".*"));
        for (int i = 0; i < 5; ++i) // painting never decodes again
            view.cards().first()->repaint();

        state.storeThumbnail(studio.id, jpeg());
        QTRY_VERIFY(thumbnail->hasImage());
        state.updateConnectionStatus(studio.id, false);
        QVERIFY(thumbnail->hasImage());
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(DashboardViewTest)
#include "DashboardViewTest.moc"
