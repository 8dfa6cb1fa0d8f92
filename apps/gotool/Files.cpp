#include "Files.h"

#include "Console.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

#include <sys/stat.h>

bool sameFile(const QString& a, const QString& b) {
    struct stat sa;
    struct stat sb;
    if (::stat(QFile::encodeName(a).constData(), &sa) != 0 ||
        ::stat(QFile::encodeName(b).constData(), &sb) != 0)
        return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

bool outputAllowed(const QString& output, const QStringList& inputs, bool force) {
    for (const QString& input : inputs) {
        if (!input.isEmpty() && sameFile(output, input)) {
            fail(QStringLiteral("%1 is the input %2; refusing to overwrite it").arg(output, input));
            return false;
        }
    }
    // A dangling link counts as existing: writing through it would create a file elsewhere.
    if (!force && (QFileInfo::exists(output) || QFileInfo(output).isSymLink())) {
        fail(QStringLiteral("%1 exists; give --force to replace it").arg(output));
        return false;
    }
    return true;
}

bool writeImage(const QImage& image, const QString& target, QString* error) {
    const QByteArray format = QFileInfo(target).suffix().toLower().toLatin1();
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("cannot write %1: %2").arg(target, file.errorString());
        return false;
    }
    if (!image.save(&file, format.constData())) {
        *error = QStringLiteral("cannot write %1: the picture cannot be encoded as %2").arg(target, format);
        return false;
    }
    if (!file.commit()) {
        *error = QStringLiteral("cannot write %1: %2").arg(target, file.errorString());
        return false;
    }
    return true;
}

bool writeDxf(const QString& target, AbstractScene* scene, QString* error) {
    // The export writes a temporary file and renames it over the target, pictures included.
    return exportSceneToDxf(target, scene, error);
}
