// Interactivity of large outlines: a PolygonItem (and a PolylineItem) of 10^3, 10^4 and 10^5 vertices on
// a scene shown in a view. For each size, interleaved over the rounds, it times selecting the item (its
// grips appear), one step of a grip drag (what the item does per mouse move), the release (the hull
// measures and the crossing test), one rendering of the scene after a step and the first hit test
// after the change (the scene asking which items lie under a point), and prints the medians
// with each size's ratio to the smallest. A drag step must stay under 16 ms at 10^5 vertices.
// Usage: QT_QPA_PLATFORM=offscreen bench_polygon [rounds]

#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <random>

namespace {

QList<QPointF> star(int n, bool closed) {
    std::mt19937 random(20240601);
    QList<QPointF> points;
    for (int i = 0; i < n; ++i) {
        const double a = (closed ? 2 : 1.5) * 3.141592653589793 * i / n;
        const double r = 400 + random() % 1000 / 100.0;
        points.append(QPointF(500 + r * std::cos(a), 500 + r * std::sin(a)));
    }
    return points;
}

double msOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

struct Times {
    QList<double> select, step, release, repaint, hit;
};

double median(QList<double> v) {
    std::sort(v.begin(), v.end());
    return v.isEmpty() ? 0 : v[v.size() / 2];
}

// One round on one outline: a fresh item, selected, dragged by ten steps of one vertex, released.
void round(QImage& canvas, AbstractScene& scene, const QString& className, int n, Times& t) {
    _AUTOPOINTPARAMS record;
    record.points = star(n, className == "PolygonItem");
    QString name = className;
    std::unique_ptr<AbstractBaseItem> item(XBaseItemToolCreate(name, nullptr, 0, &record));
    scene.addItem(item.get());
    t.select << msOf([&] { item->forceSelection(); });
    const int id = n / 2;
    const QPointF from = item->mline().at(id);
    item->handlePressed(id, from, {});
    for (int k = 1; k <= 10; ++k)
        t.step << msOf([&] { item->handleMoved(id, from + QPointF(k, k), {}); });
    t.repaint << msOf([&] {
        QPainter painter(&canvas);
        scene.render(&painter);
    });
    t.release << msOf([&] { item->handleReleased(id, from + QPointF(10, 10), {}); });
    const QPointF onOutline = item->mline().at(id / 2);
    t.hit << msOf([&] { scene.items(onOutline); });
    scene.removeItem(item.get());
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    AbstractScene scene(QRectF(0, 0, 1000, 1000));
    QImage canvas(1000, 1000, QImage::Format_ARGB32_Premultiplied);
    const QList<int> sizes{1000, 10000, 100000};
    for (const char* name : {"PolygonItem", "PolylineItem"}) {
        const QString className = QString::fromLatin1(name);
        std::map<int, Times> times;
        for (int r = 0; r < rounds; ++r)
            for (int n : sizes)
                round(canvas, scene, className, n, times[n]);
        std::printf("%s: median ms (ratio to %d vertices)\n", name, sizes.first());
        std::printf("%10s %18s %18s %18s %18s %18s\n", "vertices", "select", "drag step", "release", "render",
                    "hit test");
        const Times& base = times[sizes.first()];
        for (int n : sizes) {
            const Times& t = times[n];
            auto cell = [](double v, double b) {
                return QString::asprintf("%8.3f (%6.1fx)", v, b > 0 ? v / b : 0);
            };
            std::printf("%10d %18s %18s %18s %18s %18s\n", n,
                        qPrintable(cell(median(t.select), median(base.select))),
                        qPrintable(cell(median(t.step), median(base.step))),
                        qPrintable(cell(median(t.release), median(base.release))),
                        qPrintable(cell(median(t.repaint), median(base.repaint))),
                        qPrintable(cell(median(t.hit), median(base.hit))));
        }
    }
    return 0;
}
