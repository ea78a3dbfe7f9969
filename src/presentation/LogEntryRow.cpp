#include "LogEntryRow.h"

namespace {

// Removes leading and trailing characters that are blanks or one of `marks`.
QString trimmed(QStringView text, QStringView marks)
{
    const auto strip = [marks](QChar c) { return c.isSpace() || marks.contains(c); };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && strip(text.at(begin)))
        ++begin;
    while (end > begin && strip(text.at(end - 1)))
        --end;
    return text.sliced(begin, end - begin).toString();
}

} // namespace

LogEntryRow LogEntryRow::parse(const QString &entry)
{
    const qsizetype first = entry.indexOf(QLatin1Char(']'));
    const qsizetype second = first < 0 ? -1 : entry.indexOf(QLatin1Char(']'), first + 1);
    if (second < 0)
        return {QString(), QStringLiteral("INFO"), entry};
    const QStringView view(entry);
    return {trimmed(view.first(first), u"["),
            trimmed(view.sliced(first + 1, second - first - 1), u"[]"),
            view.sliced(second + 1).trimmed().toString()};
}

Tone LogEntryRow::categoryTone(const QString &category)
{
    if (category == QLatin1String("ERROR"))
        return Tone::red;
    if (category == QLatin1String("WARN"))
        return Tone::orange;
    return Tone::secondary;
}
