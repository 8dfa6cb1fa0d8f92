// Prints the time to export a scene of Qt's standard items to DXF and, when Qt SVG is available,
// the time QSvgGenerator takes to paint the same scene, measured interleaved, with their ratio.
//
// Usage: bench_dxfexport [items=4000] [rounds=7]
#include "AbstractScene.h"
#include "Tools2DXF.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QGraphicsSimpleTextItem>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#ifdef BENCH_SVG
#include <QSvgGenerator>
#endif

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Lines, ellipses, rectangles and labels in turn, with pens of 120 colours, four widths and five styles.
void fill(AbstractScene& scene, int count) {
    QRandomGenerator random(7);
    auto coordinate = [&](double limit) { return random.bounded(limit); };
    const Qt::PenStyle styles[] = {Qt::SolidLine, Qt::DashLine, Qt::DotLine, Qt::DashDotLine, Qt::SolidLine};
    for (int i = 0; i < count; ++i) {
        QPen pen(QColor::fromHsv((i % 40) * 9, 128 + (i % 3) * 60, 120 + (i % 7) * 20), double(i % 4),
                 styles[i % 5]);
        const QPointF at(coordinate(1900), coordinate(1400));
        switch (i % 4) {
        case 0:
            scene.addLine(QLineF(at, at + QPointF(coordinate(100) - 50, coordinate(100) - 50)), pen);
            break;
        case 1:
            scene.addEllipse(QRectF(at, QSizeF(5 + coordinate(60), 5 + coordinate(60))), pen);
            break;
        case 2:
            scene.addRect(QRectF(at, QSizeF(5 + coordinate(80), 5 + coordinate(40))), pen,
                          i % 8 == 2 ? QBrush(pen.color()) : QBrush());
            break;
        default: {
            auto* text =
                scene.addSimpleText(QStringLiteral("L%1 = %2 mm").arg(i).arg(coordinate(100), 0, 'f', 2));
            text->setPos(at);
            text->setBrush(pen.color());
        }
        }
    }
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int items = argc > 1 ? std::max(1, atoi(argv[1])) : 4000;
    const int rounds = argc > 2 ? std::max(1, atoi(argv[2])) : 7;
    AbstractScene scene(QRectF(0, 0, 2000, 1500));
    fill(scene, items);
    QTemporaryDir dir;
    const QString dxfName = dir.filePath("bench.dxf");

    std::vector<double> dxfTimes, svgTimes;
    QElapsedTimer timer;
    for (int r = 0; r < rounds; ++r) {
        timer.start();
        QString error;
        if (!exportSceneToDxf(dxfName, &scene, &error)) {
            std::fprintf(stderr, "%s\n", qPrintable(error));
            return 1;
        }
        dxfTimes.push_back(timer.nsecsElapsed() / 1e6);
#ifdef BENCH_SVG
        timer.start();
        {
            QSvgGenerator svg;
            svg.setFileName(dir.filePath("bench.svg"));
            svg.setSize(scene.sceneRect().size().toSize());
            svg.setViewBox(QRectF(QPointF(0, 0), scene.sceneRect().size()));
            QPainter painter(&svg);
            scene.render(&painter, QRectF(), QRectF(), Qt::KeepAspectRatio);
        }
        svgTimes.push_back(timer.nsecsElapsed() / 1e6);
#endif
    }
    std::printf("%d items, median of %d rounds\n", items, rounds);
    std::printf("DXF export     %8.1f ms\n", median(dxfTimes));
#ifdef BENCH_SVG
    std::printf("QSvgGenerator  %8.1f ms\n", median(svgTimes));
    std::printf("ratio DXF/SVG  %8.2f\n", median(dxfTimes) / median(svgTimes));
#else
    std::printf("(Qt SVG not found when configuring: no comparison)\n");
#endif
    return 0;
}
