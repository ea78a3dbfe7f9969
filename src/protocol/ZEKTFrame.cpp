#include "ZEKTFrame.h"

#include <QBuffer>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QtEndian>

QByteArray ZEKTFrame::encode(quint16 type, const QCborMap &body)
{
    return encodeWith(type, 64,
                      [&body](QCborStreamWriter &writer) { body.toCborValue().toCbor(writer); });
}

QByteArray ZEKTFrame::encodeWith(quint16 type, qsizetype sizeHint,
                                 const std::function<void(QCborStreamWriter &)> &write)
{
    QByteArray frame;
    frame.reserve(headerSize + sizeHint);
    frame.resize(headerSize);
    {
        // A writer on the QByteArray itself would start at offset 0; this one appends.
        QBuffer buffer(&frame);
        buffer.open(QIODevice::WriteOnly | QIODevice::Append);
        QCborStreamWriter writer(&buffer);
        write(writer);
    }
    qToBigEndian<quint32>(static_cast<quint32>(frame.size() - 4), frame.data());
    qToBigEndian<quint16>(type, frame.data() + 4);
    return frame;
}
