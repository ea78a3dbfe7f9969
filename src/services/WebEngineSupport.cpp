#include "WebEngineSupport.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibraryInfo>

#include <algorithm>

#include <cerrno>
#include <csignal>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace WebEngineSupport {
namespace {

constexpr char helperName[] = "QtWebEngineProcess";

// Qt WebEngine looks only where QTWEBENGINEPROCESS_PATH points when it is set, else in Qt's
// helper folder and next to the program; it aborts when none of them exists.
QStringList helperCandidates()
{
    const QString fromEnvironment = qEnvironmentVariable("QTWEBENGINEPROCESS_PATH");
    if (!fromEnvironment.isEmpty())
        return {fromEnvironment};
    const QString name = QLatin1String(helperName);
    return {QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath) + QLatin1Char('/') + name,
            QCoreApplication::applicationDirPath() + QLatin1Char('/') + name};
}

bool sandboxSwitchedOff()
{
    // Qt turns the sandbox off when the variable is set at all, whatever its value.
    if (qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
        return true;
    const QStringList flags = qEnvironmentVariable("QTWEBENGINE_CHROMIUM_FLAGS")
                                  .split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return flags.contains(QLatin1String("--no-sandbox"));
}

// The check Chromium's sandbox makes: can a child start in a new user namespace? The child
// only exits, so a raw clone is safe in a threaded process.
bool canCreateUserNamespace()
{
    const long pid =
        syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, nullptr, nullptr, nullptr, nullptr);
    if (pid == 0)
        _exit(0);
    if (pid < 0)
        return false;
    int status = 0;
    while (waitpid(pid_t(pid), &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

std::optional<QString> whyUnavailable(const Conditions &conditions)
{
    if (!conditions.helperFound)
        return QStringLiteral("its helper program %1 was not found (looked for %2)")
            .arg(QLatin1String(helperName), conditions.helperLookedFor);
    if (conditions.sandboxDisabled)
        return std::nullopt;
    if (conditions.runningAsRoot)
        return QStringLiteral("it cannot run as root with its sandbox on "
                              "(set QTWEBENGINE_DISABLE_SANDBOX=1 to run it without)");
    if (!conditions.userNamespacesAvailable)
        return QStringLiteral("its sandbox needs user namespaces, which this system does not "
                              "allow");
    return std::nullopt;
}

Conditions probe()
{
    Conditions conditions;
    const QStringList candidates = helperCandidates();
    conditions.helperLookedFor = candidates.join(QLatin1String(", "));
    conditions.helperFound =
        std::any_of(candidates.cbegin(), candidates.cend(),
                    [](const QString &path) { return QFileInfo::exists(path); });
    conditions.sandboxDisabled = sandboxSwitchedOff();
    conditions.runningAsRoot = getuid() == 0 || geteuid() == 0;
    if (!conditions.sandboxDisabled && !conditions.runningAsRoot)
        conditions.userNamespacesAvailable = canCreateUserNamespace();
    return conditions;
}

} // namespace WebEngineSupport
