#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

class TestFilterNeighbourhood : public QObject {
    Q_OBJECT
private slots:
    void sharpenByteRule_data();
    void sharpenByteRule();
    void sharpenTwoRowsOnlyConverts();
    void earlyReturns_data();
    void earlyReturns();
    void uniformImageUnchanged_data();
    void uniformImageUnchanged();
    void boxBlurMeansClippedNeighbourhood();
    void edgeOfVerticalStep();
    void antialiasWeights();
    void despeckleLowersSpeckle();
    void charcoalIsOpaqueGrey();
    void grayscaleWeights();
};

void TestFilterNeighbourhood::sharpenByteRule_data() {
    QTest::addColumn<int>("centre");
    QTest::addColumn<int>("neighbour");
    QTest::addColumn<int>("expected");
    QTest::newRow("600 keeps its low byte 88") << 200 << 100 << 88;
    QTest::newRow("500 has bit 8 set: 255") << 100 << 0 << 255;
    QTest::newRow("negative sum: 0") << 10 << 100 << 0;
    QTest::newRow("plain 5c - 4n") << 50 << 20 << 170;
}

void TestFilterNeighbourhood::sharpenByteRule() {
    QFETCH(int, centre);
    QFETCH(int, neighbour);
    QFETCH(int, expected);
    QImage image = filled(3, 3, qRgb(neighbour, neighbour, neighbour));
    image.setPixel(1, 1, qRgb(centre, centre, centre));
    filterSharpen(image, 1);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(word(image, 1, 1), qRgb(expected, expected, expected));
    QCOMPARE(word(image, 0, 1), qRgb(neighbour, neighbour, neighbour));
}

void TestFilterNeighbourhood::sharpenTwoRowsOnlyConverts() {
    const QImage source = seeded(5, 2, 11);
    QImage image = source;
    filterSharpen(image, 3);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QVERIFY(sameWords(image, source));
}

void TestFilterNeighbourhood::earlyReturns_data() {
    QTest::addColumn<Filter>("filter");
    QTest::addColumn<QSize>("size");
    QTest::newRow("edge on 2 x 10") << Filter(filterEdge) << QSize(2, 10);
    QTest::newRow("edge on 10 x 2") << Filter(filterEdge) << QSize(10, 2);
    QTest::newRow("blur radius 5, 9 wide") << Filter([](QImage& i) { filterBlur(i, 5); }) << QSize(9, 20);
    QTest::newRow("blur radius 0") << Filter([](QImage& i) { filterBlur(i, 0); }) << QSize(9, 9);
    QTest::newRow("sharpen argument 0") << Filter([](QImage& i) { filterSharpen(i, 0); }) << QSize(9, 9);
    QTest::newRow("antialias 2 high") << Filter(filterAntialias) << QSize(9, 2);
}

void TestFilterNeighbourhood::earlyReturns() {
    QFETCH(Filter, filter);
    QFETCH(QSize, size);
    const QImage source = seeded(size.width(), size.height(), 5, false);
    QImage image = source;
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QVERIFY(sameWords(image, source));
}

void TestFilterNeighbourhood::uniformImageUnchanged_data() {
    QTest::addColumn<Filter>("filter");
    QTest::newRow("box blur") << Filter([](QImage& i) { filterBlur(i, 2); });
    QTest::newRow("antialias") << Filter(filterAntialias);
}

void TestFilterNeighbourhood::uniformImageUnchanged() {
    QFETCH(Filter, filter);
    QImage image = filled(7, 6, 0xff4080c0);
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QVERIFY(sameWords(image, filled(7, 6, 0xff4080c0)));
}

void TestFilterNeighbourhood::boxBlurMeansClippedNeighbourhood() {
    // Blue 0, 30, 90 in one row, radius 1: (0 + 30) / 2, 120 / 3, (30 + 90) / 2.
    QImage image = filled(3, 1, 0xff000000);
    image.setPixel(1, 0, 0xff00001e);
    image.setPixel(2, 0, 0xff00005a);
    filterBlur(image, 1);
    QCOMPARE(word(image, 0, 0), QRgb(0xff00000f));
    QCOMPARE(word(image, 1, 0), QRgb(0xff000028));
    QCOMPARE(word(image, 2, 0), QRgb(0xff00003c));
}

void TestFilterNeighbourhood::edgeOfVerticalStep() {
    // Left column 0, the others 40: next to the step gx = 4 * 40 = 160, elsewhere 0.
    QImage image = filled(4, 3, 0x80282828);
    for (int y = 0; y < 3; ++y)
        image.setPixel(0, y, 0x80000000);
    filterEdge(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(word(image, 0, 1), qRgb(160, 160, 160));
    QCOMPARE(word(image, 1, 0), qRgb(160, 160, 160));
    QCOMPARE(word(image, 2, 2), qRgb(0, 0, 0));
}

void TestFilterNeighbourhood::antialiasWeights() {
    // A single 200 among zeros: the centre keeps 8 * 200 / 20 = 80, edge neighbours 20, corners 10.
    QImage image = filled(5, 5, 0x80000000);
    image.setPixel(2, 2, 0x80c80000);
    filterAntialias(image);
    QCOMPARE(qRed(qUnpremultiply(word(image, 2, 2))), 80);
    QCOMPARE(qAlpha(word(image, 2, 2)), 0x80);
    QCOMPARE(word(image, 2, 1), qPremultiply(0x80140000));
    QCOMPARE(word(image, 1, 1), qPremultiply(0x800a0000));
}

void TestFilterNeighbourhood::despeckleLowersSpeckle() {
    // The zero frame around the channel wears the edges down; well inside, only the speckle moves.
    QImage image = filled(15, 15, 0xff404040);
    image.setPixel(7, 7, 0x80ff4040);
    filterDespeckle(image);
    QVERIFY(qRed(word(image, 7, 7)) < 0x80);
    QCOMPARE(qAlpha(word(image, 7, 7)), 0x80);
    QCOMPARE(word(image, 7, 3), QRgb(0xff404040));
    QVERIFY(qRed(word(image, 0, 7)) < 0x40);
}

void TestFilterNeighbourhood::charcoalIsOpaqueGrey() {
    QImage image = seeded(12, 10, 9, false);
    filterCharcoal(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb p = word(image, x, y);
            QCOMPARE(qAlpha(p), 255);
            QVERIFY(qRed(p) == qGreen(p) && qGreen(p) == qBlue(p));
        }
}

void TestFilterNeighbourhood::grayscaleWeights() {
    // (11 * 200 + 16 * 100 + 5 * 40) >> 5 = 125; alpha becomes opaque.
    QImage image = filled(2, 1, qRgba(200, 100, 40, 77));
    filterGrayscale(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(word(image, 1, 0), qRgb(125, 125, 125));
}

QTEST_GUILESS_MAIN(TestFilterNeighbourhood)
#include "tst_filterneighbourhood.moc"
