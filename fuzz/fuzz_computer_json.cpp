// The stored computer list is read back from a settings file anyone can edit: the
// decoder must reject garbage cleanly, and what it accepts must survive a round trip.
#include "model/ComputerJson.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto decoded = ComputerJson::decodeList(input);
    if (!decoded)
        return 0;
    QString error;
    const QByteArray encoded = ComputerJson::encodeList(*decoded, &error);
    if (encoded.isEmpty())
        return 0; // a value that cannot be written (a non-finite number) is reported
    const auto again = ComputerJson::decodeList(encoded);
    if (!again || again->size() != decoded->size())
        std::abort();
    return 0;
}
