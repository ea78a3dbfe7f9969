#include "ZEKTFrame.h"

#include <QtEndian>

QByteArray ZEKTFrame::encode(quint16 type, const QCborMap &body)
{
    const QByteArray cbor = body.toCborValue().toCbor();
    QByteArray frame(headerSize + cbor.size(), Qt::Uninitialized);
    qToBigEndian<quint32>(static_cast<quint32>(cbor.size() + 2), frame.data());
    qToBigEndian<quint16>(type, frame.data() + 4);
    memcpy(frame.data() + headerSize, cbor.constData(), static_cast<size_t>(cbor.size()));
    return frame;
}
