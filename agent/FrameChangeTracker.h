#pragma once

#include <QHash>
#include <QMutex>
#include <QtGlobal>

// Remembers, per stream, the version of the screen content last sent, so a stream whose
// screen did not change sends nothing. Providers bump their version whenever a capture
// finds changed pixels. Thread-safe.
class FrameChangeTracker {
public:
    // True when `version` differs from the one last stored for `streamKey` (or none is),
    // and stores it.
    bool update(quintptr streamKey, quint64 version);
    void forget(quintptr streamKey);

private:
    QMutex m_mutex;
    QHash<quintptr, quint64> m_lastVersion;
};
