#include "UpdateType.h"

UpdateType updateTypeFromWord(const QString &word)
{
    if (word == QLatin1String("Major"))
        return UpdateType::major;
    if (word == QLatin1String("Patch"))
        return UpdateType::patch;
    return UpdateType::minor;
}
