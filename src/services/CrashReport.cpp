#include "CrashReport.h"

#include "platform/WebHosts.h"

#include <QCoreApplication>
#include <QStringDecoder>

namespace {

const QByteArray firstLines = QByteArrayLiteral("Crash Report\n============\n");

// The value of the header line "<label>: value", which must come at `position`.
std::optional<QString> headerValue(const QString &text, qsizetype &position, const QString &label)
{
    const QString prefix = label + QStringLiteral(": ");
    if (!QStringView(text).mid(position).startsWith(prefix))
        return std::nullopt;
    const qsizetype end = text.indexOf(QLatin1Char('\n'), position);
    if (end < 0)
        return std::nullopt;
    const QString value = text.mid(position + prefix.size(), end - position - prefix.size());
    position = end + 1;
    return value;
}

} // namespace

std::optional<CrashReport> CrashReport::fromHelperInput(const QByteArray &input, QString *error)
{
    const auto fail = [error](const QString &reason) -> std::optional<CrashReport> {
        if (error)
            *error = reason;
        return std::nullopt;
    };
    if (input.size() > maxInputSize)
        return fail(QStringLiteral("the report is larger than %1 bytes").arg(maxInputSize));
    if (!input.startsWith(firstLines))
        return fail(QStringLiteral("the input does not start like a crash report"));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(input);
    if (decoder.hasError() || input.contains('\0'))
        return fail(QStringLiteral("the report is not UTF-8 text"));

    CrashReport report;
    qsizetype position = firstLines.size();
    const std::optional<QString> app = headerValue(text, position, QStringLiteral("App"));
    const std::optional<QString> version = headerValue(text, position, QStringLiteral("Version"));
    const bool complete =
        app && version && headerValue(text, position, QStringLiteral("macOS Version")) &&
        headerValue(text, position, QStringLiteral("Timestamp")) &&
        text.mid(position, 1) == QLatin1String("\n") && position + 1 < text.size();
    if (!complete)
        return fail(QStringLiteral("the report's header lines are incomplete"));
    report.m_app = app->isEmpty() ? QStringLiteral("Unknown") : *app;
    report.m_version = version->isEmpty() ? QStringLiteral("Unknown") : *version;
    // Frames are written one line each; the report joins them with line feeds only.
    report.m_text = input.endsWith('\n') ? input.chopped(1) : input;
    return report;
}

QByteArray CrashReport::userAgent() const
{
    return (m_app + QLatin1Char('-') + m_version).toUtf8();
}

QByteArray CrashReport::multipartBody(const QByteArray &boundary) const
{
    return "--" + boundary + "\r\n" + "Content-Disposition: form-data; name=\"crashlog\"\r\n" +
           "\r\n" + m_text + "\r\n" + "--" + boundary + "--\r\n";
}

Alert CrashReport::alert()
{
    Alert alert;
    alert.style = Alert::Style::warning;
    alert.title = QCoreApplication::translate("CrashReporter", "Application Error");
    alert.text =
        QCoreApplication::translate(
            "CrashReporter",
            "The application encountered an unexpected error.\n\nThe developer team at Quorvel "
            "has been automatically notified of this crash and will work on a fix as soon as "
            "possible.\n\nAn update of the app will be available very soon.\n\nSend an email to "
            "%1 to be notified asap.")
            .arg(WebHosts::supportEmail());
    alert.buttons = {QCoreApplication::translate("CrashReporter", "OK")};
    return alert;
}
