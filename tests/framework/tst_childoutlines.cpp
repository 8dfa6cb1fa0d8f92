#include "DataColumns.h"
#include "EllipseOutlineItem.h"

#include <QImage>
#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>
#include <QTest>

namespace {

// The smallest rectangle holding every pixel a painting left on a transparent image.
QRect paintedPixels(const QImage& image) {
    QRect painted;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) != 0)
                painted |= QRect(x, y, 1, 1);
    return painted;
}

} // namespace

class TestChildOutlines : public QObject {
    Q_OBJECT
private slots:
    void ellipseBounds_data() {
        addColumns<QRectF, double, int>("rect", "width", "join");
        QTest::newRow("circle") << QRectF(20, 30, 60, 60) << 2.0 << int(Qt::RoundJoin);
        QTest::newRow("flat ellipse, thick pen") << QRectF(10, 40, 120, 18) << 9.0 << int(Qt::MiterJoin);
        QTest::newRow("negative size") << QRectF(90, 80, -50, -30) << 3.0 << int(Qt::BevelJoin);
        QTest::newRow("off-grid") << QRectF(10.3, 20.7, 33.1, 47.9) << 1.5 << int(Qt::SvgMiterJoin);
        QTest::newRow("hairline") << QRectF(5, 5, 40, 30) << 0.0 << int(Qt::RoundJoin);
    }

    // The rectangle holds the whole outline, exactly stroked and as painted, and is never wider
    // than the one Qt finds by stroking.
    void ellipseBounds() {
        QFETCH(QRectF, rect);
        QFETCH(double, width);
        QFETCH(int, join);
        EllipseOutlineItem child(rect);
        QPen pen(Qt::black, width);
        pen.setJoinStyle(Qt::PenJoinStyle(join));
        child.setPen(pen);
        const QRectF bounds = child.boundingRect();
        const double slack = 1e-9 * (qAbs(rect.width()) + qAbs(rect.height()));
        const QRectF stroked = child.shape().boundingRect();
        QVERIFY(bounds.adjusted(-slack, -slack, slack, slack).contains(stroked));
        QVERIFY(child.QGraphicsEllipseItem::boundingRect()
                    .adjusted(-slack, -slack, slack, slack)
                    .contains(bounds));

        QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        QStyleOptionGraphicsItem option;
        child.paint(&painter, &option, nullptr);
        painter.end();
        // Antialiasing may touch the pixel beyond the outline's edge.
        QVERIFY(bounds.toAlignedRect().adjusted(-1, -1, 1, 1).contains(paintedPixels(image)));
    }

    void partOfAnEllipseKeepsQtsAnswer() {
        EllipseOutlineItem child(QRectF(0, 0, 50, 40));
        child.setPen(QPen(Qt::black, 4));
        child.setSpanAngle(90 * 16);
        QCOMPARE(child.boundingRect(), child.QGraphicsEllipseItem::boundingRect());
    }
};

QTEST_MAIN(TestChildOutlines)
#include "tst_childoutlines.moc"
