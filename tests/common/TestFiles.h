#pragma once

#include <QFile>
#include <QTemporaryDir>

// The bytes of the file; empty when it cannot be read.
inline QByteArray contents(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The file of that name in the folder, holding the bytes (none is written for null bytes).
inline QString written(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes) {
    QFile file(dir.filePath(name));
    if (!bytes.isNull() && file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return file.fileName();
}
