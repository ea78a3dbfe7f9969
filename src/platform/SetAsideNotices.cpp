#include "SetAsideNotices.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstdio>

SetAsideNotices::SetAsideNotices()
{
    if (auto *app = QCoreApplication::instance(); app && thread() != app->thread())
        moveToThread(app->thread());
}

SetAsideNotices &SetAsideNotices::shared()
{
    static SetAsideNotices *instance = new SetAsideNotices;
    return *instance;
}

QString SetAsideNotices::describe(const SetAsideCopy &copy)
{
    switch (copy.reason) {
    case SetAsideCopy::Reason::undecodableList:
        return QStringLiteral("the computer list in %1 could not be read; a copy of the file was "
                              "kept at %2 before anything replaces the list")
            .arg(copy.originalPath, copy.copyPath);
    case SetAsideCopy::Reason::unparseableFile:
        break;
    }
    return QStringLiteral("the settings file %1 could not be read; it was moved aside to %2 and "
                          "a new one is used")
        .arg(copy.originalPath, copy.copyPath);
}

void SetAsideNotices::report(const SetAsideCopy &copy)
{
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name,
                 describe(copy).toLocal8Bit().constData());
    QMetaObject::invokeMethod(
        this, [this, copy] { Q_EMIT reported(copy); }, Qt::QueuedConnection);
}
