#include "LogManager.h"

#include <QCoreApplication>
#include <QLocale>
#include <QThread>
#include <QTime>
#include <cstdio>
#include <utility>
#include <utility>

namespace {

// The locale's long time format carries seconds; drop its time zone, which also keeps
// brackets out of the time text.
QString timeFormat()
{
    QString format = QLocale::system().timeFormat(QLocale::LongFormat);
    format.remove(QLatin1Char('t'));
    format.remove(QLatin1Char('['));
    format.remove(QLatin1Char(']'));
    format = format.trimmed();
    if (!format.contains(QLatin1Char('s')))
        format = QStringLiteral("HH:mm:ss");
    return format;
}

} // namespace

LogManager::LogManager()
{
    // Appends run on the application's thread, whichever thread created the log.
    if (auto *app = QCoreApplication::instance(); app && thread() != app->thread())
        moveToThread(app->thread());
}

LogManager &LogManager::shared()
{
    static LogManager *instance = new LogManager;
    return *instance;
}

QString LogManager::formatEntry(const QString &message, const QString &category)
{
    static const QLocale locale = QLocale::system();
    static const QString format = timeFormat();
    const QString time = locale.toString(QTime::currentTime(), format);
    return QLatin1Char('[') + time + QStringLiteral("] [") + category + QStringLiteral("] ") +
           message;
}

void LogManager::logOnce(bool &logged, const QString &message, const QString &category)
{
    if (!std::exchange(logged, true))
        log(message, category);
}

void LogManager::log(const QString &message, const QString &category)
{
    const QString entry = formatEntry(message, category);
    QMetaObject::invokeMethod(
        this, [this, entry] { append(entry); }, Qt::QueuedConnection);
    // One write per line so lines from several threads never interleave.
    const QByteArray line = entry.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

void LogManager::clearLogs()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_logs.clear();
            Q_EMIT cleared();
            Q_EMIT logsChanged();
        },
        Qt::QueuedConnection);
}

void LogManager::append(const QString &entry)
{
    m_logs.append(entry);
    Q_EMIT entriesAppended(QStringList{entry});
    if (const qsizetype excess = m_logs.size() - maxLogs; excess > 0) {
        m_logs.remove(0, excess);
        Q_EMIT oldestEntriesDropped(int(excess));
    }
    Q_EMIT logsChanged();
}
