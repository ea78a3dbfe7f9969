#pragma once

#include <QCoreApplication>
#include <QString>
#include <optional>

// Reads a password for the --set-password command: from the terminal without echo
// (asked twice), or one line from standard input when that is not a terminal.
class PasswordPrompt {
    Q_DECLARE_TR_FUNCTIONS(PasswordPrompt)

public:
    static std::optional<QString> read(QString *error);
};
