#include "ReportedText.h"

namespace ReportedText {

QString shown(const QString &reported)
{
    QString text = reported.left(maxShownLength * 2);
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = QLatin1Char(' ');
    }
    text = text.simplified();
    if (text.size() > maxShownLength) {
        int cut = maxShownLength;
        if (text.at(cut - 1).isHighSurrogate()) // never split a character in two
            --cut;
        text = text.left(cut) + QChar(0x2026);
    }
    return text;
}

} // namespace ReportedText
