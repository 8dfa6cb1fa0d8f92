#pragma once

#include <QString>
#include <QStringList>

class AbstractScene;
class QImage;

// Whether two paths name the same file, through links of any kind.
bool sameFile(const QString& a, const QString& b);
// Refuses (with a message on stderr) an output that is one of the inputs, or that exists when force
// is not given.
bool outputAllowed(const QString& output, const QStringList& inputs, bool force);
// Write through a temporary file renamed over the target, so that a failure leaves the target
// untouched; the picture's format follows the target's extension.
bool writeImage(const QImage& image, const QString& target, QString* error);
bool writeDxf(const QString& target, AbstractScene* scene, QString* error);
