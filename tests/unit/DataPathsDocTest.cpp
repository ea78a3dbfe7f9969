// README's "Where Telvane keeps its data" and the stand-ins of docs/architecture.md name the
// files Telvane really uses: every `~/…` path there is one the code (or scripts/run.sh)
// uses with the default folders, and every file Telvane keeps is in README's table.

#include "AgentOptions.h"
#include "ZEKTKnownAgents.h"
#include "platform/AppPaths.h"
#include "platform/SettingsFiles.h"
#include "platform/SuiteCopies.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

QString readSource(const char *relative)
{
    QFile file(QStringLiteral(TELVANE_SOURCE_DIR "/") + QLatin1String(relative));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The text from a "## " heading to the next one.
QString section(const QString &markdown, const QString &heading)
{
    const qsizetype start = markdown.indexOf(QStringLiteral("\n## ") + heading + u'\n');
    if (start < 0)
        return {};
    const qsizetype end = markdown.indexOf(QStringLiteral("\n## "), start + 4);
    return markdown.mid(start, end < 0 ? -1 : end - start);
}

// Every `~/…` path in the text, with ~ made the home folder and no trailing slash.
QStringList homePaths(const QString &text)
{
    static const QRegularExpression quoted(QStringLiteral("`(~/[^`]*)`"));
    QStringList paths;
    for (const auto &match : quoted.globalMatch(text)) {
        QString path = QDir::homePath() + match.captured(1).mid(1);
        while (path.endsWith(u'/'))
            path.chop(1);
        paths << path;
    }
    return paths;
}

class DataPathsDoc : public testing::Test {
protected:
    void SetUp() override
    {
        // The folders README describes: no XDG overrides.
        ASSERT_TRUE(m_home.isValid());
        qputenv("HOME", QFile::encodeName(m_home.path()));
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"})
            qunsetenv(name);
    }

    QTemporaryDir m_home;
};

} // namespace

TEST_F(DataPathsDoc, DocumentedPathsAreTheOnesInUse)
{
    const QString suite = SettingsFiles::sharedSuitePath();
    const QString thumbnails = AppPaths::thumbnailsDirectory();
    // What Telvane keeps, each a row of README's table.
    const QStringList kept = {
        SettingsFiles::openStandard()->fileName(),
        suite,
        ZEKTKnownAgents::defaultPath(),
        suite + u'.' + QLatin1String(SuiteCopies::unparseable) + QStringLiteral("-<time>"),
        suite + u'.' + QLatin1String(SuiteCopies::undecodable) + QStringLiteral("-<time>"),
        thumbnails + QStringLiteral("/<computer id>.jpg"),
        AppPaths::stagedUploadsDirectory(),
        AgentOptions::defaultConfigDir(),
    };
    // Folders the text may name besides: Telvane's own and the user's around them.
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QStringList known = kept;
    known << AppPaths::configurationDirectory()
          << QFileInfo(AppPaths::sharedContainerDirectory()).absolutePath() << thumbnails
          << QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) << data
          << QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // The local agent of scripts/run.sh.
    static const QRegularExpression runState(
        QStringLiteral(R"re(state="\$\{XDG_DATA_HOME:-\$HOME/\.local/share\}(/[^"]+)")re"));
    const auto match = runState.match(readSource("scripts/run.sh"));
    ASSERT_TRUE(match.hasMatch());
    known << data + match.captured(1);

    const QString readme =
        section(readSource("README.md"), QStringLiteral("Where Telvane keeps its data"));
    ASSERT_FALSE(readme.isEmpty());
    const QStringList documented =
        homePaths(readme) + homePaths(readSource("docs/architecture.md"));
    for (const QString &path : documented)
        EXPECT_TRUE(known.contains(path)) << path.toStdString() << " is not a path Telvane uses";
    const QStringList table = homePaths(readme);
    for (const QString &path : kept)
        EXPECT_TRUE(table.contains(path)) << path.toStdString() << " is missing from README";
}
