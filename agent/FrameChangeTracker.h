#pragma once

#include <QHash>
#include <QMutex>
#include <QtGlobal>

// Remembers, per stream, a digest of the last frame sent, so a stream whose screen did
// not change sends nothing. Thread-safe.
class FrameChangeTracker {
public:
    // Fast non-cryptographic digest of a pixel buffer (rows of `rowBytes` at `stride`).
    static quint64 digest(const uchar *pixels, int rowBytes, int rows, int stride);

    // True when `digest` differs from the one last stored for `streamKey` (or none is),
    // and stores it.
    bool update(quintptr streamKey, quint64 digest);
    void forget(quintptr streamKey);

private:
    QMutex m_mutex;
    QHash<quintptr, quint64> m_lastDigest;
};
