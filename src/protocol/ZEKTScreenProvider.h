#pragma once

#include "ZEKTCapturedFrame.h"

// Captures and encodes the main screen. Called on a worker thread; must be thread-safe.
class ZEKTScreenProvider {
public:
    virtual ~ZEKTScreenProvider() = default;
    // `skipIfUnchanged` is set while streaming: a screen whose pixels did not change
    // since the last frame returned for this `streamKey` gives Status::unchanged.
    virtual ZEKTCapturedFrame capture(float quality, bool skipIfUnchanged, quintptr streamKey) = 0;
    // Forget per-stream state (the stream ended or its session closed).
    virtual void endStream(quintptr streamKey) { Q_UNUSED(streamKey); }
};
