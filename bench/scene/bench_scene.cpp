// Scene scaling: one process per size (10, 1k, 10k, 100k items), each printing ratios measured within
// that run, so that the machine's speed cancels out. Run without arguments for the whole table.
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QBuffer>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QGraphicsView>
#include <QPainter>
#include <QProcess>
#include <QSvgGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <functional>
#include <malloc.h>
#include <memory>

namespace {

// Heap bytes in use: what the items hold, without the parser's freed memory that the process keeps.
double heapInUse() {
    return double(mallinfo2().uordblks);
}

// Each measure starts from a settled heap: glibc merges freed blocks lazily, and the first large
// free after the reference parse would otherwise pay for merging what that parse freed.
double msOf(const std::function<void()>& work) {
    malloc_trim(0);
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

double median(QList<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

constexpr double SceneSide = 16000;

// A realistic mix of the built classes, generated from host records, calibrated, and saved as the
// library saves a scene.
QByteArray makeDocument(int count) {
    AbstractScene scene(QRectF(0, 0, SceneSide, SceneSide));
    Calibration calibration;
    calibration.unitName = QStringLiteral("µm");
    calibration.factor = 0.25;
    const int perRow = int(std::sqrt(double(count))) + 1;
    const double cell = SceneSide / perRow;
    for (int i = 0; i < count; ++i) {
        const QPointF corner((i % perRow) * cell, (i / perRow) * cell);
        const QPointF centre = corner + QPointF(cell / 2, cell / 2);
        _AUTOPOINTPARAMS record;
        record.center = centre;
        record.radius = cell / 4;
        record.points = {corner + QPointF(cell * 0.1, cell * 0.2), corner + QPointF(cell * 0.8, cell * 0.7)};
        record.rect = QRectF(record.points[0], record.points[1]);
        static const char* const classes[] = {"LineItem",     "CircleItem", "RectangleItem",
                                              "VickersPItem", "LineItem",   "CircleItem"};
        QString className = QString::fromLatin1(classes[i % 6]);
        if (className == QLatin1String("VickersPItem")) {
            const double d = cell * 0.3;
            record.points = {centre + QPointF(0, -d), centre + QPointF(d, 0), centre + QPointF(0, d),
                             centre + QPointF(-d, 0)};
        }
        scene.addItem(XBaseItemToolCreate(className, nullptr, i, &record));
    }
    scene.setCalibration(calibration);
    SceneDocument document;
    document.setCalibration(calibration);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!document.write(&buffer, &scene))
        std::fprintf(stderr, "the document was not written: %s\n", qPrintable(document.errorString()));
    return bytes;
}

// The library's open: the document read into a new scene, every item live.
void open(const QByteArray& bytes, AbstractScene* scene, SceneDocument& document) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    if (!document.read(&buffer, scene))
        std::fprintf(stderr, "the document was not read: %s\n", qPrintable(document.errorString()));
}

// The library's save of the scene.
void save(AbstractScene* scene, SceneDocument& document) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    document.write(&buffer, scene);
}

// One size, in this process: prints one line of the table.
int measureOne(int count) {
    const QByteArray bytes = makeDocument(count);
    // The sides alternate, round after round, so that a change in the machine's load falls on both;
    // each figure is the median of its rounds. Each round opens a new scene and closes the one
    // before, the last is kept for the rest.
    constexpr int Rounds = 3;
    QList<double> parses, opens, closes, writes, saves;
    std::unique_ptr<AbstractScene> scene;
    SceneDocument document;
    double bytesPerItem = 0;
    for (int round = 0; round < Rounds; ++round) {
        parses << msOf([&] {
            QDomDocument doc;
            doc.setContent(bytes);
        });
        // A host closing a scene drops its document with it.
        if (scene)
            closes << msOf([&] {
                scene.reset();
                document = SceneDocument();
            });
        const double before = heapInUse();
        auto opened = std::make_unique<AbstractScene>();
        SceneDocument openedDocument;
        opens << msOf([&] { open(bytes, opened.get(), openedDocument); });
        bytesPerItem = (heapInUse() - before) / count;
        scene = std::move(opened);
        document = openedDocument;
    }
    const QList<AbstractBaseItem*> items = document.items();
    if (items.size() != count)
        std::fprintf(stderr, "%lld items of %d were opened\n", qlonglong(items.size()), count);

    QDomDocument parsed;
    parsed.setContent(bytes);
    for (int round = 0; round < Rounds; ++round) {
        writes << msOf([&] { parsed.toByteArray(1); });
        saves << msOf([&] { save(scene.get(), document); });
    }
    const double parse = median(parses);
    const double openMs = median(opens);
    const double write = median(writes);
    const double saveMs = median(saves);

    // A handgrip drag through a shown view, zoomed so that the dragged item fills a good part of it.
    QGraphicsView view(scene.get());
    view.resize(800, 600);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        std::fprintf(stderr, "the view was not shown: the drag is not measured\n");
    AbstractBaseItem* target = items[items.size() / 2];
    view.fitInView(target->sceneBoundingRect().adjusted(-50, -50, 50, 50), Qt::KeepAspectRatio);
    // As a host does: labels and grips keep their size on screen whatever the zoom.
    scene->setZoomFactors(view.transform().m11(), view.transform().m22());
    target->forceSelection();
    QApplication::processEvents();
    HoverEventItem* grip = target->handgripItems().first();
    const QPoint from = view.mapFromScene(grip->scenePos());
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
    const auto steps = [&](int count) {
        for (int i = 1; i <= count; ++i) {
            QTest::mouseMove(view.viewport(), from + QPoint(i % 2 ? 3 : -3, i % 3));
            QApplication::processEvents();
        }
    };
    // The first steps load the label's glyphs, whatever the size of the scene.
    steps(5);
    constexpr int Steps = 40;
    const double dragMs = msOf([&] { steps(Steps); }) / Steps;
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, from);
    view.hide();

    QImage picture(2048, 2048, QImage::Format_ARGB32_Premultiplied);
    const double renderMs = msOf([&] {
        picture.fill(Qt::white);
        QPainter painter(&picture);
        scene->render(&painter);
    });

    QTemporaryDir dir;
    const double dxfMs = msOf([&] { tools2DXF(dir.filePath(QStringLiteral("s.dxf")), scene.get()); });
    const double svgMs = msOf([&] {
        QSvgGenerator svg;
        svg.setFileName(dir.filePath(QStringLiteral("s.svg")));
        svg.setSize(scene->sceneRect().size().toSize());
        QPainter painter(&svg);
        scene->render(&painter);
    });
    closes << msOf([&] { scene.reset(); });
    const double closeMs = median(closes);

    std::printf("%8d %9.1f %7.2f %9.1f %7.2f %9.3f %9.1f %7.2f %7.1f %8.1f\n", count, openMs, openMs / parse,
                saveMs, saveMs / write, dragMs, renderMs, dxfMs / svgMs, bytesPerItem, closeMs);
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        qputenv("QT_QPA_PLATFORM",
                qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
        QApplication app(argc, argv);
        return measureOne(QByteArray(argv[1]).toInt());
    }
    std::printf("   items   open ms  /parse   save ms  /write   drag ms render ms dxf/svg B/item close ms\n");
    std::fflush(stdout);
    const QList<int> sizes = argc > 1 ? QList<int>{} : QList<int>{10, 1000, 10000, 100000};
    for (int size : sizes) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QString::fromLocal8Bit(argv[0]), {QString::number(size)});
        child.waitForFinished(-1);
    }
    return 0;
}
