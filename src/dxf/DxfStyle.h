#pragma once

#include <QBrush>
#include <QColor>
#include <QString>

#include <vector>

// How an entity is drawn: colour, lineweight and linetype, and the conversions from Qt's terms.
namespace dxf {

struct EntityStyle {
    QColor color = Qt::black;
    int lineweight = -3; // hundredths of a millimetre; -3 is the reader's default
    QString linetype = QStringLiteral("Continuous");
    double linetypeScale = 1.0;
};

// The linetypes a file defines besides ByBlock, ByLayer and Continuous. Pattern lengths are in pen
// widths; each entity scales its linetype by its own pen width, as Qt does.
struct LinetypeDef {
    const char* name;
    const char* description;
    std::vector<double> pattern;
};
const std::vector<LinetypeDef>& linetypes();

// The linetype drawn for a pen style.
QString linetypeFor(Qt::PenStyle style);
// Index of the AutoCAD colour closest to color (1..255); 7 stands for both black and white.
int nearestAci(QRgb color);
// The colour a brush shows on average: its colour for solid and pattern brushes, the mean of a
// gradient over the area it spans or of a texture's pixels. Alpha is the mean coverage.
QColor meanColor(const QBrush& brush);
// The standard lineweight closest to a width in millimetres.
int snapLineweight(double millimetres);

} // namespace dxf
