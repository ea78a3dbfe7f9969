#pragma once

#include <QTcpSocket>

// The smallest RFB viewer that keeps a VNC server busy: no authentication, Tight
// encoding with JPEG, and a full (non-incremental) update request after every update.
// It only parses enough to find where each update ends.
class RfbClient {
public:
    bool connect(quint16 port, int jpegQualityLevel, QString *error);
    // Requests full updates for `seconds` and returns how many arrived.
    int receiveFullUpdates(double seconds, QString *error);

private:
    bool readExact(char *data, qint64 size, int timeoutMs = 10000);
    bool skip(qint64 size);
    bool readCompactLength(quint32 &length);
    bool readTightRect(int width, int height);
    void requestFull();

    QTcpSocket m_socket;
    quint16 m_width = 0;
    quint16 m_height = 0;
};
