#include "AppVersion.h"

namespace AppVersion {

QString running()
{
    return QStringLiteral(TELVANE_SERVICES_VERSION).trimmed();
}

} // namespace AppVersion
