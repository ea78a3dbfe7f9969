// What the crash-report helper reads on standard input: whatever arrives, it is refused with
// a reason or accepted as a report whose body holds it unchanged (less the last line feed).
#include "services/CrashReport.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    QString error;
    const std::optional<CrashReport> report = CrashReport::fromHelperInput(input, &error);
    if (!report) {
        if (error.isEmpty())
            std::abort();
        return 0;
    }
    if (!input.startsWith(report->text()) || input.size() - report->text().size() > 1)
        std::abort();
    const QByteArray body = report->multipartBody("b");
    if (body.size() != report->text().size() + 65 || report->userAgent().isEmpty())
        std::abort();
    return 0;
}
