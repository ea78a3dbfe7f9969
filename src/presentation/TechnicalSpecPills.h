#pragma once

#include "SpecPill.h"

#include <QCoreApplication>
#include <QList>
#include <optional>
#include <span>

struct SystemStats;

// The technical pills of a statistics snapshot, in a fixed order, each behind a switch of
// its own. OS, model, memory and free disk always show when switched on; the others need a
// value (a text that is not empty, a display count that is not 0).
class TechnicalSpecPills {
    Q_DECLARE_TR_FUNCTIONS(TechnicalSpecPills)

public:
    // Bit i switches on the pill of definitions()[i].
    using Switches = quint32;

    struct Definition {
        const char *preferenceKey;
        const char *title;         // QT_TRANSLATE_NOOP in this class's context
        const char *settingsLabel; // the switch's label on the settings page
        std::optional<SpecPill> (*make)(const SystemStats &);
    };

    static std::span<const Definition> definitions();
    static Switches allOn();
    // The switches as the preferences have them now.
    static Switches switchesFromPreferences();
    // True when a change of this preference key changes which pills show.
    static bool isSwitchKey(const QString &key);

    static QList<SpecPill> pills(const SystemStats &stats, Switches switches);
};
