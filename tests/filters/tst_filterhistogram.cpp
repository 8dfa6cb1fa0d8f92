#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

class TestFilterHistogram : public QObject {
    Q_OBJECT
private slots:
    void uniformImage_data();
    void uniformImage();
    void autoContrastStretchesToFullRange();
    void autoContrastBoundsGreenByRed();
    void equalizeSpreadsLevels();
    void premultipliedIsMappedStraight();
};

void TestFilterHistogram::uniformImage_data() {
    QTest::addColumn<Filter>("filter");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    const Filter autoContrast = [](QImage& i) { filterAutoContrast(i); };
    const Filter equalize = [](QImage& i) { filterEqualize(i); };
    QTest::newRow("auto-contrast grey: low = high, unchanged")
        << autoContrast << QRgb(0xff808080) << QRgb(0xff808080);
    QTest::newRow("auto-contrast colour: unchanged") << autoContrast << QRgb(0x80203040) << QRgb(0x80203040);
    // One level L > 0: C[0] = 0, C[L] = C[255] = n, so L maps to 255.
    QTest::newRow("equalize grey goes white") << equalize << QRgb(0xc0808080) << QRgb(0xc0ffffff);
    QTest::newRow("equalize black: low = high, unchanged")
        << equalize << QRgb(0xff000000) << QRgb(0xff000000);
}

void TestFilterHistogram::uniformImage() {
    QFETCH(Filter, filter);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QImage image = filled(6, 4, before);
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(word(image, 5, 3), after);
}

void TestFilterHistogram::autoContrastStretchesToFullRange() {
    // Fewer than 1000 pixels: threshold 0, so low and high are the extreme levels present.
    QImage image = filled(4, 1, 0xff326432);
    image.setPixel(1, 0, 0xff5a8c5a);
    image.setPixel(2, 0, 0xffc8c8c8);
    filterAutoContrast(image);
    // Red 50..200: 255 * (90 - 50) / 150 = 68. Green searches inside that: 100..200, 102. Blue
    // searches inside green's 100..200, finds only 200 there: low = high, left unchanged.
    QCOMPARE(word(image, 0, 0), QRgb(0xff000032));
    QCOMPARE(word(image, 1, 0), QRgb(0xff44665a));
    QCOMPARE(word(image, 2, 0), QRgb(0xffffffc8));
}

void TestFilterHistogram::autoContrastBoundsGreenByRed() {
    // Red spans 100..120 while green spans 0..255: green's search stays inside 100..120, where it
    // has no pixels, so it ends with low 120 and high 100.
    QImage image = filled(2, 1, qRgb(100, 0, 100));
    image.setPixel(1, 0, qRgb(120, 255, 120));
    filterAutoContrast(image);
    QCOMPARE(qRed(word(image, 0, 0)), 0);
    QCOMPARE(qRed(word(image, 1, 0)), 255);
    QCOMPARE(qGreen(word(image, 0, 0)), 0);
    QCOMPARE(qGreen(word(image, 1, 0)), 255);
}

void TestFilterHistogram::equalizeSpreadsLevels() {
    // Blue levels 0, 10, 10, 20: C = 1, 3, 4; low 1, high 4 -> 0, 170, 170, 255.
    QImage image = filled(4, 1, 0xff000000);
    image.setPixel(1, 0, 0xff00000a);
    image.setPixel(2, 0, 0xff00000a);
    image.setPixel(3, 0, 0xff000014);
    filterEqualize(image);
    QCOMPARE(word(image, 0, 0), QRgb(0xff000000));
    QCOMPARE(word(image, 1, 0), QRgb(0xff0000aa));
    QCOMPARE(word(image, 3, 0), QRgb(0xff0000ff));
}

void TestFilterHistogram::premultipliedIsMappedStraight() {
    // Straight blue 0 and 200 at alpha 0x80: equalize maps 200 to 255, written back premultiplied.
    QImage image = filled(2, 1, 0x80000000, QImage::Format_ARGB32_Premultiplied);
    image.setPixel(1, 0, qPremultiply(0x800000c8));
    filterEqualize(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(word(image, 1, 0), QRgb(0x80000080));
    QCOMPARE(word(image, 0, 0), QRgb(0x80000000));
}

QTEST_GUILESS_MAIN(TestFilterHistogram)
#include "tst_filterhistogram.moc"
