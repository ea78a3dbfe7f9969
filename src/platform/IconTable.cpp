#include "IconTable.h"

#include <QLatin1StringView>
#include <iterator>

namespace {

#define FALLBACK(file) ":/symbols/" file ".svg"

// Grouped by where the symbols first appear; the widgets layer caches what it looks up.
constexpr IconTable::Entry table[] = {
    // Dashboard: header, summary tiles, cards and screen preview.
    {"slider.horizontal.3", "preferences-system", FALLBACK("sliders")},
    {"desktopcomputer", "computer", FALLBACK("desktop")},
    {"checkmark.circle.fill", "emblem-default", FALLBACK("check-circle")},
    {"pause.circle.fill", "media-playback-pause", FALLBACK("pause-circle")},
    {"exclamationmark.triangle.fill", "dialog-warning", FALLBACK("warning")},
    {"chevron.right", "go-next", FALLBACK("chevron-right")},
    {"chart.bar.doc.horizontal", "x-office-spreadsheet", FALLBACK("chart-doc")},
    {"cpu", "cpu", FALLBACK("cpu")},
    {"memorychip", "media-flash", FALLBACK("memory")},
    {"internaldrive", "drive-harddisk", FALLBACK("drive")},
    {"rectangle.inset.filled", "video-display", FALLBACK("screen-preview")},
    {"eye.slash", "view-conceal", FALLBACK("eye-slash")},
    // Technical pills.
    {"applelogo", "computer", FALLBACK("os")},
    {"laptopcomputer", "computer-laptop", FALLBACK("laptop")},
    {"clock.arrow.circlepath", "document-open-recent", FALLBACK("uptime")},
    {"network", "network-wired", FALLBACK("network")},
    {"person.crop.circle", "avatar-default", FALLBACK("person-circle")},
    {"wifi", "network-wireless", FALLBACK("wifi")},
    {"rectangle.on.rectangle", "preferences-desktop-display", FALLBACK("displays")},
    {"display", "video-display", FALLBACK("display")},
    {"shippingbox", "package-x-generic", FALLBACK("package")},
    {"lock.fill", "changes-prevent", FALLBACK("lock")},
    {"lock.open", "changes-allow", FALLBACK("lock-open")},
    {"exclamationmark.triangle", "dialog-warning", FALLBACK("warning")},
    // Screen access allowed; the warning triangle stands for the opposite.
    {"checkmark.shield", "security-high", FALLBACK("shield-check")},
    {"cursorarrow.motionlines", "input-mouse", FALLBACK("cursor-motion")},
    {"hand.raised", "action-unavailable", FALLBACK("blocked")},
    {"app.badge.fill", "application-x-executable", FALLBACK("app")},
    // Detail: action bar and preview.
    {"xmark.circle.fill", "process-stop", FALLBACK("x-circle")},
    {"hourglass", "content-loading", FALLBACK("hourglass")},
    {"play.fill", "media-playback-start", FALLBACK("play")},
    {"cursorarrow.click", "preferences-desktop-remote-desktop", FALLBACK("cursor-click")},
    {"square.and.arrow.up", "document-send", FALLBACK("share-up")},
    {"pencil", "document-edit", FALLBACK("pencil")},
    {"trash", "user-trash", FALLBACK("trash")},
    {"arrow.clockwise", "view-refresh", FALLBACK("refresh")},
    // Navigation.
    {"house", "go-home", FALLBACK("house")},
    // Automation actions, also the desktop launcher's actions.
    {"desktopcomputer.and.arrow.down", "network-offline", FALLBACK("desktop-arrow-down")},
    {"cursorarrow.click.badge.clock", "media-playback-stop", FALLBACK("cursor-click-clock")},
    {"info.circle", "dialog-information", FALLBACK("info-circle")},
    {"arrow.up.doc", "document-send", FALLBACK("arrow-up-doc")},
    // Main window: sidebar, log viewer.
    {"doc.text", "text-x-generic", FALLBACK("doc-text")},
    {"plus", "list-add", FALLBACK("plus")},
    {"doc.on.doc", "edit-copy", FALLBACK("copy")},
    {"text.alignleft", "format-justify-left", FALLBACK("text-align-left")},
};

#undef FALLBACK

} // namespace

const IconTable::Entry *IconTable::find(QStringView symbol)
{
    for (const Entry &entry : table) {
        if (symbol == QLatin1StringView(entry.symbol))
            return &entry;
    }
    return nullptr;
}

std::span<const IconTable::Entry> IconTable::entries()
{
    return {std::begin(table), std::end(table)};
}
