#pragma once

#include "DetailAction.h"
#include "DetailSegment.h"
#include "Tone.h"
#include "model/RemoteComputer.h"
#include "platform/Alert.h"

#include <QCoreApplication>
#include <QList>
#include <optional>

// What the computer detail shows: the computer as it was selected, the upload in
// progress, and the rules that turn the live connection flags into the header's status
// line and the action bar. The flags come from the store's list by id, or from the
// snapshot once the computer is gone.
struct ComputerPreviewViewSnapshot {
    struct LiveFlags {
        bool isConnected = false;
        bool isConnecting = false;
        std::optional<QString> lastError;
        bool operator==(const LiveFlags &) const = default;
    };
    struct StatusLine {
        QString text;
        Tone tone = Tone::secondary;
        bool operator==(const StatusLine &) const = default;
    };
    // The buttons in bar order.
    enum ActionIndex { connectAction, remoteControlAction, uploadAction, editAction, removeAction };

    RemoteComputer computerSnapshot;
    bool isFileTransferInProgress = false;
    QString fileTransferFileName;
    double fileTransferProgress = 0;
    QString fileTransferStatus;
    DetailSegment selectedDetailSegment = DetailSegment::status;

    // The display name: the name when not empty, else the host.
    QString displayName() const;
    // "host:port".
    QString connectionText() const;
    // The description, empty when there is none.
    QString description() const;

    LiveFlags liveFlags(const QList<RemoteComputer> &computers) const;
    // "Starting connection..." while connecting, else the error while not connected.
    static std::optional<StatusLine> statusLine(const LiveFlags &flags);
    static QList<DetailAction> actionBar(const LiveFlags &flags);
    static QString statusSubtitle(const LiveFlags &flags);
    // The upload's progress, 0 to 1 whatever was reported.
    double shownTransferProgress() const;
    QString transferTitle() const;
    // The removal confirmation: "Remove" is destructive, "Cancel" cancels.
    Alert removalConfirmation() const;

    Q_DECLARE_TR_FUNCTIONS(ComputerPreviewViewSnapshot)
};
