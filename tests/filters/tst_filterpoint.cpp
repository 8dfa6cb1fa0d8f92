#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

class TestFilterPoint : public QObject {
    Q_OBJECT
private slots:
    void handComputed_data();
    void handComputed();
    void gammaNotPositiveIsHundredth_data();
    void gammaNotPositiveIsHundredth();
    void neutralLeavesImage_data();
    void neutralLeavesImage();
    void contrastStretchesAroundMean();
    void rawFormats_data();
    void rawFormats();
    void desaturateKeepsValueAndAlpha();
    void desaturateMatchesIntegerHsv_data();
    void desaturateMatchesIntegerHsv();
};

void TestFilterPoint::handComputed_data() {
    QTest::addColumn<Filter>("filter");
    QTest::addColumn<QRgb>("before");
    QTest::addColumn<QRgb>("after");
    QTest::newRow("brightness +300 saturates colour, keeps alpha")
        << Filter([](QImage& i) { filterBrightness(i, 300); }) << QRgb(0x80102030) << QRgb(0x80ffffff);
    QTest::newRow("brightness -40 clamps at zero")
        << Filter([](QImage& i) { filterBrightness(i, -40); }) << QRgb(0xff10ff30) << QRgb(0xff00d708);
    QTest::newRow("colorize (10, 0, 0) raises blue only")
        << Filter([](QImage& i) { filterColorize(i, 10, 0, 0); }) << QRgb(0x7f102030) << QRgb(0x7f10203a);
    QTest::newRow("colorize third value is red")
        << Filter([](QImage& i) { filterColorize(i, 0, 0, -20); }) << QRgb(0xff102030) << QRgb(0xff002030);
    QTest::newRow("gamma 2 is square root table")
        << Filter([](QImage& i) { filterGamma(i, 2.0); }) << QRgb(0x40004080) << QRgb(0x40007fb4);
    QTest::newRow("contrast on uniform image keeps it")
        << Filter([](QImage& i) { filterContrast(i, 200); }) << QRgb(0xff405060) << QRgb(0xff405060);
}

void TestFilterPoint::handComputed() {
    QFETCH(Filter, filter);
    QFETCH(QRgb, before);
    QFETCH(QRgb, after);
    QImage image = filled(3, 2, before);
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(word(image, 2, 1), after);
}

void TestFilterPoint::gammaNotPositiveIsHundredth_data() {
    QTest::addColumn<double>("gamma");
    QTest::newRow("zero") << 0.0;
    QTest::newRow("negative") << -3.0;
}

void TestFilterPoint::gammaNotPositiveIsHundredth() {
    QFETCH(double, gamma);
    const QImage source = seeded(16, 16, 7);
    QImage expected = source, image = source;
    filterGamma(expected, 0.01);
    filterGamma(image, gamma);
    QVERIFY(sameWords(image, expected));
    QCOMPARE(word(expected, 0, 0) & 0xff000000u, 0xff000000u);
}

void TestFilterPoint::neutralLeavesImage_data() {
    QTest::addColumn<Filter>("filter");
    QTest::newRow("brightness 0") << Filter([](QImage& i) { filterBrightness(i, 0); });
    QTest::newRow("colorize 0") << Filter([](QImage& i) { filterColorize(i, 0, 0, 0); });
    QTest::newRow("gamma 1") << Filter([](QImage& i) { filterGamma(i, 1.0); });
    QTest::newRow("contrast 0") << Filter([](QImage& i) { filterContrast(i, 0); });
    QTest::newRow("desaturate 0") << Filter([](QImage& i) { filterDesaturate(i, 0.0f); });
    QTest::newRow("desaturate negative") << Filter([](QImage& i) { filterDesaturate(i, -2.0f); });
}

void TestFilterPoint::neutralLeavesImage() {
    QFETCH(Filter, filter);
    const QImage source = seeded(9, 7, 3, false);
    QImage image = source;
    filter(image);
    QVERIFY(sameWords(image, source));
    QCOMPARE(image.format(), source.format());
}

void TestFilterPoint::contrastStretchesAroundMean() {
    // Blue bytes 100 and 140: mean 120; amount 128 doubles distances: 80 and 160.
    QImage image = filled(2, 1, 0xff000064);
    image.setPixel(1, 0, 0xff00008c);
    filterContrast(image, 128);
    QCOMPARE(word(image, 0, 0), QRgb(0xff000050));
    QCOMPARE(word(image, 1, 0), QRgb(0xff0000a0));
    // amount -128 halves them (truncating towards zero): 110 and 130.
    image = filled(2, 1, 0xff000064);
    image.setPixel(1, 0, 0xff00008c);
    filterContrast(image, -128);
    QCOMPARE(word(image, 0, 0), QRgb(0xff00006e));
    QCOMPARE(word(image, 1, 0), QRgb(0xff000082));
}

void TestFilterPoint::rawFormats_data() {
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QImage::Format>("after");
    QTest::newRow("premultiplied kept")
        << QImage::Format_ARGB32_Premultiplied << QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("RGB32 kept") << QImage::Format_RGB32 << QImage::Format_RGB32;
    QTest::newRow("RGB888 to RGB32") << QImage::Format_RGB888 << QImage::Format_RGB32;
    QTest::newRow("RGBA8888 to ARGB32") << QImage::Format_RGBA8888 << QImage::Format_ARGB32;
    QTest::newRow("grayscale to RGB32") << QImage::Format_Grayscale8 << QImage::Format_RGB32;
    QTest::newRow("64-bit to ARGB32") << QImage::Format_RGBA64 << QImage::Format_ARGB32;
}

void TestFilterPoint::rawFormats() {
    QFETCH(QImage::Format, format);
    QFETCH(QImage::Format, after);
    QImage image = filled(5, 3, 0xff102030).convertToFormat(format);
    filterColorize(image, 1, 2, 3);
    QCOMPARE(image.format(), after);
    if (format == QImage::Format_Grayscale8)
        return;
    QCOMPARE(image.pixel(4, 2), QRgb(0xff132231));
}

void TestFilterPoint::desaturateKeepsValueAndAlpha() {
    QImage image = filled(2, 2, 0x80ff4000);
    filterDesaturate(image, 1.0f);
    QCOMPARE(word(image, 1, 1), QRgb(0x80ffffff));
    image = filled(1, 1, 0xff804020);
    filterDesaturate(image, 0.5f);
    // s = 191 becomes 95: the spread 96 becomes 48, each channel keeping its share of it.
    QCOMPARE(word(image, 0, 0), QRgb(0xff806050));
}

// The 8-bit HSV round trip with integer divisions, as the fast path must reproduce it.
static QRgb desaturatedByIntegers(QRgb px, float keep) {
    const int r = qRed(px), g = qGreen(px), b = qBlue(px);
    const int v = std::max({r, g, b}), delta = v - std::min({r, g, b});
    if (delta == 0)
        return px;
    const int s = (255 * delta + v / 2) / v;
    const int reduced = int(float(s) * keep);
    if (reduced == s)
        return px;
    const float scale = float((reduced * v + 127) / 255) / float(delta);
    auto channel = [&](int c) { return v - int(float(v - c) * scale + 0.5f); };
    return qRgba(channel(r), channel(g), channel(b), qAlpha(px));
}

void TestFilterPoint::desaturateMatchesIntegerHsv_data() {
    QTest::addColumn<float>("amount");
    QTest::newRow("a third") << 1.0f / 3;
    QTest::newRow("half") << 0.5f;
    QTest::newRow("all") << 1.0f;
}

// Every straight colour, since the vectorised path does its divisions in float.
void TestFilterPoint::desaturateMatchesIntegerHsv() {
    QFETCH(float, amount);
    QImage image(4096, 4096, QImage::Format_ARGB32);
    for (int y = 0; y < 4096; ++y) {
        auto* p = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < 4096; ++x)
            p[x] = 0x80000000u | quint32(y) << 12 | quint32(x);
    }
    const QImage source = image.copy();
    filterDesaturate(image, amount);
    for (int y = 0; y < 4096; ++y)
        for (int x = 0; x < 4096; ++x)
            if (word(image, x, y) != desaturatedByIntegers(word(source, x, y), 1.0f - amount))
                QFAIL(qPrintable(QString::number(word(source, x, y), 16)));
}

QTEST_GUILESS_MAIN(TestFilterPoint)
#include "tst_filterpoint.moc"
