// The picture items: face, scale bar, picture, magnifier note and video.
#include "CircleNote.h"
#include "DXFItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "DxfReader.h"
#include "GeometryPolygons.h"
#include "PixmapItem.h"
#include "RectangleItem.h"
#include "SmileyItem.h"
#include "StampItem.h"
#include "TestFiles.h"
#include "Tools2DXF.h"
#include "VideoItem.h"

#include <QDir>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <cmath>

namespace {

QImage rendered(QGraphicsScene& scene) {
    scene.clearSelection();
    QImage picture(scene.sceneRect().size().toSize(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    scene.render(&painter, QRectF(picture.rect()), scene.sceneRect());
    return picture;
}

QImage noise(int w, int h) {
    QImage image(w, h, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x)
            image.setPixel(x, y, random.generate() | 0xff000000u);
    }
    return image;
}

QImage filled(QSize size, QColor colour, QImage::Format format = QImage::Format_RGB32) {
    QImage image(size, format);
    image.fill(colour);
    return image;
}

QImage pixels(const QImage& image) {
    return image.convertToFormat(QImage::Format_ARGB32);
}

// A drawing with its units, the layers RED (colour 1) and OFF (switched off) and these entities.
QByteArray dxfFile(int insunits, const QByteArray& entities, const QByteArray& blocks = {}) {
    return "0\nSECTION\n2\nHEADER\n9\n$INSUNITS\n70\n" + QByteArray::number(insunits) +
           "\n0\nENDSEC\n0\nSECTION\n2\nTABLES\n0\nTABLE\n2\nLAYER\n70\n2\n"
           "0\nLAYER\n2\nRED\n70\n0\n62\n1\n0\nLAYER\n2\nOFF\n70\n0\n62\n-5\n0\nENDTAB\n0\nENDSEC\n"
           "0\nSECTION\n2\nBLOCKS\n" +
           blocks + "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" + entities + "0\nENDSEC\n0\nEOF\n";
}

QByteArray dxfLine(const QByteArray& layer, const QByteArray& x1 = "0", const QByteArray& x2 = "10") {
    return "0\nLINE\n8\n" + layer + "\n10\n" + x1 + "\n20\n0\n11\n" + x2 + "\n21\n0\n";
}

// A DXFItem of the file, laid by a click at `at` on the view's scene.
DXFItem* laidDrawing(DrawingView& v, const QString& file, const QPointF& at) {
    QPointer<DXFItem> item = qobject_cast<DXFItem*>(startTool(&v.scene, "DXFItem"));
    item->setFileName(file);
    v.drag(at, at);
    return item;
}

// The outlines of an exported scene in scene coordinates, and each text as the point it stands on.
QList<QPolygonF> drawnInScene(const QString& dxf, const QRectF& sceneRect) {
    const QTransform toScene = dxfExportToScene(sceneRect);
    QPainterPath outlines;
    QList<QPolygonF> texts;
    for (const DxfLayer& layer : readDxfFile(dxf).layers) {
        outlines.addPath(layer.path);
        for (const DxfText& text : layer.texts)
            texts.append(QPolygonF{toScene.map(text.position)});
    }
    return outlines.toSubpathPolygons(toScene) + texts;
}

} // namespace

Q_DECLARE_METATYPE(Calibration)

class TestPictures : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    void framesDrawn_data() {
        const auto row =
            addColumns<QString, QPointF, bool, QSize, QRectF>("className", "to", "shift", "picture", "frame");
        // From (100, 80).
        row("smiley drag", "SmileyItem", {160, 110}, false, {}, {100, 80, 60, 30});
        row("shift draws a round face", "SmileyItem", {160, 110}, true, {}, {100, 80, 60, 60});
        row("video click", "VideoItem", {100, 80}, false, {}, {100, 80, 320, 240});
        row("picture at its size", "PixmapItem", {100, 80}, false, {40, 20}, {100, 80, 40, 20});
        row("shift keeps the picture's shape", "PixmapItem", {200, 100}, true, {40, 20}, {100, 80, 100, 50});
        row("placeholder click", "PixmapItem", {100, 80}, false, {}, {100, 80, 160, 120});
    }

    void framesDrawn() {
        QFETCH(QString, className);
        QFETCH(QPointF, to);
        QFETCH(bool, shift);
        QFETCH(QSize, picture);
        QFETCH(QRectF, frame);
        DrawingView v;
        QPointer<AbstractBaseItem> item = startTool(&v.scene, className);
        if (picture.isValid())
            QVERIFY(qgraphicsitem_cast<PixmapItem*>(item)->setImage(filled(picture, Qt::red)));
        v.drag({100, 80}, to, shift ? Qt::ShiftModifier : Qt::NoModifier);
        QVERIFY(item && !v.scene.itemInCreation());
        auto* framed = static_cast<FrameItem*>(item.data());
        QCOMPARE(framed->mapRectToScene(framed->frame()), frame);
        QCOMPARE(item->mline(), (QList<QPointF>{frame.topLeft(), frame.bottomRight()}));
        QCOMPARE(item->handgripItems().size(), className == "VideoItem" ? 4 : 5);
    }

    void cornerGrips_data() {
        // to: item coordinates
        addColumns<double, int, QPointF, bool, QSizeF>("rotation", "grip", "to", "shift", "size");
        // The picture (100, 80, 100, 60).
        QTest::newRow("bottom right") << 0.0 << 7 << QPointF(230, 160) << false << QSizeF(130, 80);
        QTest::newRow("top left keeps 5:3 with shift")
            << 0.0 << 0 << QPointF(60, 70) << true << QSizeF(140, 84);
        QTest::newRow("never across the facing corner")
            << 0.0 << 7 << QPointF(50, 50) << false << QSizeF(2, 2);
        QTest::newRow("turned: top right") << 30.0 << 2 << QPointF(220, 40) << false << QSizeF(120, 100);
    }

    void cornerGrips() {
        QFETCH(double, rotation);
        QFETCH(int, grip);
        QFETCH(QPointF, to);
        QFETCH(bool, shift);
        QFETCH(QSizeF, size);
        DrawingView v;
        QPointer<PixmapItem> item = qobject_cast<PixmapItem*>(startTool(&v.scene, "PixmapItem"));
        item->setImage(filled({100, 60}, Qt::green));
        v.drag({100, 80}, {100, 80});
        item->rotate(rotation);
        const int facing = HoverEventItem::BottomRight - grip;
        const QPointF fixed = item->mapToScene(HoverEventItem::positionOnRect(item->frame(), facing));
        EditSpy spy(item);
        QSignalSpy steps(item, qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
        for (HoverEventItem* g : item->handgripItems()) {
            if (g->getId() == grip)
                v.drag(g->scenePos(), item->mapToScene(to), shift ? Qt::ShiftModifier : Qt::NoModifier);
        }
        QVERIFY(qAbs(item->frame().width() - size.width()) < 1.5 &&
                qAbs(item->frame().height() - size.height()) < 1.5);
        QVERIFY(
            QLineF(item->mapToScene(HoverEventItem::positionOnRect(item->frame(), facing)), fixed).length() <
            1e-6);
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
        // One scale step per move, the last flagged.
        QCOMPARE(steps.count(), 2);
        QCOMPARE(steps.last().mid(1), (QList<QVariant>{int(PixmapItem::ScaleStep), true}));
    }

    void smileyMoods() {
        DrawingView v;
        auto* item = qgraphicsitem_cast<SmileyItem*>(v.draw("SmileyItem", {100, 100}, {200, 200}));
        QVERIFY(item);
        // The middle of the mouth, the last curve: below its corners when happy, above them when sad.
        const auto mouthMiddle = [&] {
            const QPolygonF mouth = item->face(item->frame(), item->mood()).toSubpathPolygons().last();
            return mouth.at(mouth.size() / 2).y();
        };
        QVERIFY(mouthMiddle() > 170);
        QVERIFY(choose(item, "sad") && mouthMiddle() < 170);
        QVERIFY(choose(item, "neutral") && mouthMiddle() == 170);
        QCOMPARE(saved(item).value("mood"), "1");
    }

    void stampLength_data() {
        const auto row = addColumns<int, Calibration, double, double, double, QString, double>(
            "width", "calibration", "fraction", "typed", "length", "text", "pixels");
        const Calibration um = calibration(0.25, "µm");
        row("a tenth: 25 µm is nearer 20 than 50", 1000, um, 0.1, 0, 20, "20 µm", 80);
        row("below one", 600, calibration(0.005, "mm"), 0.2, 0, 0.5, "0.5 mm", 100);
        row("below the decimals", 1000, calibration(1e-5, "mm"), 0.2, 0, 0.002, "0.002 mm", 200);
        row("typed, cut to the decimals", 1000, calibration(0.25, "µm", 1), 0.2, 12.34, 12.34, "12.3 µm",
            49.36);
    }

    void stampLength() {
        QFETCH(int, width);
        QFETCH(Calibration, calibration);
        QFETCH(double, fraction);
        QFETCH(double, typed);
        QFETCH(double, length);
        QFETCH(QString, text);
        QFETCH(double, pixels);
        DrawingView v;
        v.scene.setImage(filled({width, 300}, Qt::gray));
        v.scene.setCalibration(calibration);
        auto* stamp = qgraphicsitem_cast<StampItem*>(v.draw("StampItem", {50, 250}, {50, 250}));
        QVERIFY(stamp);
        QVERIFY(stamp->setFraction(fraction));
        QVERIFY(stamp->setTypedLength(typed));
        QCOMPARE(stamp->length(), length);
        QCOMPARE(stamp->accessmesure(AbstractBaseItem::Dist1), length);
        QCOMPARE(stamp->text(), text);
        QCOMPARE(stamp->barPixels(), pixels);
        QCOMPARE(stamp->mline(), (QList<QPointF>{{50, 250}, {50 + pixels, 250}}));
        // Refused lengths leave it as it was.
        for (const double bad : {qQNaN(), -1.0, qInf(), 1e6 * calibration.factor * 2})
            QVERIFY(!stamp->setTypedLength(bad));
        QCOMPARE(stamp->length(), length);
        for (const double bad : {0.0, 1.5, qQNaN()})
            QVERIFY(!stamp->setFraction(bad));
        checkXmlRoundTrip(stamp);
    }

    // The stamp in the bottom right corner stays there as the calibration and the image change.
    void stampStaysInItsCorner() {
        DrawingView v;
        v.scene.setImage(filled({1000, 800}, Qt::darkGray));
        v.scene.setCalibration(calibration(0.25, "µm"));
        auto* stamp = qgraphicsitem_cast<StampItem*>(v.draw("StampItem", {50, 50}, {50, 50}));
        QVERIFY(stamp);
        QVERIFY(choose(stamp, "Bottom right corner"));
        const auto inCorner = [&](double margin) {
            const QRectF box = stamp->sceneBoundingRect();
            return qAbs(box.right() - (v.scene.image().width() - margin)) < 1e-6 &&
                   qAbs(box.bottom() - (v.scene.image().height() - margin)) < 1e-6;
        };
        QVERIFY(inCorner(24));
        EditSpy spy(stamp);
        v.scene.setCalibration(calibration(0.5, "µm"));
        QCOMPARE(stamp->text(), "100 µm");
        QVERIFY(inCorner(24));
        QCOMPARE(spy.end.count(), 1);
        v.scene.setImage(filled({4000, 500}, Qt::darkGray));
        QCOMPARE(stamp->text(), "500 µm");
        QVERIFY(inCorner(15));
        stamp->setPos(stamp->pos() + QPointF(-10, 0));
        QCOMPARE(stamp->corner(), int(StampItem::NoCorner));
        v.scene.setCalibration(calibration(0.25, "µm"));
        QVERIFY(!inCorner(15));
    }

    void pixmapRoundTrips_data() {
        // path: as saved; %1 the picture's folder
        addColumns<bool, bool, QString>("embedded", "inDocument", "path");
        QTest::newRow("path") << false << false << "%1/pictures/grain.png";
        QTest::newRow("path beside the document") << false << true << "pictures/grain.png";
        QTest::newRow("embedded in a document") << true << true << "pictures/grain.png";
    }

    void pixmapRoundTrips() {
        QFETCH(bool, embedded);
        QFETCH(bool, inDocument);
        QFETCH(QString, path);
        QTemporaryDir dir;
        const QImage picture = noise(30, 20);
        QVERIFY(QDir(dir.path()).mkdir("pictures"));
        const QString file = dir.filePath("pictures/grain.png");
        QVERIFY(picture.save(file));
        DrawingView v;
        if (inDocument)
            v.scene.setDocumentFolder(dir.path());
        QPointer<PixmapItem> item = qobject_cast<PixmapItem*>(startTool(&v.scene, "PixmapItem"));
        QVERIFY(item->setFileName(inDocument ? "pictures/grain.png" : file));
        v.drag({50, 60}, {50, 60});
        QVERIFY(item);
        QCOMPARE(item->fileName(), file);
        if (embedded)
            QVERIFY(choose(item, "Embed picture"));
        QVERIFY(choose(item, "50 %"));
        const Attributes first = saved(item);
        QCOMPARE(first.value("path"), path.contains("%1") ? path.arg(dir.path()) : path);
        QCOMPARE(first.contains("data"), embedded);
        QCOMPARE(first.value("opacity"), "50");

        // Read again by a document in another folder: only an embedded picture travels with it.
        QTemporaryDir elsewhere;
        AbstractScene other;
        if (inDocument)
            other.setDocumentFolder(elsewhere.path());
        auto* back = qgraphicsitem_cast<PixmapItem*>(loadedOn(other, "PixmapItem", first));
        QCOMPARE(saved(back), first);
        QCOMPARE(pixels(back->image()) == pixels(picture), embedded || !inDocument);
        QCOMPARE(back->warning().contains("file not found"), !embedded && inDocument);
        QCOMPARE(back->mapRectToScene(back->frame()), QRectF(50, 60, 30, 20));
    }

    // Every step of a grip drag tells the host which transform it was, the last one flagged.
    // The turning grip, 20 above the frame's middle, taken a quarter turn clockwise about the centre.
    void pixmapTurns() {
        DrawingView v;
        QPointer<PixmapItem> item = qobject_cast<PixmapItem*>(startTool(&v.scene, "PixmapItem"));
        item->setImage(filled({120, 60}, Qt::green));
        v.drag({100, 80}, {100, 80});
        QSignalSpy steps(item, qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
        v.dragGrip(item, FrameItem::RotationGrip, QPointF(160, 110) + QPointF(50, 0));
        QCOMPARE(item->rotation(), 90.0);
        QCOMPARE(steps.last(), (QList<QVariant>{QVariant::fromValue<void*>(item.data()),
                                                int(PixmapItem::RotationStep), true}));
        QCOMPARE(item->mapToScene(item->frame().center()), QPointF(160, 110));
    }

    void badPictures_data() {
        // bytes: empty for no file at all
        addColumns<QByteArray, QString>("bytes", "warning");
        QTest::newRow("missing") << QByteArray() << "file not found";
        QTest::newRow("text") << QByteArray("not a picture") << "not a picture Qt can read";
        // A header announcing 30000 x 30000 pixels (3.6 GB): refused before any pixel is allocated.
        QTest::newRow("30000 x 30000")
            << QByteArray("P6\n30000 30000\n255\n") << "30000 x 30000 pixels: beyond the limit";
        const QByteArray svg =
            "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' ";
        QTest::newRow("svg beyond the limit") << svg + "width='30000' height='30000'/>"
                                              << "beyond the limit";
        QTest::newRow("svg of nothing") << svg + "width='0' height='0'/>"
                                        << "empty picture";
        QTest::newRow("svg linking a file")
            << svg + "width='10' height='10'><image xlink:href='/etc/hosts' width='9' height='9'/></svg>"
            << "not fetched";
        QTest::newRow("svg with an entity") << "<!DOCTYPE svg [<!ENTITY x SYSTEM 'file:///etc/hosts'>]>" +
                                                   svg + "width='9' height='9'>&x;</svg>"
                                            << "not fetched";
    }

    // A picture that cannot be shown, from a file or embedded: a placeholder with the reason, never a crash.
    void badPictures() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, warning);
        QTemporaryDir dir;
        const QString file = written(dir, "bad.picture", bytes);
        DrawingView v;
        auto* item = qobject_cast<PixmapItem*>(v.draw("PixmapItem", {50, 50}, {150, 120}));
        QVERIFY(item);
        QVERIFY(!item->setFileName(file));
        QVERIFY2(item->warning().contains(warning), qPrintable(item->warning()));
        QVERIFY(item->image().isNull());
        QVERIFY(rendered(v.scene).copy(50, 50, 101, 71) != filled({101, 71}, Qt::white));
        Attributes embedded = saved(item);
        embedded.insert("data", QString::fromLatin1(bytes.toBase64()));
        auto* back = qgraphicsitem_cast<PixmapItem*>(loadedOn(v.scene, "PixmapItem", embedded));
        QVERIFY(back->image().isNull());
        QVERIFY(!back->warning().isEmpty());
        rendered(v.scene);
    }

    // The region (100, 100) r 10, the note on (250, 150): image pixel (100 + i, 100 + j) shows as a
    // square of the magnification's side from (250 + i k, 150 + j k).
    void noteMagnifiesThePixels() {
        DrawingView v;
        v.scene.setImage(noise(400, 300));
        QPointer<CircleNote> note = qobject_cast<CircleNote*>(startTool(&v.scene, "CircleNote"));
        v.drag({100, 100}, {110, 100});
        QCOMPARE(v.scene.itemInCreation(), note.data());
        v.move({250, 150});
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at({250, 150}));
        QVERIFY(note && !v.scene.itemInCreation());
        QVERIFY(choose(note, "4x"));
        const int k = 4;
        QCOMPARE(note->magnification(), k);
        QCOMPARE(note->mline(), (QList<QPointF>{{100, 100}, {250, 150}}));
        const QImage image = v.scene.image();
        const QImage picture = rendered(v.scene);
        for (const QPoint d : {QPoint(0, 0), QPoint(-8, -5), QPoint(6, 6), QPoint(-1, 8), QPoint(7, -2)}) {
            const QPoint shown(250 + d.x() * k + k / 2, 150 + d.y() * k + k / 2);
            QCOMPARE(picture.pixel(shown), image.pixel(QPoint(100, 100) + d));
        }
        // Beyond the note's circle the image shows as it is.
        const QPoint outside(250 + 9 * k, 150 + 9 * k);
        QCOMPARE(picture.pixel(outside), image.pixel(outside));
        QSignalSpy changed(note, &AbstractBaseItem::imageChanged);
        v.scene.setImage(noise(200, 300).mirrored());
        QCOMPARE(changed.first(), (QList<QVariant>{"scene", true}));
        QCOMPARE(rendered(v.scene).pixel(250 + k / 2, 150 + k / 2), v.scene.image().pixel(100, 100));
    }

    void noteEdits() {
        DrawingView v;
        v.scene.setImage(filled({400, 300}, Qt::gray));
        QPointer<CircleNote> note = qobject_cast<CircleNote*>(startTool(&v.scene, "CircleNote"));
        QSignalSpy ended(note, &AbstractBaseItem::mesureChangedEND);
        v.drag({100, 100}, {100, 100});
        QTest::keyClick(v.view.viewport(), Qt::Key_Return);
        QVERIFY(note && !v.scene.itemInCreation());
        QCOMPARE(ended.count(), 1);
        QCOMPARE(note->regionRadius(), CircleNote::DefaultRadius);
        // Each tangent ends on both circles, square to both radii.
        const auto checkTangents = [&] {
            QCOMPARE(note->tangents().size(), 2);
            for (const QLineF& t : note->tangents()) {
                const QLineF a(note->regionCentre(), t.p1()), b(note->noteCentre(), t.p2());
                QVERIFY(qFuzzyCompare(a.length(), note->regionRadius()) &&
                        qFuzzyCompare(b.length(), note->noteRadius()));
                for (const QLineF& radius : {a, b})
                    QVERIFY(qAbs(std::abs(std::remainder(radius.angleTo(t), 180)) - 90) < 1e-4);
            }
        };
        checkTangents();
        v.scene.setCalibration(calibration(0.5, "mm"));
        QCOMPARE(note->accessmesure(AbstractBaseItem::Rad1), 10.0);
        QCOMPARE(note->accessmesure(AbstractBaseItem::Cust), 4.0);
        QCOMPARE(note->label()->text(), "rad1:10.00*mm");
        EditSpy spy(note);
        note->forceSelection();
        v.dragGrip(note, CircleNote::RegionEdge, {130, 100});
        QCOMPARE(note->regionRadius(), 30.0);
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
        checkTangents();
        QVERIFY(choose(note, "Magnification") && choose(note, "8x"));
        QCOMPARE(note->label()->text(), "x8");
        QCOMPARE(note->accessmesure(AbstractBaseItem::Rad1), 15.0);
        QCOMPARE(spy.end.count(), 2);
        checkXmlRoundTrip(note);
        const QPointF noteAt = note->noteCentre();
        note->setNoteCentre({qQNaN(), 1});
        QCOMPARE(note->noteCentre(), noteAt);
        // A note over its region has no outer tangent.
        note->setNoteCentre(note->regionCentre() + QPointF(30, 0));
        QVERIFY(note->tangents().isEmpty());
        QSignalSpy changed(note, &AbstractBaseItem::imageChanged);
        note->setRegion({-500, -500}, 20);
        v.scene.setImage(filled({400, 300}, Qt::white));
        QCOMPARE(changed.first(), (QList<QVariant>{"scene", false}));
    }

    // A camera thread pushes frames of changing sizes and formats faster than they can be shown: the
    // item shows the last one, every frame is either painted once or dropped, and none queue up.
    void videoPaintsTheLastOfABurst() {
        DrawingView v;
        QPointer<VideoItem> video = qobject_cast<VideoItem*>(v.draw("VideoItem", {20, 20}, {20, 20}));
        QVERIFY(video);
        const QColor last(10, 200, 30);
        std::unique_ptr<QThread> camera(QThread::create([&video, last] {
            const QImage::Format formats[] = {QImage::Format_RGB32, QImage::Format_ARGB32,
                                              QImage::Format_Grayscale8, QImage::Format_RGB888};
            for (int i = 0; i < 299; ++i)
                video->setFrame(
                    filled({64 + i % 7, 48 + i % 5}, QColor::fromHsv(i % 360, 255, 255), formats[i % 4]));
            video->setFrame(QImage());
            video->setFrame(QImage(20000, 1, QImage::Format_Mono));
            video->setFrame(filled({80, 60}, last));
        }));
        camera->start();
        while (!camera->wait(1))
            QCoreApplication::processEvents();
        QTRY_COMPARE(video->currentFrame().size(), QSize(80, 60));
        QCOMPARE(video->currentFrame().pixel(0, 0), last.rgb());
        QCOMPARE(rendered(v.scene).pixel(180, 140), last.rgb());
        QCOMPARE(video->receivedFrames(), 300);
        QCOMPARE(video->refusedFrames(), 2);
        QVERIFY(video->droppedFrames() > 0);
        QCOMPARE(video->droppedFrames() + video->paintedFrames(), video->receivedFrames());
        QVERIFY(video->frameRate() > 0);
    }

    void videoStartsStopsAndSnaps() {
        DrawingView v;
        auto* video = qobject_cast<VideoItem*>(v.draw("VideoItem", {20, 20}, {20, 20}));
        QVERIFY(video);
        int left = 0, right = 0;
        cameraInfos infos;
        infos.name = "left";
        video->videoStarted(&left, &infos);
        QCOMPARE(video->cameraName(), "left");
        QCOMPARE(rendered(v.scene).pixel(40, 240), qRgb(0, 0, 0)); // "no signal" on black
        QMenu menu;
        QVERIFY(!menuOf(video, menu).value("Snapshot")->isEnabled());
        for (const int hue : {0, 120, 240})
            video->setFrame(filled({64, 48}, QColor::fromHsv(hue, 255, 200)));
        QTRY_VERIFY(!video->currentFrame().isNull());
        QSignalSpy changed(video, &AbstractBaseItem::itemChanged);
        QVERIFY(choose(video, "Snapshot"));
        QCOMPARE(pixels(v.scene.image()), pixels(video->currentFrame()));
        QCOMPARE(changed.first().at(1), "Snapshot");
        video->videoStopped(&right);
        QVERIFY(video->isRunning());
        video->videoStopped(&left);
        QVERIFY(!video->isRunning() && video->currentFrame().isNull());
        video->setFrame(filled({64, 48}, Qt::red));
        QCOMPARE(video->receivedFrames(), 3);
    }

    void drawingUnits_data() {
        // units: a menu entry, or none
        addColumns<int, Calibration, QString, double>("insunits", "calibration", "units", "pixelsPerUnit");
        QTest::newRow("mm on 2 µm a pixel") << 4 << calibration(2, "µm") << "" << 500.0;
        QTest::newRow("inches on 0.1 mm a pixel") << 1 << calibration(0.1, "mm") << "" << 254.0;
        QTest::newRow("unitless: a pixel a unit") << 0 << calibration(0.25, "µm") << "" << 1.0;
        QTest::newRow("unitless taken as mm") << 0 << calibration(2, "µm") << "Millimetres" << 500.0;
        QTest::newRow("mm taken as pixels") << 4 << calibration(2, "µm") << "Pixels" << 1.0;
        QTest::newRow("calibrated in an unknown unit") << 4 << calibration(2, "px") << "" << 1.0;
    }

    // The line (0, 0)-(10, 0) of the drawing, laid with its extents' left end at x = 50.
    void drawingUnits() {
        QFETCH(int, insunits);
        QFETCH(Calibration, calibration);
        QFETCH(QString, units);
        QFETCH(double, pixelsPerUnit);
        QTemporaryDir dir;
        const QString file = written(dir, "part.dxf", dxfFile(insunits, dxfLine("RED")));
        DrawingView v;
        v.scene.setCalibration(calibration);
        DXFItem* item = laidDrawing(v, file, {50, 200});
        QVERIFY(item && item->warning().isEmpty());
        QVERIFY(units.isEmpty() || choose(item, units));
        QCOMPARE(item->unitPixels(), pixelsPerUnit);
        QCOMPARE(item->scale(), 1.0);
        const auto atScene = [&](QPointF p) { return item->mapToScene(item->drawingTransform().map(p)); };
        QCOMPARE(atScene({0, 0}).x(), 50.0);
        QCOMPARE(atScene({10, 0}) - atScene({0, 0}), QPointF(10 * pixelsPerUnit, 0));
        checkXmlRoundTrip(item);
    }

    void drawingLayersAndGrips() {
        QTemporaryDir dir;
        const QString file =
            written(dir, "part.dxf", dxfFile(4, dxfLine("RED") + "0\nCIRCLE\n8\nOFF\n10\n5\n20\n0\n40\n2\n"));
        DrawingView v;
        v.scene.setImage(filled({400, 300}, Qt::white));
        v.scene.setCalibration(calibration(0.1, "mm"));
        DXFItem* item = laidDrawing(v, file, {50, 100});
        QVERIFY(item);
        QCOMPARE(checkedEntries(item), (QStringList{"Units of the file", "Layer RED"}));
        // The line and the circle of radius 2 about (5, 0) span (0, -2)-(10, 2) mm: 100 x 40 pixels.
        QCOMPARE(item->mapRectToScene(item->frame()), QRectF(50, 100, 100, 40));
        const auto redAt = [&](QPoint p) { return rendered(v.scene).pixel(p) == qRgb(255, 0, 0); };
        QVERIFY(redAt({100, 120}));
        QVERIFY(choose(item, "Layer RED") && !redAt({100, 120}));
        QCOMPARE(saved(item).value("hidden"), "OFF|RED");
        checkXmlRoundTrip(item);
        item->setLayerVisible("RED", true);
        // The corner grip keeps the drawing's shape.
        item->forceSelection();
        v.dragGrip(item, HoverEventItem::BottomRight, {250, 120});
        QCOMPARE(item->scale(), 2.0);
        QCOMPARE(item->mapRectToScene(item->frame()), QRectF(50, 100, 200, 80));
        // A new calibration rescales the drawing about its origin.
        const QPointF origin = item->mapToScene(item->origin());
        v.scene.setCalibration(calibration(0.2, "mm"));
        QCOMPARE(item->mapToScene(item->origin()), origin);
        QCOMPARE(item->mapRectToScene(item->frame()), QRectF(50, 120, 100, 40));
        QVERIFY(choose(item, "Origin at the bottom left corner"));
        QCOMPARE(item->mapToScene(item->origin()), QPointF(0, 300));
    }

    void badDrawings_data() {
        // bytes: null for no file
        addColumns<QByteArray, QString, bool>("bytes", "warning", "drawn");
        QTest::newRow("missing") << QByteArray() << "file not found" << false;
        QTest::newRow("not a drawing") << QByteArray("\x01\x02 junk", 7) << "error" << false;
        QTest::newRow("1e300") << dxfFile(4, dxfLine("RED") + dxfLine("RED", "1e300"))
                               << "refused, bad values: LINE 1" << true;
    }

    // Whatever the file, the item tells what it left out and never fails to paint or save.
    void badDrawings() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, warning);
        QFETCH(bool, drawn);
        QTemporaryDir dir;
        const QString file = written(dir, "bad.dxf", bytes);
        DrawingView v;
        DXFItem* item = laidDrawing(v, file, {50, 50});
        QVERIFY(item);
        QVERIFY2(item->warning().contains(warning), qPrintable(item->warning()));
        QCOMPARE(!item->drawing().isEmpty(), drawn);
        QVERIFY(item->frame().width() > 0 && std::isfinite(item->frame().width()));
        rendered(v.scene);
        checkXmlRoundTrip(item);
    }

    // A scene exported to DXF and read back as a drawing coincides with its items: exported again,
    // it draws the same outlines and labels, every vertex within half a pixel of one of the other.
    void exportedSceneLoadsBackAsADrawing() {
        QTemporaryDir dir;
        const QString first = dir.filePath("scene.dxf"), second = dir.filePath("again.dxf");
        DrawingView v;
        v.draw("LineItem", {40, 50}, {300, 90});
        v.draw("CircleItem", {200, 180}, {240, 180});
        auto* rectangle = static_cast<RectangleItem*>(v.draw("RectangleItem", {60, 150}, {160, 260}));
        rectangle->rotate(20);
        v.draw("SmileyItem", {300, 180}, {380, 260});
        v.scene.clearSelection();
        QCOMPARE(tools2DXF(first, &v.scene), 0);

        DrawingView w;
        DXFItem* item = laidDrawing(w, first, {10, 10});
        QVERIFY(item && item->warning().isEmpty());
        QVERIFY(choose(item, "Origin at the bottom left corner"));
        item->setPen(QPen(Qt::blue, 2)); // colours the drawing; the frame stays unseen
        w.scene.clearSelection();
        QCOMPARE(tools2DXF(second, &w.scene), 0);
        const QList<QPolygonF> before = drawnInScene(first, v.scene.sceneRect());
        const QList<QPolygonF> after = drawnInScene(second, w.scene.sceneRect());
        QVERIFY(before.size() > 8);
        QCOMPARE(after.size(), before.size());
        const auto vertices = [](const QList<QPolygonF>& drawing) {
            QList<QPointF> all;
            for (const QPolygonF& polygon : drawing)
                all += polygon;
            return all;
        };
        const double farthest = distance_hausdorff(vertices(before), vertices(after));
        QVERIFY2(farthest <= 0.5, qPrintable(QString::number(farthest)));
    }
};

QTEST_MAIN(TestPictures)
#include "tst_pictures.moc"
