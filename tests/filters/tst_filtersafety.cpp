#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QTest>

namespace {
struct Named {
    const char* name;
    Filter filter;
    bool converted;
};

const Named filters[] = {
    {"brightness", [](QImage& i) { filterBrightness(i, 30); }, false},
    {"contrast", [](QImage& i) { filterContrast(i, 60); }, false},
    {"gamma", [](QImage& i) { filterGamma(i, 0.5); }, false},
    {"colorize", [](QImage& i) { filterColorize(i, 5, -5, 9); }, false},
    {"auto-contrast", filterAutoContrast, false},
    {"equalize", filterEqualize, false},
    {"desaturate", [](QImage& i) { filterDesaturate(i, 0.4f); }, false},
    {"grayscale", filterGrayscale, true},
    {"blur", [](QImage& i) { filterBlur(i, 1); }, true},
    {"sharpen", [](QImage& i) { filterSharpen(i, 1); }, true},
    {"edge", filterEdge, true},
    {"despeckle", filterDespeckle, true},
    {"antialias", filterAntialias, true},
    {"gaussian blur", [](QImage& i) { filterGaussianBlur(i, 0, 1); }, true},
    {"gaussian sharpen", [](QImage& i) { filterGaussianSharpen(i, 0, 1); }, true},
    {"emboss", [](QImage& i) { filterEmboss(i, 1, 1); }, true},
    {"charcoal", filterCharcoal, true},
    {"swirl", [](QImage& i) { filterSwirl(i, 200); }, true},
    {"implode", [](QImage& i) { filterImplode(i, 2); }, true},
};
} // namespace

// Every filter on every format and on tiny sizes: no crash, no write past the rows, the caller's
// shared data untouched, and each handling leaving its format.
class TestFilterSafety : public QObject {
    Q_OBJECT
private slots:
    void anyFormatAnySize_data() {
        QTest::addColumn<Filter>("filter");
        QTest::addColumn<bool>("converted");
        for (const Named& f : filters)
            QTest::newRow(f.name) << f.filter << f.converted;
    }

    void anyFormatAnySize() {
        QFETCH(Filter, filter);
        QFETCH(bool, converted);
        const QImage::Format formats[] = {QImage::Format_Indexed8,
                                          QImage::Format_Mono,
                                          QImage::Format_Grayscale8,
                                          QImage::Format_RGB888,
                                          QImage::Format_RGB32,
                                          QImage::Format_ARGB32,
                                          QImage::Format_ARGB32_Premultiplied,
                                          QImage::Format_RGBA8888,
                                          QImage::Format_RGBA64_Premultiplied,
                                          QImage::Format_RGB16};
        const QSize sizes[] = {{0, 0}, {1, 1}, {1, 7}, {7, 1}, {2, 2}, {3, 3}, {13, 5}};
        for (QImage::Format format : formats)
            for (const QSize& size : sizes) {
                const QImage source = seeded(size.width(), size.height(), 1, false).convertToFormat(format);
                const QImage original = source.copy();
                QImage image = source;
                filter(image);
                QCOMPARE(image.size(), size);
                QVERIFY(source == original);
                const bool big = size.width() >= 3 && size.height() >= 3;
                if (converted && big)
                    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
                if (!converted && !size.isEmpty())
                    QCOMPARE(image.depth(), 32);
            }
    }
};

QTEST_GUILESS_MAIN(TestFilterSafety)
#include "tst_filtersafety.moc"
