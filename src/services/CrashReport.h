#pragma once

#include "platform/Alert.h"

#include <QByteArray>
#include <QString>
#include <optional>

// One crash report as the helper process receives it on standard input from the dying
// process: validated, with the frames' last line feed dropped, and the App and Version
// values read back for the User-Agent header.
class CrashReport {
public:
    // Larger input is not a report of ours (128 frames of long names stay far below).
    static constexpr qsizetype maxInputSize = 1 << 20;

    // None, with the reason in `error`, for input that is not a crash report.
    static std::optional<CrashReport> fromHelperInput(const QByteArray &input,
                                                      QString *error = nullptr);

    const QByteArray &text() const { return m_text; }
    const QString &app() const { return m_app; }
    const QString &version() const { return m_version; }
    QByteArray userAgent() const;

    // The multipart/form-data body with the one field "crashlog", byte for byte.
    QByteArray multipartBody(const QByteArray &boundary) const;

    // The alert the user sees after a crash; the same texts go to standard error.
    static Alert alert();

private:
    QByteArray m_text;
    QString m_app;
    QString m_version;
};
