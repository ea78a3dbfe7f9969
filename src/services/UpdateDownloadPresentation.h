#pragma once

#include "UpdateInfo.h"

#include <QUrl>
#include <QUuid>

// One offer of a newer version to the user. Each offer has a fresh id, so a second offer opens
// a new sheet instead of reusing the first.
struct UpdateDownloadPresentation {
    QUuid id;
    UpdateInfo info;
    QUrl fileURL; // the resolved installer address
};
