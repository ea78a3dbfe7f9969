#pragma once

#include <QString>
#include <QUrl>
#include <optional>

// The one place for the maker's addresses: the web host (pages, update feed, crash reports,
// the assistant), the download host (installers), the web domain shown to the user and the
// support e-mail address. Tests and staging point them elsewhere through the environment:
//   TELVANE_WEB_HOST, TELVANE_DOWNLOAD_HOST  a base address: http or https, a host, an
//                                            optional port, no path ("http://127.0.0.1:8080")
//   TELVANE_WEB_DOMAIN, TELVANE_SUPPORT_EMAIL plain texts
// An address that cannot be formed (a bad override) is none; the reason is logged once.
namespace WebHosts {

inline constexpr char defaultWebHost[] = "https://www.quorvel.com";
inline constexpr char defaultDownloadHost[] = "https://download.quorvel.com";
inline constexpr char defaultWebDomain[] = "quorvel.com";
inline constexpr char defaultSupportEmail[] = "support@quorvel.com";

// `path` starts with "/" (or is empty for the root); `query` is already percent-encoded
// ("category=Bug%20Report").
std::optional<QUrl> webAddress(const QString &path = {}, const QString &query = {});
std::optional<QUrl> downloadAddress(const QString &path = {}, const QString &query = {});
QString webDomain();
QString supportEmail();

// The address of `path` and `query` on `base`, or none with the reason in `whyNot`.
std::optional<QUrl> formAddress(const QString &base, const QString &path, const QString &query,
                                QString *whyNot = nullptr);

} // namespace WebHosts
