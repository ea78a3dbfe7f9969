#pragma once

#include "IntentParameters.h"
#include "IntentResult.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <array>
#include <span>

class SharedAppState;

// The one table of the automation actions: what each is called on the command line, every
// text it shows (title, parameters, summary, phrases, short title) and its symbol. The
// texts are English source texts, translated in the context "IntentTable" when read;
// telvanectl, its phrase matching and the desktop launcher's actions all read them here.
class IntentTable {
public:
    // A parameter's title and description; both null when the action has no such
    // parameter.
    struct Parameter {
        const char *title;
        const char *description;

        bool isPresent() const { return title != nullptr; }
    };

    struct Entry {
        const char *command; // telvanectl's subcommand
        const char *title;
        Parameter file;
        Parameter computer;
        Parameter computerName;
        // The summary is summaryLead, then (with a file) the file and summaryJoin, then the
        // computer: "Upload " file " to " computer.
        const char *summaryLead;
        const char *summaryJoin;
        // Each phrase is followed by the application's name; unused slots are null.
        std::array<const char *, 3> phrases;
        const char *shortTitle;
        const char *symbol; // a name of IconTable
        IntentResult (*perform)(SharedAppState &, const IntentParameters &);
    };

    static std::span<const Entry> entries();
    // Null for a command that is not in the table.
    static const Entry *find(QStringView command);

    // `source` (one of the table's texts) in the user's language.
    static QString text(const char *source);
    // The summary with `file` and `computer` in the parameters' places.
    static QString summary(const Entry &entry, const QString &file, const QString &computer);
    // The action's phrases with the application's name, in the user's language.
    static QStringList phrases(const Entry &entry);
    // The same in English, which is always understood too.
    static QStringList sourcePhrases(const Entry &entry);
};
