#include "ZEKTFrameReader.h"

#include <QIODevice>
#include <QtEndian>

ZEKTFrameReader::Status ZEKTFrameReader::fail(const QString &error)
{
    m_error = error;
    return Status::error;
}

ZEKTFrameReader::Status ZEKTFrameReader::read(QIODevice &device, ZEKTFrame &frame)
{
    if (!m_error.isEmpty())
        return Status::error;
    if (!m_haveHeader) {
        while (m_headerFill < ZEKTFrame::headerSize) {
            const qint64 n =
                device.read(m_header + m_headerFill, ZEKTFrame::headerSize - m_headerFill);
            if (n < 0)
                return fail(QStringLiteral("Connection read error: %1").arg(device.errorString()));
            if (n == 0)
                return Status::needMore;
            m_headerFill += n;
        }
        // The length counts the type field and the body; both limits are far below 4 GiB,
        // so comparing in 64 bits cannot overflow.
        const quint64 length = qFromBigEndian<quint32>(m_header);
        if (length < 2)
            return fail(
                QStringLiteral("Malformed frame: declared length %1 is too short").arg(length));
        const quint64 total = length + 4;
        if (total > static_cast<quint64>(m_maximum))
            return fail(QStringLiteral("Frame of %1 bytes exceeds the limit of %2 bytes")
                            .arg(total)
                            .arg(m_maximum));
        m_type = qFromBigEndian<quint16>(m_header + 4);
        m_body = QByteArray(static_cast<qsizetype>(length - 2), Qt::Uninitialized);
        m_bodyFill = 0;
        m_haveHeader = true;
    }
    while (m_bodyFill < m_body.size()) {
        const qint64 n = device.read(m_body.data() + m_bodyFill, m_body.size() - m_bodyFill);
        if (n < 0)
            return fail(QStringLiteral("Connection read error: %1").arg(device.errorString()));
        if (n == 0)
            return Status::needMore;
        m_bodyFill += n;
    }
    frame.type = m_type;
    frame.body = std::move(m_body);
    m_body = QByteArray();
    m_haveHeader = false;
    m_headerFill = 0;
    m_bodyFill = 0;
    return Status::frame;
}
