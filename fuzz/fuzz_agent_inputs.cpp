// What the agent reads from outside: upload names from the network, the credentials file
// (anyone with the account can edit it) and kernel/system files. The first byte picks the
// reader; the rest is its input.
#include "CredentialsFile.h"
#include "LinuxSystemFacts.h"
#include "UploadReceiver.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray input(reinterpret_cast<const char *>(data + 1), qsizetype(size - 1));
    switch (data[0] % 6) {
    case 0: {
        const QString name = UploadReceiver::safeFileName(QString::fromUtf8(input));
        if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
            name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) ||
            name.startsWith(QLatin1Char('.')) || name.toUtf8().size() > 240)
            std::abort();
        for (const QChar c : name)
            if (c.category() == QChar::Other_Control)
                std::abort();
        break;
    }
    case 1:
        if (const auto entry = CredentialsFile::parseLine(input)) {
            const auto again = CredentialsFile::parseLine(CredentialsFile::formatLine(*entry));
            if (!again || again->user != entry->user || again->hash != entry->hash ||
                again->salt != entry->salt || again->n != entry->n)
                std::abort();
        }
        break;
    case 2: {
        const auto a = LinuxSystemFacts::parseCpuTimes(input);
        const auto b = LinuxSystemFacts::parseCpuTimes(input + "\ncpu  9 9 9 9 9 9 9 9\n");
        if (a && b)
            if (const auto f = LinuxSystemFacts::cpuFraction(*a, *b); f && (*f < 0 || *f > 1))
                std::abort();
        LinuxSystemFacts::parseBootTime(input);
        LinuxSystemFacts::parseUptime(input);
        break;
    }
    case 3:
        if (const auto m = LinuxSystemFacts::parseMemInfo(input);
            m && m->availableBytes > m->totalBytes)
            std::abort();
        LinuxSystemFacts::parseOsRelease(input);
        break;
    case 4:
        for (const auto &mount : LinuxSystemFacts::parseBlockMounts(input))
            if (!mount.device.startsWith(QLatin1String("/dev/")))
                std::abort();
        break;
    default:
        LinuxSystemFacts::parseDefaultRouteInterface(input);
        LinuxSystemFacts::parseLogindSession(input);
        LinuxSystemFacts::cleanDmiValue(input);
        break;
    }
    return 0;
}
