#pragma once

#include "model/LogManager.h"

#include <QCoreApplication>
#include <QStringList>

// The in-app log as (category, message) pairs, split on the brackets of each entry so the
// time text is never matched.
namespace LogLines {

struct Line {
    QString category;
    QString message;
};

inline void clear()
{
    QCoreApplication::processEvents();
    LogManager::shared().clearLogs();
    QCoreApplication::processEvents();
}

inline QList<Line> all()
{
    QCoreApplication::processEvents();
    QList<Line> lines;
    for (const QString &entry : LogManager::shared().logs()) {
        const qsizetype open = entry.indexOf(QStringLiteral("] ["));
        const qsizetype close = entry.indexOf(QStringLiteral("] "), open + 3);
        if (open < 0 || close < 0)
            continue;
        lines.append({entry.mid(open + 3, close - open - 3), entry.mid(close + 2)});
    }
    return lines;
}

inline int count(const QString &category, const QString &message)
{
    int n = 0;
    for (const Line &line : all())
        n += line.category == category && line.message == message;
    return n;
}

inline int countStartingWith(const QString &message)
{
    int n = 0;
    for (const Line &line : all())
        n += line.message.startsWith(message);
    return n;
}

} // namespace LogLines
