#include "SimulatedScreenProvider.h"

#include "BgrxCanvas.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// A gradient computed once for every simulated screen in the process.
const QByteArray &background()
{
    static const QByteArray pixels = [] {
        const int w = SimulatedScreenProvider::width, h = SimulatedScreenProvider::height;
        QByteArray out(qsizetype(w) * h * 4, Qt::Uninitialized);
        auto *p = reinterpret_cast<quint32 *>(out.data());
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x)
                p[qsizetype(y) * w + x] =
                    BgrxCanvas::rgb(20 + x * 40 / w, 30 + y * 60 / h, 70 + (x + y) * 60 / (w + h));
        }
        return out;
    }();
    return pixels;
}

} // namespace

SimulatedScreenProvider::SimulatedScreenProvider(std::shared_ptr<SimulatedInputProvider> input,
                                                 QString label)
    : m_input(std::move(input)), m_label(std::move(label))
{
    m_clock.start();
}

void SimulatedScreenProvider::render(uchar *pixels, qint64 elapsedMs)
{
    std::memcpy(pixels, background().constData(), size_t(background().size()));
    BgrxCanvas canvas(pixels, width, height, width * 4);
    const double t = double(elapsedMs) / 1000.0;

    // A block bouncing across the screen and a bar sweeping down it.
    const int block = 180;
    const double phase = std::fmod(t * 0.25, 2.0);
    const int bx = int((phase < 1.0 ? phase : 2.0 - phase) * (width - block));
    const int by = 300 + int(std::sin(t * 1.3) * 200.0);
    canvas.fillRect(bx, by, block, block, BgrxCanvas::rgb(230, 120 + int(std::sin(t) * 100), 40));
    canvas.fillRect(0, int(std::fmod(t * 120.0, double(height))), width, 6,
                    BgrxCanvas::rgb(90, 200, 255));

    const quint32 white = BgrxCanvas::rgb(255, 255, 255);
    canvas.drawText(60, 50, QStringLiteral("TELVANE SIMULATED AGENT ") + m_label, 5, white);
    const QString clock = QDateTime::currentDateTimeUtc().toString(QStringLiteral("HH:mm:ss.zzz"));
    canvas.drawText((width - BgrxCanvas::textWidth(clock, 14)) / 2, 140, clock, 14, white);

    const SimulatedInputProvider::Snapshot input =
        m_input ? m_input->snapshot() : SimulatedInputProvider::Snapshot{};
    QString pointer = QStringLiteral("POINTER -");
    if (input.hasPointer) {
        pointer = QStringLiteral("POINTER %1,%2").arg(qRound(input.x)).arg(qRound(input.y));
        // Wire coordinates have their origin at the bottom left.
        const int px = qRound(input.x), py = height - qRound(input.y);
        const quint32 red = BgrxCanvas::rgb(255, 40, 40);
        canvas.fillRect(px - 20, py - 2, 41, 5, red);
        canvas.fillRect(px - 2, py - 20, 5, 41, red);
    }
    canvas.drawText(60, 900, pointer, 5, white);
    canvas.drawText(60, 960,
                    QStringLiteral("KEY ") +
                        (input.lastKey.isEmpty() ? QStringLiteral("-") : input.lastKey),
                    5, white);
    canvas.drawText(60, 1020, QStringLiteral("EVENTS %1").arg(input.eventCount), 4, white);
}

ZEKTCapturedFrame SimulatedScreenProvider::capture(float quality, bool skipIfUnchanged,
                                                   quintptr streamKey)
{
    QMutexLocker lock(&m_mutex);
    ZEKTCapturedFrame frame;
    if (skipIfUnchanged)
        m_streaming.insert(streamKey);
    // One-shot requests alone need no frame to compare with: a fleet answering previews
    // keeps one buffer per agent.
    if (m_streaming.isEmpty()) {
        m_pixels[1] = QByteArray();
        m_latest = -1;
    }
    const int next = m_latest == 0 ? 1 : 0;
    if (m_pixels[next].isEmpty())
        m_pixels[next] = QByteArray(qsizetype(width) * height * 4, Qt::Uninitialized);
    auto *pixels = reinterpret_cast<uchar *>(m_pixels[next].data());
    render(pixels, m_clock.elapsed());
    const uchar *before =
        m_latest < 0 ? nullptr : reinterpret_cast<const uchar *>(m_pixels[m_latest].constData());
    const BandedJpegEncoder::BandMask changed =
        BandedJpegEncoder::changedBands(pixels, before, width, height, width * 4);
    m_latest = next;
    if (std::find(changed.begin(), changed.end(), true) != changed.end())
        ++m_version;
    if (!m_changes.update(streamKey, m_version) && skipIfUnchanged) {
        frame.status = ZEKTCapturedFrame::Status::unchanged;
        return frame;
    }
    frame.imageData = m_encoder.encode(pixels, width, height, width * 4, quality, changed);
    if (frame.imageData.isEmpty()) {
        frame.error = m_encoder.lastError();
        m_changes.forget(streamKey);
        return frame;
    }
    frame.status = ZEKTCapturedFrame::Status::ok;
    frame.width = width;
    frame.height = height;
    return frame;
}

void SimulatedScreenProvider::endStream(quintptr streamKey)
{
    m_changes.forget(streamKey);
    QMutexLocker lock(&m_mutex);
    m_streaming.remove(streamKey);
}
