#include "DataColumns.h"
#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

#include <algorithm>

#ifdef HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace {

// The 8-bit HSV round trip of the desaturation with integer divisions, which the vectorised path
// (dividing in float) must reproduce exactly.
QRgb desaturatedByIntegers(QRgb px, float keep) {
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

} // namespace

// What filters without a short integer rule must do, and how every filter handles the formats.
class TestFilterEffects : public QObject {
    Q_OBJECT
private slots:
    void blurSpreadsSymmetrically() {
        QImage image = spot(11, 11, 0xff000000, {5, 5}, 0xffffffff);
        filterGaussianBlur(image, 0, 1);
        const int centre = qRed(word(image, 5, 5));
        QVERIFY(centre > 0 && centre < 255);
        QCOMPARE(word(image, 4, 5), word(image, 6, 5));
        QCOMPARE(word(image, 5, 4), word(image, 5, 6));
        QCOMPARE(word(image, 5, 4), word(image, 4, 5));
        QVERIFY(qRed(word(image, 4, 5)) < centre);
    }

    void sharpenRaisesContrast() {
        QImage image = columns({grey(100), grey(100), grey(100), grey(100), grey(100), grey(150), grey(150),
                                grey(150), grey(150)},
                               QImage::Format_ARGB32, 9);
        filterGaussianSharpen(image, 0, 1);
        QVERIFY(qRed(word(image, 4, 4)) < 100);
        QVERIFY(qRed(word(image, 5, 4)) > 150);
        QCOMPARE(qRed(word(image, 0, 4)), 100);
    }

    void desaturateMatchesIntegerHsv_data() {
        QTest::addColumn<float>("amount");
        QTest::newRow("a third") << 1.0f / 3;
        QTest::newRow("half") << 0.5f;
        QTest::newRow("all") << 1.0f;
    }

    // Every straight colour once.
    void desaturateMatchesIntegerHsv() {
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

    void swirlMovesInsideOnly() {
        // 300 x 200 with the integer scale 1: the circle of radius 150 misses the corners.
        const QImage source = seeded(300, 200, 6);
        QImage image = source;
        filterSwirl(image, 120);
        QCOMPARE(word(image, 0, 0), word(source, 0, 0));
        QCOMPARE(word(image, 299, 199), word(source, 299, 199));
        QCOMPARE(word(image, 150, 100), word(source, 150, 100));
        QVERIFY(word(image, 150, 60) != word(source, 150, 60));
    }

    void despeckleLowersSpeckle() {
        // The zero frame around the channel wears the edges down; well inside, only the speckle moves.
        QImage image = spot(15, 15, 0xff404040, {7, 7}, 0x80ff4040);
        filterDespeckle(image);
        QVERIFY(qRed(word(image, 7, 7)) < 0x80);
        QCOMPARE(qAlpha(word(image, 7, 7)), 0x80);
        QCOMPARE(word(image, 7, 3), QRgb(0xff404040));
        QVERIFY(qRed(word(image, 0, 7)) < 0x40);
    }

    void charcoalIsOpaqueGrey() {
        QImage image = seeded(12, 10, 9, false);
        filterCharcoal(image);
        QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QRgb p = word(image, x, y);
                QVERIFY(qAlpha(p) == 255 && qRed(p) == qGreen(p) && qGreen(p) == qBlue(p));
            }
    }

    void autoContrastBoundsGreenByRed() {
        // Red spans 100..120 while green spans 0..255: green's search stays inside 100..120, where it
        // has no pixels, so it ends with low 120 and high 100.
        QImage image = columns({qRgb(100, 0, 100), qRgb(120, 255, 120)});
        filterAutoContrast(image);
        QCOMPARE(qRed(word(image, 0, 0)), 0);
        QCOMPARE(qRed(word(image, 1, 0)), 255);
        QCOMPARE(qGreen(word(image, 0, 0)), 0);
        QCOMPARE(qGreen(word(image, 1, 0)), 255);
    }

    void pointFiltersOnOtherFormats_data() {
        addColumns<QImage::Format, QImage::Format>("format", "after");
        QTest::newRow("premultiplied kept")
            << QImage::Format_ARGB32_Premultiplied << QImage::Format_ARGB32_Premultiplied;
        QTest::newRow("RGB32 kept") << QImage::Format_RGB32 << QImage::Format_RGB32;
        QTest::newRow("RGB888 to RGB32") << QImage::Format_RGB888 << QImage::Format_RGB32;
        QTest::newRow("RGBA8888 to ARGB32") << QImage::Format_RGBA8888 << QImage::Format_ARGB32;
        QTest::newRow("grayscale to RGB32") << QImage::Format_Grayscale8 << QImage::Format_RGB32;
        QTest::newRow("64-bit to ARGB32") << QImage::Format_RGBA64 << QImage::Format_ARGB32;
    }
    void pointFiltersOnOtherFormats() {
        QFETCH(QImage::Format, format);
        QFETCH(QImage::Format, after);
        QImage image = filled(5, 3, 0xff102030).convertToFormat(format);
        filterColorize(image, 1, 2, 3);
        QCOMPARE(image.format(), after);
        if (format != QImage::Format_Grayscale8)
            QCOMPARE(image.pixel(4, 2), QRgb(0xff132231));
    }

    void matchesOpenCV_data() {
        addColumns<int, int>("which", "tolerance");
        QTest::newRow("Sobel, exact") << 0 << 0;
        QTest::newRow("equalizeHist, rounding") << 1 << 1;
        QTest::newRow("GaussianBlur inside, sub-sampled kernel") << 2 << 2;
    }
    void matchesOpenCV() {
#ifndef HAVE_OPENCV
        QSKIP("OpenCV not installed");
#else
        QFETCH(int, which);
        QFETCH(int, tolerance);
        // A smooth gradient with noise, so every level is present and neighbours are related.
        QImage source(64, 48, QImage::Format_ARGB32);
        std::mt19937 random(12);
        for (int y = 0; y < source.height(); ++y)
            for (int x = 0; x < source.width(); ++x)
                source.setPixel(x, y,
                                qRgb((3 * x + int(random() % 40)) % 256, (4 * y + int(random() % 20)) % 256,
                                     (x * y + int(random() % 60)) % 256));
        source.setPixel(0, 0, qRgb(0, 0, 0));
        const cv::Mat in(source.height(), source.width(), CV_8UC4, const_cast<uchar*>(source.constBits()),
                         size_t(source.bytesPerLine()));
        cv::Mat expected;
        QImage image = source;
        int margin = 0;
        if (which == 0) {
            filterEdge(image);
            cv::Mat gx, gy, ax, ay;
            cv::Sobel(in, gx, CV_16S, 1, 0, 3, 1, 0, cv::BORDER_REPLICATE);
            cv::Sobel(in, gy, CV_16S, 0, 1, 3, 1, 0, cv::BORDER_REPLICATE);
            cv::convertScaleAbs(gx, ax);
            cv::convertScaleAbs(gy, ay);
            cv::add(ax, ay, expected);
        } else if (which == 1) {
            filterEqualize(image);
            std::vector<cv::Mat> planes;
            cv::split(in, planes);
            for (int c = 0; c < 3; ++c)
                cv::equalizeHist(planes[c], planes[c]);
            cv::merge(planes, expected);
        } else {
            filterGaussianBlur(image, 0, 1.5f);
            cv::GaussianBlur(in, expected, cv::Size(9, 9), 1.5);
            margin = 4;
        }
        int worst = 0;
        for (int y = margin; y < source.height() - margin; ++y)
            for (int x = margin; x < source.width() - margin; ++x)
                for (int c = 0; c < 3; ++c)
                    worst = std::max(worst, std::abs(int(image.constScanLine(y)[4 * x + c]) -
                                                     int(expected.at<cv::Vec4b>(y, x)[c])));
        QVERIFY2(worst <= tolerance, qPrintable(QString("largest difference %1").arg(worst)));
#endif
    }
};

QTEST_GUILESS_MAIN(TestFilterEffects)
#include "tst_filtereffects.moc"
