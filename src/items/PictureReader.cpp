#include "PictureReader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>

namespace PictureReader {

namespace {

// References that would make an SVG renderer open another file or address: href and src values and
// url() that are neither fragments nor inline data, entity declarations and style sheet imports.
bool svgRefersOutside(const QByteArray& data) {
    static const QRegularExpression outside(
        QStringLiteral(
            R"((?:href|src)\s*=\s*["']\s*(?!#|data:)|url\(\s*["']?\s*(?!#|data:)|<!ENTITY|@import)"),
        QRegularExpression::CaseInsensitiveOption);
    return outside.match(QString::fromUtf8(data)).hasMatch();
}

QString sizeProblem(const QSize& size) {
    const QString pixels = QStringLiteral("%1 x %2 pixels").arg(size.width()).arg(size.height());
    if (size.isEmpty())
        return QStringLiteral("an empty picture (%1)").arg(pixels);
    return QStringLiteral("%1: beyond the limit of %2 pixels a side, %3 megapixels in all")
        .arg(pixels)
        .arg(MaxSide)
        .arg(MaxPixels >> 20);
}

QImage refuse(QString* error, const QString& message) {
    if (error)
        *error = message;
    return QImage();
}

} // namespace

bool sizeAllowed(const QSize& size) {
    return size.width() > 0 && size.height() > 0 && size.width() <= MaxSide && size.height() <= MaxSide &&
           qint64(size.width()) * size.height() <= MaxPixels;
}

QImage read(const QByteArray& data, QString* error) {
    if (data.isEmpty())
        return refuse(error, QStringLiteral("empty file"));
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QByteArray format = reader.format();
    // Looked for before the format, which an SVG opening with a document type may not show.
    if ((format == "svg" || data.contains("<svg")) && svgRefersOutside(data))
        return refuse(error,
                      QStringLiteral("the SVG refers to other files or addresses, which are not fetched"));
    if (format.isEmpty())
        return refuse(error, QStringLiteral("not a picture Qt can read"));
    if (format == "svgz")
        return refuse(error, QStringLiteral("compressed SVG is not read"));
    // Formats that tell their size before decoding are refused before any pixel is allocated;
    // the others are bounded by Qt's allocation limit, then checked.
    const QSize announced = reader.size();
    if (announced.isValid() && !sizeAllowed(announced))
        return refuse(error, sizeProblem(announced));
    QImage image;
    if (!reader.read(&image))
        return refuse(
            error,
            QStringLiteral("unreadable %1: %2").arg(QString::fromLatin1(format), reader.errorString()));
    if (!sizeAllowed(image.size()))
        return refuse(error, sizeProblem(image.size()));
    if (error)
        error->clear();
    return image;
}

QImage readFile(const QString& fileName, QString* error) {
    const QFileInfo info(fileName);
    if (!info.exists())
        return refuse(error, QStringLiteral("file not found"));
    if (!info.isFile())
        return refuse(error, QStringLiteral("not a file"));
    if (info.size() > MaxFileBytes)
        return refuse(error, QStringLiteral("larger than %1 MB").arg(MaxFileBytes >> 20));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return refuse(error, file.errorString());
    const QByteArray data = file.read(MaxFileBytes + 1);
    if (data.size() > MaxFileBytes)
        return refuse(error, QStringLiteral("larger than %1 MB").arg(MaxFileBytes >> 20));
    return read(data, error);
}

} // namespace PictureReader
