#include "RawAgentConnection.h"

#include "AuthenticationResponseMessage.h"
#include "ZEKTMessageCodec.h"

#include <QDeadlineTimer>
#include <QSslConfiguration>
#include <QTest>

bool RawAgentConnection::open(quint16 port)
{
    QSslConfiguration config = QSslConfiguration::defaultConfiguration();
    config.setProtocol(QSsl::TlsV1_3);
    config.setPeerVerifyMode(QSslSocket::VerifyNone); // the agent's certificate is self-signed
    m_socket.setSslConfiguration(config);
    m_socket.connectToHostEncrypted(QStringLiteral("127.0.0.1"), port);
    m_reader.setMaximumFrameSize(ZEKTFrame::maximumSize);
    return QTest::qWaitFor([&] { return m_socket.isEncrypted(); }, 10000);
}

void RawAgentConnection::send(const ZEKTRequest &request)
{
    m_socket.write(ZEKTMessageCodec::encodeRequest(request));
    m_socket.flush();
}

ZEKTMessagePtr RawAgentConnection::next(int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (!deadline.hasExpired()) {
        ZEKTFrame frame;
        const auto status = m_reader.read(m_socket, frame);
        if (status == ZEKTFrameReader::Status::error)
            return nullptr;
        if (status == ZEKTFrameReader::Status::frame) {
            auto decoded = ZEKTMessageCodec::decodeMessage(frame);
            if (decoded.ok())
                return decoded.value;
            continue;
        }
        if (m_socket.state() != QAbstractSocket::ConnectedState && m_socket.bytesAvailable() == 0)
            return nullptr;
        QTest::qWait(5);
    }
    return nullptr;
}

ZEKTMessagePtr RawAgentConnection::nextOf(const QString &typeName, int timeoutMs)
{
    QDeadlineTimer deadline(timeoutMs);
    while (ZEKTMessagePtr message = next(int(qMax<qint64>(1, deadline.remainingTime())))) {
        if (message->typeName() == typeName)
            return message;
    }
    return nullptr;
}

bool RawAgentConnection::waitClosed(int timeoutMs)
{
    return QTest::qWaitFor([&] { return m_socket.state() == QAbstractSocket::UnconnectedState; },
                           timeoutMs);
}

bool RawAgentConnection::login(const QString &user, const QString &password)
{
    ZEKTRequest hello;
    hello.kind = ZEKTRequest::Kind::hello;
    hello.protocolVersions = {1};
    hello.clientName = QStringLiteral("raw test client");
    send(hello);
    ZEKTRequest auth;
    auth.kind = ZEKTRequest::Kind::authenticate;
    auth.username = user;
    auth.password = password;
    send(auth);
    const auto answer = std::dynamic_pointer_cast<const AuthenticationResponseMessage>(
        nextOf(QStringLiteral("AuthenticationResponseMessage")));
    return answer && answer->success;
}
