#pragma once

// Writing and reading whole files, for tests that cannot go on when their own files fail.

#include <QByteArray>
#include <QFile>
#include <QString>

// Replaces the file at `path` with `data` and returns the path.
inline QString writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(data) != data.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

// The file's bytes, or nothing when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
