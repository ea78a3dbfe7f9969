#pragma once

#include <QStringView>
#include <span>

// The one table of symbols that views show: each symbol name (the names the console's
// texts are written against, such as "desktopcomputer") maps to a freedesktop theme icon
// and to a fallback drawn for Telvane, a resource of the widgets layer. Views name
// symbols; they never name icons.
class IconTable {
public:
    struct Entry {
        const char *symbol;
        const char *themeName; // freedesktop icon name; the theme's symbolic variant is used
        const char *fallback;  // resource path of the drawn fallback
    };

    // Null for a symbol that is not in the table.
    static const Entry *find(QStringView symbol);
    static std::span<const Entry> entries();
};
