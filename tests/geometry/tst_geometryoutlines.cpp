#include "GeometryTestTables.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

namespace {

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
    void points_data() {
        resultColumns<QPointF>();
        const QPolygonF polygon = circle2polygon(QPointF(1, 2), 5, 12);
        row("circle polygon starts at angle 0", polygon.value(0), QPointF(6, 2));
        row("circle polygon turns with scene angles", polygon.value(3), QPointF(1, 7));
        QPainterPath arc, back;
        addArc(arc, QPointF(0, 0), 10, 0, 90);
        addArc(back, QPointF(5, 5), 10, 180, -90);
        row("arc start", arc.elementAt(0), QPointF(10, 0));
        row("arc end", arc.currentPosition(), QPointF(0, 10));
        row("backwards arc start", back.elementAt(0), QPointF(-5, 5));
        row("backwards arc end", back.currentPosition(), QPointF(5, 15));
        const QPolygonF spiral = spirale(QPointF(0, 0), 1, 11, 2.5, 36);
        row("spiral start", spiral.value(0), QPointF(1, 0));
        row("spiral end after 2.5 turns", spiral.value(90), QPointF(-11, 0));
    }
    void points() { comparePoint(); }

    void outlines() {
        const QPolygonF polygon = circle2polygon(QPointF(1, 2), 5, 12);
        QCOMPARE(polygon.size(), 12);
        for (const QPointF& q : polygon)
            QVERIFY(std::fabs(std::hypot(q.x() - 1, q.y() - 2) - 5) < 1e-9);
        QVERIFY(circle2polygon(QPointF(1, 2), 5, 2).isEmpty());
        QCOMPARE(spirale(QPointF(0, 0), 1, 11, 2.5, 36).size(), 91);
        QVERIFY(spirale(QPointF(0, 0), 1, 2, 0).isEmpty());
        QPainterPath sector;
        addSector(sector, QPointF(0, 0), 10, 0, 90);
        QVERIFY(sector.contains(QPointF(4, 4)) && !sector.contains(QPointF(-4, -4)) &&
                !sector.contains(QPointF(4, -4)));
        QPainterPath circle;
        addCircle(circle, QPointF(3, 4), 2);
        QCOMPARE(circle.boundingRect(), QRectF(1, 2, 4, 4));
        QCOMPARE(GetPointsFromEquation({2, 0.5}, 0, 100, 3), QPolygonF({{0, 2}, {50, 27}, {100, 52}}));
        QCOMPARE(GetPointsFromEquation({0, 0, 1}, -1, 1, 3), QPolygonF({{-1, 1}, {0, 0}, {1, 1}}));
        QVERIFY(GetPointsFromEquation({1}, 0, 1, 1).isEmpty());
        QVERIFY(GetPointsFromEquation({}, 0, 1, 5).isEmpty());
    }

    void painterHelpers() {
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

    void autoSizedTextFits() {
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
};

QTEST_MAIN(TestGeometryOutlines)
#include "tst_geometryoutlines.moc"
