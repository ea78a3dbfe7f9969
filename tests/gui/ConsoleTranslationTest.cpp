// The console under its German translation: every entry of translations/telvane_de.ts is
// finished, and the main window (sidebar, menus, logs, settings), the dashboard and a
// computer's detail show no English text that has a German one.
#include "FakeZEKTManager.h"
#include "SampleStatistics.h"
#include "app/MainWindow.h"
#include "platform/SettingsFiles.h"
#include "state/AppState.h"
#include "state/MainWindowState.h"
#include "ui/ComputerListView.h"
#include "ui/ElidedLabel.h"
#include "ui/SettingsView.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTest>
#include <QTranslator>
#include <QXmlStreamReader>

namespace {

// The English texts that have, or lack, a German translation different from themselves, as
// patterns (a placeholder stands for any text). Unfinished or empty entries go to `faults`.
QList<QRegularExpression> translatedSources(QStringList &faults)
{
    QFile file(QStringLiteral(TELVANE_CONSOLE_TS));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", TELVANE_CONSOLE_TS);
    QList<QRegularExpression> sources;
    QXmlStreamReader xml(&file);
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool unfinished = xml.attributes().value("type") == QLatin1String("unfinished");
            const QString translation = xml.readElementText();
            if (unfinished || translation.isEmpty())
                faults << QStringLiteral("unfinished: ") + source;
            // A unit beside a placeholder ("%1m") would match any word: such a pattern needs
            // a word of its own.
            static const QRegularExpression word(QStringLiteral("\\p{L}{3}"));
            const bool specific =
                !source.contains(QLatin1Char('%')) || word.match(source).hasMatch();
            if ((unfinished || translation != source) && specific) {
                QStringList pieces = source.split(QRegularExpression(QStringLiteral("%\\d")));
                for (QString &piece : pieces)
                    piece = QRegularExpression::escape(piece);
                sources << QRegularExpression(QLatin1Char('^') + pieces.join(QStringLiteral(".*")) +
                                              QLatin1Char('$'));
            }
        }
    }
    return sources;
}

void addActionTexts(const QList<QAction *> &actions, QStringList &texts)
{
    for (const QAction *action : actions) {
        texts << action->text();
        if (action->menu())
            addActionTexts(action->menu()->actions(), texts);
    }
}

// What a window shows and says to assistive technology, pages hidden or not.
QStringList textsOf(const QWidget *root)
{
    QStringList texts{root->windowTitle()};
    QList<QWidget *> widgets = root->findChildren<QWidget *>();
    widgets << const_cast<QWidget *>(root);
    for (const QWidget *widget : std::as_const(widgets)) {
        texts << widget->accessibleName() << widget->accessibleDescription() << widget->toolTip();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            texts << label->text();
        if (const auto *label = qobject_cast<const ElidedLabel *>(widget))
            texts << label->text();
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            texts << button->text();
        if (const auto *box = qobject_cast<const QGroupBox *>(widget))
            texts << box->title();
        if (const auto *view = qobject_cast<const QAbstractItemView *>(widget);
            view && view->model())
            for (int row = 0; row < view->model()->rowCount(); ++row)
                texts << view->model()->index(row, 0).data().toString();
        addActionTexts(widget->actions(), texts);
    }
    return texts;
}

// A text is left in English when it, or a part of it joined by ": " or ", ", is a
// translated source.
QStringList englishIn(const QStringList &texts, const QList<QRegularExpression> &sources)
{
    QStringList english;
    for (const QString &text : texts) {
        QStringList parts{text};
        parts << text.split(QRegularExpression(QStringLiteral(": |, ")));
        for (const QString &part : parts)
            for (const QRegularExpression &source : sources)
                if (!part.isEmpty() && source.match(part).hasMatch() && !english.contains(part))
                    english << part;
    }
    return english;
}

} // namespace

class ConsoleTranslationTest : public QObject {
    Q_OBJECT

    QTranslator m_translator;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_translator.load(QStringLiteral(":/i18n/telvane_de.qm")));
        QVERIFY(QCoreApplication::installTranslator(&m_translator));
    }

    void everyEntryIsTranslatedAndNoWindowShowsEnglish()
    {
        QStringList faults;
        const QList<QRegularExpression> sources = translatedSources(faults);
        QVERIFY(sources.size() > 200);

        QFile::remove(SettingsFiles::sharedSuitePath());
        AppState state(std::make_unique<FakeZEKTManager>());
        RemoteComputer studio, lab;
        studio.name = QStringLiteral("Studio");
        studio.host = QStringLiteral("studio.local");
        studio.systemStats = SampleStatistics::everyPill();
        studio.systemStats->serialNumber = QStringLiteral("C02XYZ");
        studio.systemStats->fileVaultEnabled = true;
        studio.systemStats->gatekeeperEnabled = false;
        studio.systemStats->mdmEnrolled = false;
        studio.systemStats->lastBootTime = QDateTime::currentDateTime().addDays(-1);
        studio.systemStats->lastWakeCause = QStringLiteral("EC.LidOpen");
        studio.systemStats->diskVolumes = QList<DiskVolumeInfo>{{"Data", "/", 1000, 400}};
        lab.host = QStringLiteral("10.0.0.9");
        state.addComputer(studio);
        state.addComputer(lab);
        state.updateConnectionStatus(studio.id, true);

        MainWindow window(state);
        window.show();
        window.appear();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // With TELVANE_SCREENSHOT_DIR set, each page is kept there to check that it fits.
        const QString shots = qEnvironmentVariable("TELVANE_SCREENSHOT_DIR");
        const auto look = [&](QWidget *shown, const char *name) {
            QCoreApplication::processEvents();
            if (!shots.isEmpty())
                shown->grab().save(QDir(shots).filePath(QLatin1String(name)));
            return textsOf(shown);
        };
        QStringList texts = look(&window, "de-dashboard.png");
        addActionTexts(window.menuBar()->actions(), texts);
        window.state()->select(NavigationItem::computer(studio.id));
        texts << look(&window, "de-detail.png");
        window.state()->select(NavigationItem::logs());
        texts << look(&window, "de-logs.png");
        window.showSettings();
        texts << look(window.settingsWindow(), "de-settings.png");
        QVERIFY(texts.contains(QStringLiteral("&Datei")));    // the translation is in use
        QVERIFY(texts.contains(QStringLiteral("Übersicht"))); // the sidebar's

        faults << englishIn(texts, sources);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QStringLiteral("\n"))));
        state.waitForPendingWrites();
    }
};

QTEST_MAIN(ConsoleTranslationTest)
#include "ConsoleTranslationTest.moc"
