#include "CrashReportHelper.h"

#include "services/CrashReport.h"
#include "services/CrashReportUpload.h"
#include "services/HttpSession.h"
#include "ui/QtAlertPresenter.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

// Standard input up to one byte past the limit, so an oversized report is told apart.
QByteArray readStandardInput()
{
    QByteArray input;
    char chunk[65536];
    while (input.size() <= CrashReport::maxInputSize) {
        const ssize_t count = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        input.append(chunk, count);
    }
    return input;
}

// The dying console waits for this byte; once it has it, it goes on to die.
void tellParent()
{
    const char done = '\n';
    while (::write(STDOUT_FILENO, &done, 1) < 0 && errno == EINTR) {
    }
    ::close(STDOUT_FILENO);
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") ||
           !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

int CrashReportHelper::run(int argc, char *argv[])
{
    QString error;
    const std::optional<CrashReport> report =
        CrashReport::fromHelperInput(readStandardInput(), &error);

    // Widgets only when there is something to show them on; the upload goes out before
    // any window is made.
    const bool display = hasDisplay();
    std::unique_ptr<QCoreApplication> app = display
                                                ? std::make_unique<QApplication>(argc, argv)
                                                : std::make_unique<QCoreApplication>(argc, argv);
    if (report) {
        CrashReportUpload upload(HttpSession::shared().manager());
        QEventLoop loop;
        QObject::connect(&upload, &CrashReportUpload::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(uploadWaitMs, &loop, &QEventLoop::quit);
        if (upload.send(*report))
            loop.exec();
        else
            std::fputs("telvane: crash report not sent: no address for the crash-report "
                       "endpoint\n",
                       stderr);
    } else {
        std::fprintf(stderr, "telvane: --crash-report: %s\n", qPrintable(error));
    }

    const Alert alert = CrashReport::alert();
    std::fprintf(stderr, "%s\n\n%s\n", qPrintable(alert.title), qPrintable(alert.text));
    std::fflush(stderr);
    tellParent();

    if (display) {
        QtAlertPresenter presenter;
        const AlertPresenter::Handle handle = presenter.newHandle();
        QTimer::singleShot(alertTimeoutMs, app.get(),
                           [&presenter, handle] { presenter.abortModal(handle); });
        presenter.runModal(alert, handle);
    }
    return report ? reported : badReport;
}
