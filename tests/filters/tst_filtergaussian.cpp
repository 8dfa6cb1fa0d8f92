#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

#ifdef HAVE_OPENCV
#include <opencv2/imgproc.hpp>
#endif

class TestFilterGaussian : public QObject {
    Q_OBJECT
private slots:
    void zeroSigmaReturns_data();
    void zeroSigmaReturns();
    void uniformImageUnchanged_data();
    void uniformImageUnchanged();
    void blurSpreadsSymmetrically();
    void sharpenRaisesContrast();
    void neutralDistortions_data();
    void neutralDistortions();
    void swirlMovesInsideOnly();
    void matchesOpenCV_data();
    void matchesOpenCV();
};

void TestFilterGaussian::zeroSigmaReturns_data() {
    QTest::addColumn<Filter>("filter");
    QTest::newRow("blur") << Filter([](QImage& i) { filterGaussianBlur(i, 2, 0); });
    QTest::newRow("sharpen") << Filter([](QImage& i) { filterGaussianSharpen(i, 2, 0); });
    QTest::newRow("emboss") << Filter([](QImage& i) { filterEmboss(i, 2, 0); });
    QTest::newRow("blur of width 1") << Filter([](QImage& i) { filterGaussianBlur(i, 0, 0.1f); });
}

void TestFilterGaussian::zeroSigmaReturns() {
    QFETCH(Filter, filter);
    const QImage source = seeded(8, 8, 2, false);
    QImage image = source;
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QVERIFY(sameWords(image, source));
}

void TestFilterGaussian::uniformImageUnchanged_data() {
    QTest::addColumn<Filter>("filter");
    QTest::newRow("blur, width from sigma") << Filter([](QImage& i) { filterGaussianBlur(i, 0, 1.5f); });
    QTest::newRow("blur, kernel wider than image") << Filter([](QImage& i) { filterGaussianBlur(i, 20, 3); });
    QTest::newRow("sharpen") << Filter([](QImage& i) { filterGaussianSharpen(i, 0, 1); });
    QTest::newRow("sharpen, radius 2") << Filter([](QImage& i) { filterGaussianSharpen(i, 2, 1); });
}

void TestFilterGaussian::uniformImageUnchanged() {
    QFETCH(Filter, filter);
    QImage image = filled(9, 7, 0xff3070b0);
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QVERIFY(sameWords(image, filled(9, 7, 0xff3070b0)));
}

void TestFilterGaussian::blurSpreadsSymmetrically() {
    QImage image = filled(11, 11, 0xff000000);
    image.setPixel(5, 5, 0xffffffff);
    filterGaussianBlur(image, 0, 1);
    const int centre = qRed(word(image, 5, 5));
    QVERIFY(centre > 0 && centre < 255);
    QCOMPARE(word(image, 4, 5), word(image, 6, 5));
    QCOMPARE(word(image, 5, 4), word(image, 5, 6));
    QCOMPARE(word(image, 5, 4), word(image, 4, 5));
    QVERIFY(qRed(word(image, 4, 5)) < centre);
}

void TestFilterGaussian::sharpenRaisesContrast() {
    QImage image = filled(9, 9, qRgb(100, 100, 100));
    for (int y = 0; y < 9; ++y)
        for (int x = 5; x < 9; ++x)
            image.setPixel(x, y, qRgb(150, 150, 150));
    filterGaussianSharpen(image, 0, 1);
    QVERIFY(qRed(word(image, 4, 4)) < 100);
    QVERIFY(qRed(word(image, 5, 4)) > 150);
    QCOMPARE(qRed(word(image, 0, 4)), 100);
}

void TestFilterGaussian::neutralDistortions_data() {
    QTest::addColumn<Filter>("filter");
    QTest::addColumn<QSize>("size");
    QTest::newRow("swirl 0") << Filter([](QImage& i) { filterSwirl(i, 0); }) << QSize(9, 6);
    QTest::newRow("implode 0") << Filter([](QImage& i) { filterImplode(i, 0); }) << QSize(6, 9);
}

void TestFilterGaussian::neutralDistortions() {
    QFETCH(Filter, filter);
    QFETCH(QSize, size);
    const QImage source = seeded(size.width(), size.height(), 4);
    QImage image = source;
    filter(image);
    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
    QVERIFY(sameWords(image, source));
}

void TestFilterGaussian::swirlMovesInsideOnly() {
    // 300 x 200 with the integer scale 1: the circle of radius 150 misses the corners.
    const QImage source = seeded(300, 200, 6);
    QImage image = source;
    filterSwirl(image, 120);
    QCOMPARE(word(image, 0, 0), word(source, 0, 0));
    QCOMPARE(word(image, 299, 199), word(source, 299, 199));
    QCOMPARE(word(image, 150, 100), word(source, 150, 100));
    QVERIFY(word(image, 150, 60) != word(source, 150, 60));
}

void TestFilterGaussian::matchesOpenCV_data() {
    QTest::addColumn<int>("which");
    QTest::addColumn<int>("tolerance");
    QTest::newRow("Sobel, exact") << 0 << 0;
    QTest::newRow("equalizeHist, rounding") << 1 << 1;
    QTest::newRow("GaussianBlur inside, sub-sampled kernel") << 2 << 2;
}

void TestFilterGaussian::matchesOpenCV() {
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

QTEST_GUILESS_MAIN(TestFilterGaussian)
#include "tst_filtergaussian.moc"
