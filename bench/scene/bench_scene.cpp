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
#include <malloc.h>
#include <functional>
#include <memory>

namespace {

// Heap bytes in use: what the items hold, without the parser's freed memory that the process keeps.
double heapInUse() {
    return double(mallinfo2().uordblks);
}

double msOf(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return timer.nsecsElapsed() / 1e6;
}

// The median of several runs of work.
double medianMs(int runs, const std::function<void()>& work) {
    QList<double> times;
    for (int i = 0; i < runs; ++i)
        times << msOf(work);
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

constexpr double SceneSide = 20000;

// A realistic mix of the built classes, generated from host records and calibrated.
QByteArray makeDocument(int count) {
    QDomDocument doc;
    QDomElement root = doc.createElement(QStringLiteral("scene"));
    root.setAttribute(QStringLiteral("width"), SceneSide);
    root.setAttribute(QStringLiteral("height"), SceneSide);
    root.setAttribute(QStringLiteral("unit"), QStringLiteral("µm"));
    root.setAttribute(QStringLiteral("factor"), 0.25);
    doc.appendChild(root);
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
        static const char* const classes[] = {"LineItem", "CircleItem", "RectangleItem", "VickersPItem",
                                              "LineItem", "CircleItem"};
        QString className = QString::fromLatin1(classes[i % 6]);
        if (className == QLatin1String("VickersPItem")) {
            const double d = cell * 0.3;
            record.points = {centre + QPointF(0, -d), centre + QPointF(d, 0), centre + QPointF(0, d),
                             centre + QPointF(-d, 0)};
        }
        std::unique_ptr<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, i, &record));
        item->setCalibration(calibration);
        QDomElement e = doc.createElement(QStringLiteral("item"));
        e.setAttribute(QStringLiteral("class"), className);
        item->toXml(e);
        root.appendChild(e);
    }
    return doc.toByteArray(1);
}

struct Opened {
    std::unique_ptr<AbstractScene> scene = std::make_unique<AbstractScene>();
    QList<AbstractBaseItem*> items;
};

void open(const QByteArray& bytes, Opened& out) {
    QDomDocument doc;
    doc.setContent(bytes);
    const QDomElement root = doc.documentElement();
    out.scene->setSceneRect(0, 0, SceneSide, SceneSide);
    for (QDomElement e = root.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        QString className = e.attribute(QStringLiteral("class"));
        AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, 0, nullptr);
        item->fromXml(e);
        out.scene->addItem(item);
        out.items << item;
    }
}

QByteArray save(const QList<AbstractBaseItem*>& items) {
    QDomDocument doc;
    QDomElement root = doc.createElement(QStringLiteral("scene"));
    doc.appendChild(root);
    for (const AbstractBaseItem* item : items) {
        QDomElement e = doc.createElement(QStringLiteral("item"));
        e.setAttribute(QStringLiteral("class"), item->getType());
        item->toXml(e);
        root.appendChild(e);
    }
    return doc.toByteArray(1);
}

// One size, in this process: prints one line of the table.
int measureOne(int count) {
    const QByteArray bytes = makeDocument(count);
    const double before = heapInUse();
    const double parse = medianMs(3, [&] {
        QDomDocument doc;
        doc.setContent(bytes);
    });
    Opened opened;
    const double openMs = msOf([&] { open(bytes, opened); });
    const double after = heapInUse();

    QDomDocument parsed;
    parsed.setContent(bytes);
    const double write = medianMs(3, [&] { parsed.toByteArray(1); });
    const double saveMs = medianMs(3, [&] { save(opened.items); });

    // A handgrip drag through a shown view, zoomed so that the dragged item fills a good part of it.
    QGraphicsView view(opened.scene.get());
    view.resize(800, 600);
    view.show();
    if (!QTest::qWaitForWindowExposed(&view))
        std::fprintf(stderr, "the view was not shown: the drag is not measured\n");
    AbstractBaseItem* target = opened.items[opened.items.size() / 2];
    view.fitInView(target->sceneBoundingRect().adjusted(-50, -50, 50, 50), Qt::KeepAspectRatio);
    target->forceSelection();
    QApplication::processEvents();
    HoverEventItem* grip = target->handgripItems().first();
    const QPoint from = view.mapFromScene(grip->scenePos());
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
    constexpr int Steps = 40;
    const double dragMs = msOf([&] {
        for (int i = 1; i <= Steps; ++i) {
            QTest::mouseMove(view.viewport(), from + QPoint(i % 2 ? 3 : -3, i % 3));
            QApplication::processEvents();
        }
    }) / Steps;
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, from);
    view.hide();

    QImage picture(2048, 2048, QImage::Format_ARGB32_Premultiplied);
    const double renderMs = msOf([&] {
        picture.fill(Qt::white);
        QPainter painter(&picture);
        opened.scene->render(&painter);
    });

    QTemporaryDir dir;
    const double dxfMs = msOf([&] { tools2DXF(dir.filePath(QStringLiteral("s.dxf")), opened.scene.get()); });
    const double svgMs = msOf([&] {
        QSvgGenerator svg;
        svg.setFileName(dir.filePath(QStringLiteral("s.svg")));
        svg.setSize(opened.scene->sceneRect().size().toSize());
        QPainter painter(&svg);
        opened.scene->render(&painter);
    });
    const double closeMs = msOf([&] { opened.scene.reset(); });

    std::printf("%8d %9.1f %7.2f %9.1f %7.2f %9.3f %9.1f %7.2f %7.1f %8.1f\n", count, openMs, openMs / parse,
                saveMs, saveMs / write, dragMs, renderMs, dxfMs / svgMs, (after - before) / count,
                closeMs);
    std::fflush(stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1) {
        qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
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
