#include "DataColumns.h"
#include "GeometryCircleFits.h"
#include "ImageProbes.h"

#include <QTest>

#include <cmath>
#include <functional>
#include <random>

namespace {

constexpr double Pi = 3.141592653589793;

// A grey image: level(x, y) averaged over grid x grid points of each pixel, plus Gaussian noise.
QImage drawn(int w, int h, const std::function<double(double, double)>& level, double noise = 0,
             int grid = 4) {
    QImage image(w, h, QImage::Format_RGB32);
    std::mt19937 random(42);
    std::normal_distribution<double> jitter(0, 1);
    for (int j = 0; j < h; ++j)
        for (int i = 0; i < w; ++i) {
            double sum = 0;
            for (int k = 0; k < grid * grid; ++k)
                sum += level(i + (k % grid + 0.5) / grid, j + (k / grid + 0.5) / grid);
            const int v = std::clamp(int(std::lround(sum / (grid * grid) + noise * jitter(random))), 0, 255);
            image.setPixel(i, j, qRgb(v, v, v));
        }
    return image;
}

double sine(double x) {
    return 60 + 12 * std::sin(2 * Pi * x / 200);
}

// Distance from (x, y) to the curve y = sine(x): Newton's method on the foot's abscissa.
double offSine(double x, double y) {
    const double k = 2 * Pi / 200;
    double t = x;
    for (int i = 0; i < 6; ++i) {
        const double df = 12 * k * std::cos(k * t), ddf = -12 * k * k * std::sin(k * t);
        t -= ((t - x) + (sine(t) - y) * df) / (1 + df * df + (sine(t) - y) * ddf);
    }
    return std::hypot(t - x, sine(t) - y);
}

} // namespace

class TestImageProbes : public QObject {
    Q_OBJECT
private slots:
    void discEdges_data() {
        addColumns<int, int, QPointF, double>("inside", "outside", "click", "span");
        QTest::newRow("dark disc") << 40 << 200 << QPointF(5, -3) << 360.0;
        QTest::newRow("light disc, low contrast") << 150 << 90 << QPointF(-8, 6) << 360.0;
        QTest::newRow("half disc sector") << 40 << 200 << QPointF(2, 2) << 180.0;
    }
    // An anti-aliased disc of radius 40 with noise: the edges and the robust fit find it within 0.3 px.
    void discEdges() {
        QFETCH(int, inside);
        QFETCH(int, outside);
        QFETCH(QPointF, click);
        QFETCH(double, span);
        const QPointF c(101.3, 89.6);
        const QImage image = drawn(
            210, 180,
            [&](double x, double y) { return std::hypot(x - c.x(), y - c.y()) < 40 ? inside : outside; }, 6);
        RadialEdgeOptions options;
        options.startAngle = 30;
        options.spanAngle = span;
        const RadialEdges edges = findRadialEdges(image, c + click, options);
        QVERIFY(edges.points.size() >= 34 && edges.points.size() + edges.missedRays.size() == 36);
        QVERIFY(std::fabs(edges.innerLevel - inside) < 5 && std::fabs(edges.outerLevel - outside) < 5);
        const std::optional<CircleFit> fit = fitCircleRobust(edges.points);
        QVERIFY(fit && std::fabs(fit->radius - 40) < 0.3 && QLineF(fit->centre, c).length() < 0.3);
        for (const QPointF& p : edges.points) // the sector runs from 30 to 30 + span degrees
            QVERIFY(span == 360 || std::cos(std::atan2(p.y() - c.y() - click.y(), p.x() - c.x() - click.x()) -
                                            120 * Pi / 180) > -1e-9);
    }

    // A step at x = 50: rays towards it find it, the others leave the image and find nothing. Nothing is
    // found from off the image, on a flat image or in an empty one; the ray count is clamped to 12..360.
    void raysWithoutEdges() {
        const QImage step = drawn(100, 100, [](double x, double) { return x < 50 ? 0 : 200; });
        const RadialEdges edges = findRadialEdges(step, QPointF(20.3, 50.2));
        for (const QPointF& p : edges.points)
            QVERIFY(std::fabs(p.x() - 50) < 0.05);
        for (int ray = 0; ray < 36; ++ray) {
            const double cosine = std::cos(ray * 10 * Pi / 180);
            QVERIFY(cosine > 0 || edges.missedRays.contains(ray));
            QVERIFY(cosine < 0.9 || edges.foundRays.contains(ray));
        }
        QImage flat(50, 50, QImage::Format_RGB32);
        flat.fill(qRgb(90, 90, 90));
        RadialEdgeOptions few, many;
        few.rays = 5;
        many.rays = 1000;
        QCOMPARE(findRadialEdges(flat, QPointF(25, 25), few).missedRays.size(), 12);
        QCOMPARE(findRadialEdges(step, QPointF(NAN, 25), many).missedRays.size(), 360);
        QVERIFY(findRadialEdges(step, QPointF(-1, 25)).points.isEmpty() &&
                findRadialEdges(QImage(), {}).points.isEmpty());
    }

    // A stripe following a sine wave, straightened along its centre line, runs straight: every row holds
    // one grey level to within one step.
    void straightenedStripe() {
        const QImage image = drawn(
            400, 120,
            [](double x, double y) { return 200 - 150 * std::exp(-std::pow(offSine(x, y) / 6, 2) / 2); }, 0,
            1);
        QPolygonF path;
        double length = 0;
        for (double x = 20; x <= 380; x += 0.5) {
            path.append(QPointF(x, sine(x)));
            length += path.size() > 1 ? QLineF(path[path.size() - 2], path.last()).length() : 0;
        }
        QList<std::pair<int, bool>> blocks;
        const QImage band = straightenAlongPath(image, path, 31, [&](int block, bool last) {
            blocks.append({block, last});
        });
        QCOMPARE(band.size(), QSize(int(length) + 1, 31));
        QCOMPARE(blocks, (QList<std::pair<int, bool>>{{0, false}, {1, true}}));
        for (int j = 0; j < band.height(); ++j) {
            int low = 255, high = 0;
            for (int k = 0; k < band.width(); ++k) {
                low = std::min(low, qGray(band.pixel(k, j)));
                high = std::max(high, qGray(band.pixel(k, j)));
            }
            QVERIFY2(high - low <= 2, qPrintable(QString("row %1: %2..%3").arg(j).arg(low).arg(high)));
        }
        QVERIFY(qGray(band.pixel(100, 15)) < 60 && qGray(band.pixel(100, 0)) > 150);
    }

    void straightenedSizes_data() {
        // size: 0 x 0 for a null image
        addColumns<QPolygonF, double, QSize>("path", "width", "size");
        QTest::newRow("NaN point") << QPolygonF{{5, 5}, {NAN, 5}} << 10.0 << QSize(0, 0);
        QTest::newRow("huge width") << QPolygonF{{5, 5}, {20, 5}} << 1e12 << QSize(0, 0);
        QTest::newRow("zero width") << QPolygonF{{5, 5}, {20, 5}} << 0.0 << QSize(16, 1);
        QTest::newRow("back and forth, off the image")
            << QPolygonF{{10, 2}, {30, 2}, {10, 2}} << 9.0 << QSize(41, 9);
    }
    // Sizes and refusals; off the image the band is transparent, on it colours are kept.
    void straightenedSizes() {
        QFETCH(QPolygonF, path);
        QFETCH(double, width);
        QFETCH(QSize, size);
        QImage image(40, 40, QImage::Format_ARGB32);
        image.fill(qRgb(200, 40, 10));
        const QImage band = straightenAlongPath(image, path, width);
        QCOMPARE(band.size(), size);
        if (size.height() == 9)
            QVERIFY(band.pixel(5, 0) == 0 && band.pixel(5, 8) == qRgb(200, 40, 10) &&
                    band.pixel(35, 0) == qRgb(200, 40, 10));
    }
};

QTEST_GUILESS_MAIN(TestImageProbes)
#include "tst_imageprobes.moc"
