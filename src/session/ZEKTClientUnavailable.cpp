// Until the wire protocol client is merged, making a real client fails with a clear error.
#include "protocol/ZEKTClient.h"

std::shared_ptr<ZEKTClient> ZEKTClient::create(const QString &, quint16)
{
    throw ZEKTError(QStringLiteral("The session protocol client is not part of this build"));
}
