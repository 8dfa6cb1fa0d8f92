#pragma once

#include <GraphicsObjects/GraphicsObjects.h>

#include <QImage>

// Opens a scene document into scene, printing its problems; false after one clear message.
// needImage: a linked or embedded image that cannot be read is an error rather than a warning.
bool openDocument(const QString& fileName, AbstractScene& scene, SceneDocument& document, bool needImage);
// The files a command reads for a document: the document and its linked image.
QStringList documentInputs(const QString& fileName, const SceneDocument& document);
// The scene drawn scale times its size over white; null after one clear message when the picture
// would be beyond the document limits or cannot be allocated.
QImage renderScene(AbstractScene& scene, double scale);
