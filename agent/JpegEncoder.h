#pragma once

#include <QByteArray>
#include <QString>

// Encodes BGRX pixels to JPEG (4:2:0) with TurboJPEG. Not thread-safe: one per caller,
// or guarded by the caller.
class JpegEncoder {
public:
    JpegEncoder();
    ~JpegEncoder();
    JpegEncoder(const JpegEncoder &) = delete;
    JpegEncoder &operator=(const JpegEncoder &) = delete;

    // Wire quality 0…1 → TurboJPEG quality round(q × 100), kept within 1…100.
    static int turboQuality(float quality);

    // Empty on failure, with the reason in lastError().
    QByteArray encode(const uchar *bgrx, int width, int height, int stride, float quality);
    QString lastError() const { return m_lastError; }

private:
    void *m_handle = nullptr;
    QString m_lastError;
};
