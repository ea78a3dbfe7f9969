#include "DownloadProgressContent.h"

#include <QCoreApplication>

#include <cmath>

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("DownloadProgressContent", text);
}
} // namespace

int DownloadProgressContent::wholePercent(double progress)
{
    if (!(progress > 0)) // NaN too
        return 0;
    if (progress >= 1)
        return 100;
    return int(std::floor(progress * 100));
}

DownloadProgressContent DownloadProgressContent::forPhase(const DownloadPhase &phase,
                                                          double progress)
{
    DownloadProgressContent content;
    switch (phase.kind()) {
    case DownloadPhase::Kind::idle:
    case DownloadPhase::Kind::preparing:
        content.bar = Bar::indeterminate;
        content.title = tr("Preparing download\u2026");
        break;
    case DownloadPhase::Kind::downloading:
        content.bar = Bar::determinate;
        content.barPercent = wholePercent(progress);
        content.title = tr("Downloading\u2026 %1%").arg(content.barPercent);
        break;
    case DownloadPhase::Kind::finished:
        content.symbol = Symbol::success;
        content.title = tr("Download complete");
        content.showsShowInFinder = true;
        content.showsClose = true;
        break;
    case DownloadPhase::Kind::failed:
        content.symbol = Symbol::warning;
        content.title = tr("Download failed");
        content.detail = phase.message();
        content.showsRetry = true;
        content.showsClose = true;
        break;
    case DownloadPhase::Kind::cancelled:
        content.title = tr("Download cancelled.");
        content.showsClose = true;
        break;
    }
    return content;
}
