#pragma once

#include <QMetaType>
#include <QString>
#include <QUrl>

// Where an installer download stands. `finished` carries the saved file, `failed` the message;
// two phases are equal when their kinds and those payloads are.
class DownloadPhase {
public:
    enum class Kind { finished, failed, idle, preparing, downloading, cancelled };

    DownloadPhase() = default;
    static DownloadPhase finished(const QUrl &file) { return {Kind::finished, file, {}}; }
    static DownloadPhase failed(const QString &message) { return {Kind::failed, {}, message}; }
    static DownloadPhase idle() { return {}; }
    static DownloadPhase preparing() { return {Kind::preparing, {}, {}}; }
    static DownloadPhase downloading() { return {Kind::downloading, {}, {}}; }
    static DownloadPhase cancelled() { return {Kind::cancelled, {}, {}}; }

    Kind kind() const { return m_kind; }
    // Set for `finished` only.
    const QUrl &fileURL() const { return m_file; }
    // Set for `failed` only.
    const QString &message() const { return m_message; }
    // The transfer is under way: a "Cancel Download" makes sense.
    bool isActive() const { return m_kind == Kind::preparing || m_kind == Kind::downloading; }

    friend bool operator==(const DownloadPhase &, const DownloadPhase &) = default;

private:
    DownloadPhase(Kind kind, QUrl file, QString message)
        : m_kind(kind), m_file(std::move(file)), m_message(std::move(message))
    {
    }

    Kind m_kind = Kind::idle;
    QUrl m_file;
    QString m_message;
};

Q_DECLARE_METATYPE(DownloadPhase)
