#include "DateTimeText.h"

#include <QRegularExpression>

QString DateTimeText::dateFormat(const QLocale &locale)
{
    QString pattern = locale.dateFormat(QLocale::LongFormat);
    // The weekday ("dddd" or "ddd") with the separators around it.
    static const QRegularExpression weekday(QStringLiteral("[\\s,\u060C]*(?<!d)d{3,4}(?!d)[\\s,.\u060C]*"));
    QRegularExpressionMatch match;
    while ((match = weekday.match(pattern)).hasMatch()) {
        const bool inside = match.capturedStart() > 0 && match.capturedEnd() < pattern.size();
        pattern.replace(match.capturedStart(), match.capturedLength(),
                        inside ? QStringLiteral(" ") : QString());
    }
    static const QRegularExpression fullMonth(QStringLiteral("(?<!M)MMMM(?!M)"));
    pattern.replace(fullMonth, QStringLiteral("MMM"));
    return pattern.trimmed();
}

QString DateTimeText::format(const QDateTime &moment, const QLocale &locale)
{
    const QDateTime local = moment.toLocalTime();
    return tr("%1 at %2")
        .arg(locale.toString(local.date(), dateFormat(locale)),
             locale.toString(local.time(), QLocale::ShortFormat));
}
