#include "ComputerPreviewViewSnapshot.h"

#include "ReportedText.h"

#include <cmath>

QString ComputerPreviewViewSnapshot::displayName() const
{
    return computerSnapshot.displayName();
}

QString ComputerPreviewViewSnapshot::connectionText() const
{
    return computerSnapshot.connectionString();
}

QString ComputerPreviewViewSnapshot::description() const
{
    return computerSnapshot.description.value_or(QString());
}

ComputerPreviewViewSnapshot::LiveFlags
ComputerPreviewViewSnapshot::liveFlags(const QList<RemoteComputer> &computers) const
{
    const RemoteComputer *live = &computerSnapshot;
    for (const RemoteComputer &computer : computers) {
        if (computer.id == computerSnapshot.id) {
            live = &computer;
            break;
        }
    }
    return {live->isConnected, live->isConnecting, live->lastError};
}

std::optional<ComputerPreviewViewSnapshot::StatusLine>
ComputerPreviewViewSnapshot::statusLine(const LiveFlags &flags)
{
    if (flags.isConnecting)
        return StatusLine{tr("Starting connection..."), Tone::blue};
    if (!flags.isConnected && flags.lastError)
        return StatusLine{ReportedText::shown(*flags.lastError), Tone::red};
    return std::nullopt;
}

QList<DetailAction> ComputerPreviewViewSnapshot::actionBar(const LiveFlags &flags)
{
    using Effect = DetailAction::Effect;
    DetailAction connect;
    if (flags.isConnected)
        connect = {tr("Disconnect"), QStringLiteral("xmark.circle.fill"), true, Effect::disconnect};
    else if (flags.isConnecting)
        connect = {tr("Connecting..."), QStringLiteral("hourglass"), false, Effect::none};
    else
        connect = {tr("Connect"), QStringLiteral("play.fill"), true, Effect::connect};
    const bool connected = flags.isConnected;
    return {
        connect,
        {tr("Remote Control"), QStringLiteral("cursorarrow.click"), connected,
         Effect::openRemoteControl},
        {tr("Upload File"), QStringLiteral("square.and.arrow.up"), connected,
         Effect::chooseFileToUpload},
        {tr("Edit"), QStringLiteral("pencil"), !connected, Effect::openEditForm},
        {tr("Remove"), QStringLiteral("trash"), !connected, Effect::confirmRemoval},
    };
}

QString ComputerPreviewViewSnapshot::statusSubtitle(const LiveFlags &flags)
{
    return flags.isConnected ? tr("Live data from the connected Mac")
                             : tr("Last known data is shown when available");
}

double ComputerPreviewViewSnapshot::shownTransferProgress() const
{
    if (std::isnan(fileTransferProgress))
        return 0;
    return std::clamp(fileTransferProgress, 0.0, 1.0);
}

QString ComputerPreviewViewSnapshot::transferTitle() const
{
    return tr("Uploading: %1").arg(fileTransferFileName);
}

Alert ComputerPreviewViewSnapshot::removalConfirmation() const
{
    Alert alert;
    alert.style = Alert::Style::warning;
    alert.title = tr("Remove Computer");
    alert.text = tr("Are you sure you want to remove '%1'? This action cannot be undone.")
                     .arg(displayName());
    alert.buttons = {tr("Remove"), tr("Cancel")};
    alert.destructiveButton = 0;
    alert.cancelButton = 1;
    return alert;
}
