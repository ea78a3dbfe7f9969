#include "AgentLog.h"

#include <QDateTime>

#include <unistd.h>

void AgentLog::write(const QString &category, const QString &message)
{
    QString text = message;
    // One event, one line: embedded line breaks would split it.
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    const QByteArray line =
        (QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs) + QLatin1Char(' ') + category +
         QStringLiteral(": ") + text + QLatin1Char('\n'))
            .toUtf8();
    const char *data = line.constData();
    qsizetype left = line.size();
    while (left > 0) {
        const ssize_t n = ::write(STDERR_FILENO, data, size_t(left));
        if (n <= 0)
            return;
        data += n;
        left -= n;
    }
}

void AgentLog::installQtMessageHandler()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        static const char *const names[] = {"debug", "warning", "critical", "fatal", "info"};
        write(QStringLiteral("qt-%1").arg(QLatin1String(names[qBound(0, int(type), 4)])), message);
    });
}
