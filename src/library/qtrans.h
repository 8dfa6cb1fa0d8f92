#pragma once

#include "graphicsobjects_export.h"

#include <QTransform>

// Affine transform record of the image-processing interface: a QTransform that also remembers
// whether it mirrors x. Steps compose like QTransform's own: the last one added acts first.
class GRAPHICSOBJECTS_EXPORT qtrans : public QTransform {
public:
    qtrans() = default;
    qtrans(const QTransform& transform)
        : QTransform(transform) {}

    qtrans& scale(double sx, double sy) {
        QTransform::scale(sx, sy);
        return *this;
    }
    // Angle in degrees, clockwise on screen (y downwards).
    qtrans& rotate(double angle) {
        QTransform::rotate(angle);
        return *this;
    }
    // Mirrors x (x -> -x) or, when already mirrored, undoes it.
    qtrans& toggleMirror_x() {
        QTransform::scale(-1, 1);
        m_mirror_x = !m_mirror_x;
        return *this;
    }
    bool mirror_x() const { return m_mirror_x; }

private:
    bool m_mirror_x = false;
};
