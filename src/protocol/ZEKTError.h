#pragma once

#include <QException>
#include <QString>

// The failure of an asynchronous protocol operation: carried by a failed QFuture
// (QPromise::setException) and caught with QFuture::onFailed.
class ZEKTError : public QException {
public:
    explicit ZEKTError(const QString &description, const QString &domain = QStringLiteral("ZEKT"),
                       int code = -1);

    QString description() const { return m_description; }
    QString domain() const { return m_domain; }
    int code() const { return m_code; }

    const char *what() const noexcept override { return m_what.constData(); }
    void raise() const override { throw *this; }
    ZEKTError *clone() const override { return new ZEKTError(*this); }

private:
    QString m_description;
    QString m_domain;
    int m_code;
    QByteArray m_what;
};
