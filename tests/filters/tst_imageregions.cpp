#include "GeometrySegments.h"
#include "ImageProbes.h"

#include <QTest>

#include <cmath>
#include <random>

namespace {

using Mask = std::function<bool(int, int)>;

double area(const QPolygonF& p) {
    double a = 0;
    for (int i = 0; i < p.size(); ++i)
        a += p[i].x() * p[(i + 1) % p.size()].y() - p[(i + 1) % p.size()].x() * p[i].y();
    return std::fabs(a / 2);
}

double enclosedArea(const RegionOutline& region) {
    double a = area(region.outer);
    for (const QPolygonF& hole : region.holes)
        a -= area(hole);
    return a;
}

double toOutline(const QPointF& p, const QPolygonF& outline) {
    double d = std::numeric_limits<double>::infinity();
    for (int i = 0; i < outline.size(); ++i)
        d = std::min(d, distancePointToSegment(p, outline[i], outline[(i + 1) % outline.size()]));
    return d;
}

// Whether the corner (x, y) lies on the pixel-edge boundary of the mask: its four pixels differ.
bool boundaryCorner(const Mask& mask, int x, int y) {
    const int n = mask(x - 1, y - 1) + mask(x, y - 1) + mask(x - 1, y) + mask(x, y);
    return n > 0 && n < 4;
}

} // namespace

class TestImageRegions : public QObject {
    Q_OBJECT
private slots:
    // A dark blob with a square hole on a noisy light background: the exact pixel count, one hole, and
    // outlines within half a pixel of the pixels' edges.
    void blobWithHole() {
        const Mask blob = [](int i, int j) {
            const bool hole = i >= 50 && i < 60 && j >= 45 && j < 55;
            return i >= 0 && j >= 0 && std::hypot(i + 0.5 - 60.3, j + 0.5 - 50.6) < 30 && !hole;
        };
        QImage image(120, 100, QImage::Format_RGB32);
        std::mt19937 random(5);
        int count = 0;
        QRect bounds;
        for (int j = 0; j < 100; ++j)
            for (int i = 0; i < 120; ++i) {
                const int v = (blob(i, j) ? 50 : 200) + int(random() % 41) - 20;
                image.setPixel(i, j, qRgb(v, v, v));
                count += blob(i, j);
                bounds |= blob(i, j) ? QRect(i, j, 1, 1) : QRect();
            }
        const std::optional<RegionOutline> region = growRegion(image, QPoint(40, 50), 60);
        QVERIFY(region && region->pixelCount == count && region->bounds == bounds &&
                region->holes.size() == 1);
        for (const QPolygonF& outline : {region->outer, region->holes[0]})
            for (const QPointF& p : outline)
                QVERIFY(p == p.toPoint() && boundaryCorner(blob, p.toPoint().x(), p.toPoint().y()));
        for (int y = 0; y <= 100; ++y)
            for (int x = 0; x <= 120; ++x)
                QVERIFY(!boundaryCorner(blob, x, y) ||
                        std::min(toOutline(QPointF(x, y), region->outer),
                                 toOutline(QPointF(x, y), region->holes[0])) <= 0.5);
        const std::optional<RegionOutline> exact = growRegion(image, QPoint(40, 50), 60, 0);
        QCOMPARE(enclosedArea(*exact), double(count));
        QVERIFY(region->outer.size() < exact->outer.size() * 0.8);
    }

    // Unsimplified outlines enclose exactly the region's pixels, whatever its shape: random levels give
    // ragged regions, diagonal links and many holes.
    void exactOutlines() {
        std::mt19937 random(11);
        for (int k = 0; k < 60; ++k) {
            const int w = 1 + int(random() % 40), h = 1 + int(random() % 40);
            QImage image(w, h, QImage::Format_RGB32);
            for (int j = 0; j < h; ++j)
                for (int i = 0; i < w; ++i)
                    image.setPixel(i, j, qRgb(0, 0, 100 * int(random() % 3)));
            const QPoint seed(int(random() % w), int(random() % h));
            const std::optional<RegionOutline> region = growRegion(image, seed, k % 2 ? 0 : 100, 0);
            QVERIFY2(region && enclosedArea(*region) == double(region->pixelCount),
                     qPrintable(QString::number(k)));
        }
    }

    void edgeCases() {
        QImage one(1, 1, QImage::Format_RGB32);
        one.fill(Qt::red);
        const std::optional<RegionOutline> pixel = growRegion(one, QPoint(0, 0), 0);
        QVERIFY(pixel && pixel->pixelCount == 1 && area(pixel->outer) == 1 && pixel->outer.size() == 4);
        QVERIFY(!growRegion(one, QPoint(1, 0), 10) && !growRegion(one, QPoint(0, -1), 10));
        QVERIFY(!growRegion(QImage(), QPoint(0, 0), 10));
        // Colours: every channel within the tolerance.
        QImage halves(4, 2, QImage::Format_RGB32);
        halves.fill(qRgb(100, 100, 100));
        halves.setPixel(3, 0, qRgb(100, 100, 160));
        halves.setPixel(3, 1, qRgb(100, 100, 160));
        QCOMPARE(growRegion(halves, QPoint(0, 0), 59)->pixelCount, 6);
        QCOMPARE(growRegion(halves, QPoint(0, 0), 60)->pixelCount, 8);
        // Grey levels 10 i in column i: tolerance 0 (or less) takes one column, beyond 255 everything.
        QImage columns(10, 3, QImage::Format_Grayscale8);
        for (int i = 0; i < 30; ++i)
            columns.setPixel(i % 10, i / 10, qRgb(i % 10 * 10, i % 10 * 10, i % 10 * 10));
        for (const auto& [tolerance, bounds] :
             {std::pair(-7, QRect(5, 0, 1, 3)), std::pair(25, QRect(3, 0, 5, 3)),
              std::pair(1000, QRect(0, 0, 10, 3))}) {
            const std::optional<RegionOutline> r = growRegion(columns, QPoint(5, 1), tolerance);
            QVERIFY(r && r->pixelCount == bounds.width() * 3 && r->bounds == bounds && r->holes.isEmpty());
            QVERIFY(r->outer.size() == 4 && r->outer.boundingRect() == QRectF(bounds));
        }
    }
};

QTEST_GUILESS_MAIN(TestImageRegions)
#include "tst_imageregions.moc"
