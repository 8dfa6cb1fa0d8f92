#include "DataColumns.h"
#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QCryptographicHash>
#include <QTest>

namespace {
// What a filter does to the format of the tiny images below.
enum Handling { Kept, Converted, Untouched };

struct Named {
    const char* name;
    Filter filter;
    Handling handling;
    const char* digest; // of the results on digestImages()
};

const Named filters[] = {
    {"brightness", [](QImage& i) { filterBrightness(i, 30); }, Kept, "e05b5826418aa937"},
    {"contrast", [](QImage& i) { filterContrast(i, 60); }, Kept, "17fbf97a4e96d852"},
    {"contrast negative", [](QImage& i) { filterContrast(i, -90); }, Kept, "8a9369bb3a8dbf7b"},
    {"gamma", [](QImage& i) { filterGamma(i, 0.5); }, Kept, "e7756d84409bbc52"},
    {"colorize", [](QImage& i) { filterColorize(i, 5, -5, 9); }, Kept, "fce770b2f325d6d8"},
    {"auto-contrast", filterAutoContrast, Kept, "a7545d4b91006937"},
    {"equalize", filterEqualize, Kept, "2494b912bc8f309b"},
    {"desaturate", [](QImage& i) { filterDesaturate(i, 0.4f); }, Kept, "ef06f16d9f9fc3ca"},
    {"grayscale", filterGrayscale, Converted, "d189e4e22480586d"},
    {"blur", [](QImage& i) { filterBlur(i, 1); }, Converted, "83cbb77dd851fdba"},
    {"blur radius 70", [](QImage& i) { filterBlur(i, 70); }, Untouched, "8326e2222942d7c6"},
    {"sharpen", [](QImage& i) { filterSharpen(i, 1); }, Converted, "15a64ac92e8fb588"},
    {"edge", filterEdge, Converted, "52392912354fcd9b"},
    {"despeckle", filterDespeckle, Converted, "636834dc479f6613"},
    {"antialias", filterAntialias, Converted, "0d246dcc5697312d"},
    {"gaussian blur", [](QImage& i) { filterGaussianBlur(i, 0, 1); }, Converted, "e2f99eb36135086a"},
    {"gaussian blur radius 6", [](QImage& i) { filterGaussianBlur(i, 6, 2.5f); }, Converted,
     "ab6820a19e0115cb"},
    {"gaussian sharpen", [](QImage& i) { filterGaussianSharpen(i, 0, 1); }, Converted, "6f0f92d97006b6e5"},
    {"gaussian sharpen radius 3", [](QImage& i) { filterGaussianSharpen(i, 3, 1.5f); }, Converted,
     "992499e3670d7d95"},
    {"emboss", [](QImage& i) { filterEmboss(i, 1, 1); }, Converted, "87460df59a50688e"},
    {"emboss sigma 1.2", [](QImage& i) { filterEmboss(i, 0, 1.2f); }, Converted, "4a6483e3fe036a8e"},
    {"charcoal", filterCharcoal, Converted, "0ffdc8f5712ca6b4"},
    {"swirl", [](QImage& i) { filterSwirl(i, 200); }, Converted, "8a0659bd70cea2ea"},
    {"implode", [](QImage& i) { filterImplode(i, 2); }, Converted, "e8418e40f4909a1a"},
};

// Straight and premultiplied, translucent and opaque, widths off every vector size.
QList<QImage> digestImages() {
    const QImage translucent = seeded(640, 300, 21, false);
    return {translucent, translucent.convertToFormat(QImage::Format_ARGB32_Premultiplied),
            seeded(181, 97, 22).convertToFormat(QImage::Format_RGB32)};
}

QByteArray digest(const Filter& filter) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (QImage image : digestImages()) {
        filter(image);
        hash.addData(QByteArray::number(int(image.format())));
        for (int y = 0; y < image.height(); ++y)
            hash.addData(QByteArrayView(image.constScanLine(y), 4 * image.width()));
    }
    return hash.result().toHex().left(16);
}
} // namespace

// Every filter on every format and on tiny sizes: no crash, no write past the rows, the caller's
// shared data untouched, and each handling leaving its format.
class TestFilterSafety : public QObject {
    Q_OBJECT
private slots:
    void anyFormatAnySize_data() {
        addColumns<Filter, int>("filter", "handling");
        for (const Named& f : filters)
            QTest::newRow(f.name) << f.filter << int(f.handling);
    }

    void anyFormatAnySize() {
        QFETCH(Filter, filter);
        QFETCH(int, handling);
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
                if (handling == Converted && big)
                    QCOMPARE(image.format(), QImage::Format_ARGB32_Premultiplied);
                if (handling == Kept && !size.isEmpty())
                    QCOMPARE(image.depth(), 32);
                if (handling == Untouched)
                    QVERIFY(image == original);
            }
    }

    // The results do not depend on how they are computed: in place or not, on one thread or on bands of
    // rows (five bands of 60 rows, or three uneven ones), or with a narrower vector unit (the test runs
    // again with GRAPHICSOBJECTS_FILTER_ISA set).
    void sameBytes_data() {
        addColumns<Filter, QByteArray>("filter", "expected");
        for (const Named& f : filters)
            QTest::newRow(f.name) << f.filter << QByteArray(f.digest);
    }

    void sameBytes() {
        QFETCH(Filter, filter);
        QFETCH(QByteArray, expected);
        for (int threads : {1, 5, 3}) {
            setFilterThreads(threads);
            QCOMPARE(digest(filter), expected);
        }
        setFilterThreads(0);
    }
};

QTEST_GUILESS_MAIN(TestFilterSafety)
#include "tst_filtersafety.moc"
