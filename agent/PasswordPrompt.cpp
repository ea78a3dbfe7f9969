#include "PasswordPrompt.h"

#include <cstdio>
#include <cstring>
#include <termios.h>
#include <unistd.h>

namespace {

std::optional<QString> readLine(FILE *in)
{
    char *line = nullptr;
    size_t capacity = 0;
    const ssize_t n = getline(&line, &capacity, in);
    std::optional<QString> result;
    if (n >= 0) {
        QByteArray text(line, n);
        while (text.endsWith('\n') || text.endsWith('\r'))
            text.chop(1);
        result = QString::fromUtf8(text);
    }
    if (line) {
        std::memset(line, 0, capacity);
        std::free(line);
    }
    return result;
}

std::optional<QString> askWithoutEcho(const QString &prompt)
{
    std::fputs(qPrintable(prompt), stderr);
    std::fflush(stderr);
    termios saved{};
    tcgetattr(STDIN_FILENO, &saved);
    termios quiet = saved;
    quiet.c_lflag &= ~tcflag_t(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    auto line = readLine(stdin);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved);
    std::fputs("\n", stderr);
    return line;
}

} // namespace

std::optional<QString> PasswordPrompt::read(QString *error)
{
    if (!isatty(STDIN_FILENO)) {
        auto line = readLine(stdin);
        if (!line)
            *error = tr("No password on standard input");
        return line;
    }
    const auto first = askWithoutEcho(tr("New password: "));
    const auto second = first ? askWithoutEcho(tr("Repeat the password: ")) : std::nullopt;
    if (!first || !second) {
        *error = tr("No password entered");
        return std::nullopt;
    }
    if (*first != *second) {
        *error = tr("The passwords do not match");
        return std::nullopt;
    }
    return first;
}
