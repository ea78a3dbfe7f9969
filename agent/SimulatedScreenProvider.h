#pragma once

#include "BandedJpegEncoder.h"
#include "FrameChangeTracker.h"
#include "SimulatedInputProvider.h"
#include "ZEKTScreenProvider.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QMutex>
#include <QSet>
#include <memory>

// An animated 1920x1080 test screen: a moving block, a clock with milliseconds and the
// last pointer position and key received, so input-to-frame latency can be measured.
class SimulatedScreenProvider : public ZEKTScreenProvider {
public:
    static constexpr int width = 1920;
    static constexpr int height = 1080;

    SimulatedScreenProvider(std::shared_ptr<SimulatedInputProvider> input, QString label);

    ZEKTCapturedFrame capture(float quality, bool skipIfUnchanged, quintptr streamKey) override;
    void endStream(quintptr streamKey) override;

    // Draws the frame for `elapsedMs` since start into `pixels` (width × height BGRX).
    void render(uchar *pixels, qint64 elapsedMs);

private:
    std::shared_ptr<SimulatedInputProvider> m_input;
    QString m_label;
    QElapsedTimer m_clock;
    QMutex m_mutex; // guards the buffers, the streams, the version and the encoder
    // The frame being drawn and, while someone streams, the one before it, compared band by
    // band; allocated on the first capture, as most fleet agents never stream.
    QByteArray m_pixels[2];
    int m_latest = -1;          // index of the last frame drawn; -1 when there is none to compare
    QSet<quintptr> m_streaming; // keys that asked with skipIfUnchanged and did not end
    quint64 m_version = 0;
    BandedJpegEncoder m_encoder;
    FrameChangeTracker m_changes;
};
