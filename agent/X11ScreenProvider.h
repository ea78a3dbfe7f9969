#pragma once

#include "BandedJpegEncoder.h"
#include "FrameChangeTracker.h"
#include "X11Connection.h"
#include "ZEKTScreenProvider.h"

#include <QHash>
#include <QMutex>
#include <QSet>

// Captures the X11 root window through MIT-SHM (GetImage when shared memory is not
// usable) and encodes it as JPEG, re-encoding only the bands that changed since the last
// frame. Grabs alternate between two buffers, so each is compared with the one before.
// While streaming, the DAMAGE extension tells whether anything was drawn since the last
// frame, so an idle screen is not even read.
class X11ScreenProvider : public ZEKTScreenProvider {
public:
    X11ScreenProvider();
    ~X11ScreenProvider() override;

    ZEKTCapturedFrame capture(float quality, bool skipIfUnchanged, quintptr streamKey) override;
    void endStream(quintptr streamKey) override;

private:
    struct Image {
        const uchar *pixels = nullptr;
        int width = 0;
        int height = 0;
        int stride = 0;
    };
    ZEKTCapturedFrame captureLocked(float quality, bool skipIfUnchanged, quintptr streamKey);
    struct SharedSegment {
        quint32 seg = 0;
        uchar *address = nullptr;
    };
    bool setUpConnection();
    bool attachSegment(SharedSegment &segment, size_t bytes);
    void releaseBuffers();
    bool grab(Image &image, QString &error);
    void drainDamage();

    QMutex m_mutex; // guards everything below; capture runs on several workers
    X11Connection m_x;
    quint64 m_setUpGeneration = 0;
    bool m_useShm = false;
    SharedSegment m_shm[2];
    size_t m_shmSize = 0;
    QByteArray m_getImageReply[2]; // pixels of the GetImage fallback
    int m_nextBuffer = 0;
    Image m_previous;      // the last grab, in the other buffer; no pixels when there is none
    quint64 m_version = 0; // bumped whenever a grab finds changed pixels
    bool m_useDamage = false;
    quint32 m_damage = 0;
    quint8 m_damageEventBase = 0;
    quint64 m_damageCount = 1; // bumped whenever the X server reports drawing
    QHash<quintptr, quint64> m_streamDamageSeen;
    QSet<quintptr> m_streaming; // keys that asked with skipIfUnchanged and did not end
    FrameChangeTracker m_changes;
    BandedJpegEncoder m_encoder;
};
