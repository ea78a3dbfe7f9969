#pragma once

#include "ZEKTFrame.h"

#include <QString>

class QIODevice;

// Cuts frames out of a byte stream. The declared length is checked against the current
// limit before anything is allocated for the body, so a peer can make us hold at most one
// frame of the limit's size.
class ZEKTFrameReader {
public:
    enum class Status { frame, needMore, error };

    // Total frame size allowed, header included; lowered before authentication.
    void setMaximumFrameSize(qsizetype bytes) { m_maximum = bytes; }
    qsizetype maximumFrameSize() const { return m_maximum; }

    // Reads from `device` until one frame is complete (returned in `frame`), the device has
    // no more bytes, or the stream is broken. After an error the reader stays broken.
    Status read(QIODevice &device, ZEKTFrame &frame);
    QString errorString() const { return m_error; }

private:
    Status fail(const QString &error);

    qsizetype m_maximum = ZEKTFrame::maximumSizeBeforeAuthentication;
    char m_header[ZEKTFrame::headerSize] = {};
    qsizetype m_headerFill = 0;
    bool m_haveHeader = false;
    quint16 m_type = 0;
    QByteArray m_body;
    qsizetype m_bodyFill = 0;
    QString m_error;
};
