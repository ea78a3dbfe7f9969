#include "RfbClient.h"

#include <QElapsedTimer>
#include <QtEndian>

bool RfbClient::readExact(char *data, qint64 size, int timeoutMs)
{
    qint64 got = 0;
    while (got < size) {
        if (m_socket.bytesAvailable() == 0 && !m_socket.waitForReadyRead(timeoutMs))
            return false;
        const qint64 n = m_socket.read(data + got, size - got);
        if (n < 0)
            return false;
        got += n;
    }
    return true;
}

bool RfbClient::skip(qint64 size)
{
    char buffer[65536];
    while (size > 0) {
        const qint64 chunk = qMin<qint64>(size, sizeof buffer);
        if (!readExact(buffer, chunk))
            return false;
        size -= chunk;
    }
    return true;
}

bool RfbClient::readCompactLength(quint32 &length)
{
    length = 0;
    for (int i = 0; i < 3; ++i) {
        quint8 byte = 0;
        if (!readExact(reinterpret_cast<char *>(&byte), 1))
            return false;
        length |= quint32(byte & (i < 2 ? 0x7F : 0xFF)) << (7 * i);
        if (i < 2 && !(byte & 0x80))
            break;
    }
    return true;
}

bool RfbClient::readTightRect(int width, int height)
{
    quint8 control = 0;
    if (!readExact(reinterpret_cast<char *>(&control), 1))
        return false;
    const int kind = control >> 4;
    quint32 length = 0;
    if (kind == 0x8) // fill: one 24-bit pixel
        return skip(3);
    if (kind == 0x9) // JPEG
        return readCompactLength(length) && skip(length);
    // Basic compression, optionally with a filter.
    int bitsPerPixel = 24;
    qint64 rawSize = qint64(width) * height * 3;
    if (control & 0x40) {
        quint8 filter = 0;
        if (!readExact(reinterpret_cast<char *>(&filter), 1))
            return false;
        if (filter == 1) { // palette
            quint8 colors = 0;
            if (!readExact(reinterpret_cast<char *>(&colors), 1) || !skip((colors + 1) * 3))
                return false;
            bitsPerPixel = colors + 1 <= 2 ? 1 : 8;
            rawSize = bitsPerPixel == 1 ? qint64((width + 7) / 8) * height : qint64(width) * height;
        }
    }
    if (rawSize < 12)
        return skip(rawSize);
    return readCompactLength(length) && skip(length);
}

void RfbClient::requestFull()
{
    char request[10] = {3, 0};
    qToBigEndian<quint16>(0, request + 2);
    qToBigEndian<quint16>(0, request + 4);
    qToBigEndian<quint16>(m_width, request + 6);
    qToBigEndian<quint16>(m_height, request + 8);
    m_socket.write(request, sizeof request);
    m_socket.flush();
}

bool RfbClient::connect(quint16 port, int jpegQualityLevel, QString *error)
{
    m_socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!m_socket.waitForConnected(10000)) {
        *error = QStringLiteral("cannot connect to the VNC server");
        return false;
    }
    char version[12];
    if (!readExact(version, 12)) {
        *error = QStringLiteral("no RFB version");
        return false;
    }
    m_socket.write("RFB 003.008\n");
    quint8 count = 0;
    if (!readExact(reinterpret_cast<char *>(&count), 1) || count == 0) {
        *error = QStringLiteral("no security types");
        return false;
    }
    QByteArray types(count, '\0');
    readExact(types.data(), count);
    if (!types.contains('\x01')) {
        *error = QStringLiteral("the server wants a password");
        return false;
    }
    m_socket.write("\x01", 1);
    char result[4];
    if (!readExact(result, 4) || qFromBigEndian<quint32>(result) != 0) {
        *error = QStringLiteral("security handshake failed");
        return false;
    }
    m_socket.write("\x01", 1); // shared
    char init[24];
    if (!readExact(init, 24)) {
        *error = QStringLiteral("no server init");
        return false;
    }
    m_width = qFromBigEndian<quint16>(init);
    m_height = qFromBigEndian<quint16>(init + 2);
    skip(qFromBigEndian<quint32>(init + 20)); // desktop name

    // 32 bpp true colour, depth 24, little endian: Tight then sends 24-bit pixels.
    const char pixelFormat[20] = {0, 0,         0, 0,         32, 24, 0, 1, 0, (char)255,
                                  0, (char)255, 0, (char)255, 16, 8,  0, 0, 0, 0};
    m_socket.write(pixelFormat, sizeof pixelFormat);
    const qint32 encodings[] = {7, -32 + jpegQualityLevel, -256 + 1,
                                -224}; // Tight, JPEG level, fast zlib, LastRect
    char setEncodings[4 + sizeof encodings] = {2, 0};
    qToBigEndian<quint16>(quint16(std::size(encodings)), setEncodings + 2);
    for (size_t i = 0; i < std::size(encodings); ++i)
        qToBigEndian<qint32>(encodings[i], setEncodings + 4 + 4 * i);
    m_socket.write(setEncodings, sizeof setEncodings);
    m_socket.flush();
    return true;
}

int RfbClient::receiveFullUpdates(double seconds, QString *error)
{
    QElapsedTimer clock;
    clock.start();
    int updates = 0;
    requestFull();
    while (clock.elapsed() < qint64(seconds * 1000)) {
        quint8 type = 0;
        if (!readExact(reinterpret_cast<char *>(&type), 1)) {
            *error = QStringLiteral("the server stopped sending");
            return updates;
        }
        if (type == 2) // bell
            continue;
        if (type == 3) { // cut text
            char header[7];
            readExact(header, 7);
            skip(qFromBigEndian<quint32>(header + 3));
            continue;
        }
        if (type != 0) {
            *error = QStringLiteral("unexpected server message %1").arg(type);
            return updates;
        }
        char header[3];
        readExact(header, 3);
        const quint16 rects = qFromBigEndian<quint16>(header + 1);
        for (int i = 0; i < rects; ++i) {
            char rect[12];
            if (!readExact(rect, 12)) {
                *error = QStringLiteral("truncated update");
                return updates;
            }
            const int w = qFromBigEndian<quint16>(rect + 4), h = qFromBigEndian<quint16>(rect + 6);
            const qint32 encoding = qFromBigEndian<qint32>(rect + 8);
            if (encoding == -224) // LastRect
                break;
            if (encoding == 0) {
                skip(qint64(w) * h * 4);
            } else if (encoding == 7) {
                if (!readTightRect(w, h)) {
                    *error = QStringLiteral("bad Tight rectangle");
                    return updates;
                }
            } else if (encoding != -223) { // DesktopSize carries no data
                *error = QStringLiteral("unexpected encoding %1").arg(encoding);
                return updates;
            }
        }
        ++updates;
        requestFull();
    }
    return updates;
}
