// Writes telvane.desktop from the automation actions' table, so the launcher's actions
// carry the same short titles and icons as telvanectl and the console.
//
// Usage: write_desktop_entry OUTPUT

#include "automation/IntentTable.h"
#include "platform/IconTable.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QSaveFile>
#include <QTranslator>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

// Exec lines: status needs no computer, so telvanectl answers it; the other actions need
// one chosen, which is the console's job.
QString execFor(const IntentTable::Entry &entry)
{
    if (QLatin1String(entry.command) == QLatin1String("status"))
        return QStringLiteral("telvanectl %1").arg(QLatin1String(entry.command));
    return QStringLiteral("telvane");
}

// The built-in translations of the actions' texts, by language ("de").
struct Translation {
    QString language;
    std::unique_ptr<QTranslator> translator;
};

std::vector<Translation> translations()
{
    std::vector<Translation> list;
    QDirIterator files(QStringLiteral(":/i18n"), {QStringLiteral("telvanectl_*.qm")});
    while (files.hasNext()) {
        const QString path = files.next();
        auto translator = std::make_unique<QTranslator>();
        if (translator->load(path))
            list.push_back(
                {translator->language().section(QLatin1Char('_'), 0, 0), std::move(translator)});
    }
    return list;
}

// Name=, then Name[language]= for every translation that has the text.
QString names(const char *source, const std::vector<Translation> &translations)
{
    QString text = QStringLiteral("Name=%1\n").arg(QString::fromUtf8(source));
    for (const Translation &translation : translations) {
        const QString translated = translation.translator->translate("IntentTable", source);
        if (!translated.isEmpty())
            text += QStringLiteral("Name[%1]=%2\n").arg(translation.language, translated);
    }
    return text;
}

QString desktopEntry()
{
    const std::vector<Translation> translated = translations();
    QString text = QStringLiteral("[Desktop Entry]\n"
                                  "Type=Application\n"
                                  "Version=1.4\n"
                                  "Name=Telvane\n"
                                  "GenericName=Fleet Console\n"
                                  "Comment=Supervise the computers of your fleet\n"
                                  "Exec=telvane\n"
                                  "TryExec=telvane\n"
                                  "Icon=telvane\n"
                                  "Terminal=false\n"
                                  "Categories=Network;RemoteAccess;\n"
                                  "Keywords=remote;control;screen;fleet;supervise;agent;\n"
                                  "StartupNotify=true\n"
                                  "StartupWMClass=telvane\n"
                                  "Actions=");
    for (const IntentTable::Entry &entry : IntentTable::entries())
        text += QLatin1String(entry.command) + QLatin1Char(';');
    text += QLatin1Char('\n');
    for (const IntentTable::Entry &entry : IntentTable::entries()) {
        const IconTable::Entry *icon = IconTable::find(QString::fromLatin1(entry.symbol));
        text += QStringLiteral("\n[Desktop Action %1]\n").arg(QLatin1String(entry.command)) +
                names(entry.shortTitle, translated) +
                QStringLiteral("Icon=%1\nExec=%2\n")
                    .arg(icon ? QLatin1String(icon->themeName) : QLatin1String("telvane"),
                         execFor(entry));
    }
    return text;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: write_desktop_entry OUTPUT\n", stderr);
        return 2;
    }
    QSaveFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QIODevice::WriteOnly) || file.write(desktopEntry().toUtf8()) < 0 ||
        !file.commit()) {
        std::fprintf(stderr, "write_desktop_entry: %s\n", qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
