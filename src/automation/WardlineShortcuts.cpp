#include "WardlineShortcuts.h"

namespace {

QString normalized(QStringView text)
{
    return text.toString().simplified().toCaseFolded();
}

} // namespace

const IntentTable::Entry *WardlineShortcuts::match(QStringView phrase)
{
    const QString wanted = normalized(phrase);
    if (wanted.isEmpty())
        return nullptr;
    for (const IntentTable::Entry &entry : IntentTable::entries()) {
        for (const QStringList &phrases :
             {IntentTable::phrases(entry), IntentTable::sourcePhrases(entry)}) {
            for (const QString &candidate : phrases) {
                if (normalized(candidate) == wanted)
                    return &entry;
            }
        }
    }
    return nullptr;
}

QString WardlineShortcuts::listing()
{
    QString text;
    for (const IntentTable::Entry &entry : IntentTable::entries()) {
        for (const QString &phrase : IntentTable::phrases(entry))
            text += phrase + QLatin1Char('\t') + IntentTable::text(entry.shortTitle) +
                    QLatin1Char('\n');
    }
    return text;
}
