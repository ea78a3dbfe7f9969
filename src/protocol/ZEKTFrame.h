#pragma once

#include <QByteArray>
#include <QCborMap>
#include <functional>

class QCborStreamWriter;

// One frame on the wire: a 4-byte big-endian length of what follows, a 2-byte big-endian
// type and a CBOR map as body.
struct ZEKTFrame {
    static constexpr qsizetype headerSize = 6;
    static constexpr qsizetype maximumSize = 16 * 1024 * 1024;
    static constexpr qsizetype maximumSizeBeforeAuthentication = 4 * 1024;

    quint16 type = 0;
    QByteArray body;

    static QByteArray encode(quint16 type, const QCborMap &body);
    // For large bodies: `write` emits the map straight into the frame, with no copy of
    // its byte strings through QCborMap.
    static QByteArray encodeWith(quint16 type, qsizetype sizeHint,
                                 const std::function<void(QCborStreamWriter &)> &write);
};
