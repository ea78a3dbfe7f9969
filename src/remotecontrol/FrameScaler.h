#pragma once

#include <QImage>
#include <QSize>

// Scales a remote frame to the device pixels of the image view, once per frame: halved by
// exact 2 x 2 averages while it is at least twice the size, then drawn bilinearly. At the
// window's usual size (a 1920-wide screen shown about 1000 wide) bilinear keeps strokes
// crisper than averaging first and costs a third of Qt's area-averaging scaler.
class FrameScaler {
public:
    // The frame at `size` (device pixels); `canvas`, handed over with std::move, is drawn
    // into again when it already has that size.
    static QImage scaled(const QImage &frame, const QSize &size, QImage canvas = {});
};
