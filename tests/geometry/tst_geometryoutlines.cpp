#include "Geometry.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>

namespace {

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= tolerance;
}

QImage blank() {
    QImage image(60, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

bool inked(const QImage& image, int x, int y) {
    return image.pixelColor(x, y) != QColor(Qt::white);
}

} // namespace

class TestGeometryOutlines : public QObject {
    Q_OBJECT
private slots:
    void polygonsOfCircles();
    void arcsFollowSceneAngles();
    void sectorsAndCircles();
    void spirals();
    void equations();
    void painterHelpers();
    void autoSizedTextFits();
};

void TestGeometryOutlines::polygonsOfCircles() {
    QVERIFY(circle2polygon(QPointF(1, 2), 5, 2).isEmpty());
    const QPolygonF p = circle2polygon(QPointF(1, 2), 5, 12);
    QCOMPARE(p.size(), 12);
    QVERIFY(near(p.first(), QPointF(6, 2)));
    QVERIFY(near(p[3], arc_getPointAtAngle(3.141592653589793 / 2, 5, QPointF(1, 2))));
    for (const QPointF& q : p)
        QVERIFY(std::fabs(std::hypot(q.x() - 1, q.y() - 2) - 5) < 1e-9);
}

void TestGeometryOutlines::arcsFollowSceneAngles() {
    QPainterPath path;
    addArc(path, QPointF(0, 0), 10, 0, 90);
    QVERIFY(near(path.elementAt(0), QPointF(10, 0), 1e-6));
    QVERIFY(near(path.currentPosition(), QPointF(0, 10), 1e-6));
    QPainterPath back;
    addArc(back, QPointF(5, 5), 10, 180, -90);
    QVERIFY(near(back.elementAt(0), QPointF(-5, 5), 1e-6));
    QVERIFY(near(back.currentPosition(), QPointF(5, 15), 1e-6));
}

void TestGeometryOutlines::sectorsAndCircles() {
    QPainterPath sector;
    addSector(sector, QPointF(0, 0), 10, 0, 90);
    QVERIFY(sector.contains(QPointF(4, 4)));
    QVERIFY(!sector.contains(QPointF(-4, -4)));
    QVERIFY(!sector.contains(QPointF(4, -4)));
    QPainterPath circle;
    addCircle(circle, QPointF(3, 4), 2);
    QVERIFY(circle.contains(QPointF(3, 4)));
    QCOMPARE(circle.boundingRect(), QRectF(1, 2, 4, 4));
}

void TestGeometryOutlines::spirals() {
    const QPolygonF s = spirale(QPointF(0, 0), 1, 11, 2.5, 36);
    QCOMPARE(s.size(), 91);
    QVERIFY(near(s.first(), QPointF(1, 0)));
    QVERIFY(near(s.last(), QPointF(-11, 0)));
    QVERIFY(spirale(QPointF(0, 0), 1, 2, 0).isEmpty());
}

void TestGeometryOutlines::equations() {
    QCOMPARE(GetPointsFromEquation({2, 0.5}, 0, 100, 3),
             QPolygonF({QPointF(0, 2), QPointF(50, 27), QPointF(100, 52)}));
    QCOMPARE(GetPointsFromEquation({0, 0, 1}, -1, 1, 3),
             QPolygonF({QPointF(-1, 1), QPointF(0, 0), QPointF(1, 1)}));
    QVERIFY(GetPointsFromEquation({1}, 0, 1, 1).isEmpty());
    QVERIFY(GetPointsFromEquation({}, 0, 1, 5).isEmpty());
}

void TestGeometryOutlines::painterHelpers() {
    QImage image = blank();
    {
        QPainter painter(&image);
        painter.setPen(QPen(Qt::black, 1));
        drawBox(&painter, QPointF(15.5, 15.5), 5);
        drawCross(&painter, QPointF(45.5, 15.5), 5);
        paintRotationCenter(&painter, QPointF(30.5, 45.5), 8);
    }
    QVERIFY(inked(image, 10, 15) && inked(image, 15, 20));
    QVERIFY(!inked(image, 15, 15));
    QVERIFY(inked(image, 45, 15) && inked(image, 45, 11) && inked(image, 41, 15));
    QVERIFY(!inked(image, 42, 12));
    QVERIFY(inked(image, 30, 45) && inked(image, 38, 45) && inked(image, 30, 37));
    QVERIFY(!inked(image, 34, 41));
}

void TestGeometryOutlines::autoSizedTextFits() {
    QImage image = blank();
    QPainter painter(&image);
    painter.setPen(Qt::black);
    const QRectF small(10, 10, 30, 12);
    const double size = drawAutoSizedText(&painter, small, "12.34 mm");
    QVERIFY(size > 0);
    QFont font = painter.font();
    font.setPointSizeF(size);
    const QRectF needed = QFontMetricsF(font).boundingRect(small, Qt::AlignCenter, "12.34 mm");
    QVERIFY(needed.width() <= small.width() && needed.height() <= small.height());
    QVERIFY(drawAutoSizedText(&painter, QRectF(0, 30, 60, 30), "12.34 mm") > size);
    QCOMPARE(drawAutoSizedText(&painter, small, QString()), 0.0);
    QCOMPARE(drawAutoSizedText(&painter, QRectF(0, 0, 0, 10), "x"), 0.0);
    painter.end();
    bool insideOnly = true;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 60; ++x)
            if (inked(image, x, y) && !small.adjusted(-1, -1, 1, 1).contains(QPointF(x, y)))
                insideOnly = false;
    QVERIFY(insideOnly);
}

QTEST_MAIN(TestGeometryOutlines)
#include "tst_geometryoutlines.moc"
