#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

// Pictures the items read (PNG, JPEG, TIFF, BMP, SVG and whatever else Qt's image readers know),
// within bounds, so that a damaged or hostile file never takes the memory or reaches out of it.
namespace PictureReader {

// The largest picture read, shown or taken as a video frame: 16384 pixels on a side and 64
// megapixels in all (256 MB at 32 bits per pixel); and the largest file read.
constexpr int MaxSide = 16384;
constexpr qint64 MaxPixels = qint64(1) << 26;
constexpr qint64 MaxFileBytes = qint64(128) << 20;

bool sizeAllowed(const QSize& size);

// The picture encoded in data; null, with a message in error, when it is refused. The size is
// checked before decoding wherever the format tells it; an SVG is refused when it refers to
// anything outside itself (files, addresses, entities), which is never fetched.
QImage read(const QByteArray& data, QString* error);
// The same from a file, refused beyond MaxFileBytes.
QImage readFile(const QString& fileName, QString* error);

} // namespace PictureReader
