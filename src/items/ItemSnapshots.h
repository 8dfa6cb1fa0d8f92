#pragma once

#include <QImage>
#include <QRectF>

class AbstractScene;

// Pixels under a scene area, for the items' snapshot and extraction commands. The scene's image lies
// at the scene origin, one pixel per scene unit. Each result is null when there is nothing to copy.

// The scene image's pixels covered by area, clipped to the image.
QImage sceneImageArea(const AbstractScene* scene, const QRectF& area);
// The area as the scene draws it (image and items), one pixel per scene unit.
QImage renderedSceneArea(AbstractScene* scene, const QRectF& area);
// The scene image's pixels inside the ellipse bounded by ellipse, clipped to the image; the pixels
// whose centre lies outside the ellipse are transparent.
QImage sceneImageEllipse(const AbstractScene* scene, const QRectF& ellipse);
