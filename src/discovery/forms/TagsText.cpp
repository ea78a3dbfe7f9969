#include "TagsText.h"

namespace {

bool isSpaceOrTab(QChar c)
{
    return c == u' ' || c == u'\t';
}

} // namespace

QString TagsText::join(const QStringList &tags)
{
    return tags.join(QStringLiteral(", "));
}

QStringList TagsText::split(QStringView text)
{
    QStringList tags;
    for (QStringView piece : text.split(u',', Qt::SkipEmptyParts)) {
        while (!piece.isEmpty() && isSpaceOrTab(piece.front()))
            piece = piece.sliced(1);
        while (!piece.isEmpty() && isSpaceOrTab(piece.back()))
            piece.chop(1);
        tags.append(piece.toString());
    }
    return tags;
}
