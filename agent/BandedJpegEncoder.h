#pragma once

#include "JpegEncoder.h"

#include <QByteArray>
#include <QString>

#include <vector>

// Encodes a screen as one baseline JPEG (4:2:0) with a restart marker after every row of
// 16-pixel blocks, and keeps each band's entropy-coded bytes. The next frame re-encodes
// only the bands whose pixels changed and splices the rest from the previous frame, so a
// blinking cursor or a moving window costs a fraction of a full encode. The output is an
// ordinary JPEG: any decoder reads it. Not thread-safe: one per caller, or guarded.
class BandedJpegEncoder {
public:
    static constexpr int bandHeight = 16; // one block row of 4:2:0

    // TurboJPEG 2.1 takes the restart interval only from the environment; call once at
    // start, before any thread runs. Without it every frame is encoded whole.
    static void enableRestartMarkers();

    // One flag per band (the last band may be shorter): true when it must be encoded again.
    using BandMask = std::vector<bool>;
    static int bandCount(int height)
    {
        return height > 0 ? (height + bandHeight - 1) / bandHeight : 0;
    }

    // Which bands of `now` differ from `before`, an image of the same size and stride; all
    // of them without `before`. A band is read only up to its first difference, so a
    // screen that changes everywhere costs next to nothing to compare.
    static BandMask changedBands(const uchar *now, const uchar *before, int width, int height,
                                 int stride);

    // `changed` tells which bands differ from the pixels of the previous successful
    // encode(); bands it calls unchanged are spliced from that frame. Empty on failure,
    // reason in lastError().
    QByteArray encode(const uchar *bgrx, int width, int height, int stride, float quality,
                      const BandMask &changed);
    QString lastError() const { return m_lastError; }
    // Bands encoded by the last encode(); the others were reused.
    int lastBandsEncoded() const { return m_lastBandsEncoded; }
    void clear();
    // clear(), and gives the encoder's output buffer back too.
    void releaseMemory();

private:
    bool encodeRun(const uchar *bgrx, int width, int height, int stride, float quality,
                   int firstBand, int count);
    QByteArray splice() const;

    JpegEncoder m_encoder;
    QString m_lastError;
    int m_lastBandsEncoded = 0;
    int m_width = 0;
    int m_height = 0;
    int m_quality = 0;
    QByteArray m_header; // SOI up to and including the scan header of a whole-frame encode
    QByteArray m_tables; // the quantisation and Huffman tables inside m_header
    std::vector<QByteArray> m_bands; // entropy-coded bytes between restart markers
};
