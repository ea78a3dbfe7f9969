#pragma once

#include <QByteArrayView>
#include <QString>

// Encodes BGRX pixels to JPEG (4:2:0) with TurboJPEG into a buffer it keeps, so a stream of
// frames allocates nothing per frame. Not thread-safe: one per caller, or guarded by the
// caller.
class JpegEncoder {
public:
    JpegEncoder();
    ~JpegEncoder();
    JpegEncoder(const JpegEncoder &) = delete;
    JpegEncoder &operator=(const JpegEncoder &) = delete;

    // Wire quality 0…1 → TurboJPEG quality round(q × 100), kept within 1…100.
    static int turboQuality(float quality);

    // The JPEG, valid until the next encode() or release(). Empty on failure, with the
    // reason in lastError().
    QByteArrayView encode(const uchar *bgrx, int width, int height, int stride, float quality);
    QString lastError() const { return m_lastError; }
    // Gives the output buffer back; the next encode() allocates it again.
    void release();

private:
    void *m_handle = nullptr;
    unsigned char *m_buffer = nullptr;
    unsigned long m_capacity = 0;
    QString m_lastError;
};
