#include "DataColumns.h"
#include "FilterTestImages.h"
#include "ImageFilters.h"

#include <QRegularExpression>
#include <QTest>

namespace {

const QImage::Format premultiplied = QImage::Format_ARGB32_Premultiplied;

void rule(const char* name, const Filter& filter, const QImage& before, const QImage& after) {
    QTest::newRow(name) << filter << before << after;
}

// The first row of an image repeated h times.
QImage stacked(const QImage& image, int h) {
    QImage out(image.width(), h, image.format());
    for (int y = 0; y < h; ++y)
        std::copy_n(image.constScanLine(0), 4 * image.width(), out.scanLine(y));
    return out;
}

// Opaque words read the same in both formats.
QImage asPremultiplied(const QImage& opaque) {
    return opaque.convertToFormat(premultiplied);
}

} // namespace

// Each filter's integer rule on small images, the whole result compared word for word with the
// hand-computed one, format included.
class TestFilterRules : public QObject {
    Q_OBJECT
private slots:
    void handComputed_data() {
        addColumns<Filter, QImage, QImage>("filter", "before", "after");
        rule(
            "brightness +300 saturates colour, keeps alpha", [](QImage& i) { filterBrightness(i, 300); },
            filled(3, 2, 0x80102030), filled(3, 2, 0x80ffffff));
        rule(
            "brightness -40 clamps at zero", [](QImage& i) { filterBrightness(i, -40); },
            filled(3, 2, 0xff10ff30), filled(3, 2, 0xff00d708));
        rule(
            "colorize (10, 0, 0) raises blue only", [](QImage& i) { filterColorize(i, 10, 0, 0); },
            filled(3, 2, 0x7f102030), filled(3, 2, 0x7f10203a));
        rule(
            "colorize third value is red", [](QImage& i) { filterColorize(i, 0, 0, -20); },
            filled(3, 2, 0xff102030), filled(3, 2, 0xff002030));
        rule(
            "gamma 2 is square root table", [](QImage& i) { filterGamma(i, 2.0); }, filled(3, 2, 0x40004080),
            filled(3, 2, 0x40007fb4));
        // Blue 100 and 140: mean 120; amount 128 doubles distances, -128 halves them (towards zero).
        rule(
            "contrast 128 doubles", [](QImage& i) { filterContrast(i, 128); },
            columns({0xff000064, 0xff00008c}), columns({0xff000050, 0xff0000a0}));
        rule(
            "contrast -128 halves", [](QImage& i) { filterContrast(i, -128); },
            columns({0xff000064, 0xff00008c}), columns({0xff00006e, 0xff000082}));
        rule(
            "contrast on uniform image keeps it", [](QImage& i) { filterContrast(i, 200); },
            filled(3, 2, 0xff405060), filled(3, 2, 0xff405060));
        rule(
            "desaturate 1 keeps value and alpha", [](QImage& i) { filterDesaturate(i, 1.0f); },
            filled(2, 2, 0x80ff4000), filled(2, 2, 0x80ffffff));
        // s = 191 becomes 95: the spread 96 becomes 48, each channel keeping its share of it.
        rule(
            "desaturate 0.5", [](QImage& i) { filterDesaturate(i, 0.5f); }, filled(1, 1, 0xff804020),
            filled(1, 1, 0xff806050));

        rule("auto-contrast grey: low = high, unchanged", filterAutoContrast, filled(6, 4, 0xff808080),
             filled(6, 4, 0xff808080));
        // Under 1000 pixels the threshold is 0. Red 50..200: 255 * (90 - 50) / 150 = 68. Green searches
        // inside that: 100..200, 102. Blue, inside 100..200, finds only 200: low = high, unchanged.
        rule("auto-contrast stretches to the full range", filterAutoContrast,
             columns({0xff326432, 0xff5a8c5a, 0xffc8c8c8}), columns({0xff000032, 0xff44665a, 0xffffffc8}));
        // One level L > 0: C[0] = 0, C[L] = C[255] = n, so L maps to 255.
        rule("equalize grey goes white", filterEqualize, filled(6, 4, 0xc0808080), filled(6, 4, 0xc0ffffff));
        rule("equalize black: low = high, unchanged", filterEqualize, filled(6, 4, 0xff000000),
             filled(6, 4, 0xff000000));
        // Blue levels 0, 10, 10, 20: C = 1, 3, 4; low 1, high 4 -> 0, 170, 170, 255.
        rule("equalize spreads levels", filterEqualize,
             columns({0xff000000, 0xff00000a, 0xff00000a, 0xff000014}),
             columns({0xff000000, 0xff0000aa, 0xff0000aa, 0xff0000ff}));
        // Straight blue 0 and 200 at alpha 0x80: 200 maps to 255, written back premultiplied.
        rule("equalize maps premultiplied straight", filterEqualize,
             columns({0x80000000, qPremultiply(0x800000c8)}, premultiplied),
             columns({0x80000000, 0x80000080}, premultiplied));

        // 5c - 4n: a sum with bit 8 set gives 255, a negative one 0, else its low byte.
        rule(
            "sharpen: 600 keeps its low byte 88", [](QImage& i) { filterSharpen(i, 1); },
            spot(3, 3, grey(100), {1, 1}, grey(200)), spot(3, 3, grey(100), {1, 1}, grey(88), premultiplied));
        rule(
            "sharpen: 500 has bit 8 set, 255", [](QImage& i) { filterSharpen(i, 1); },
            spot(3, 3, grey(0), {1, 1}, grey(100)), spot(3, 3, grey(0), {1, 1}, grey(255), premultiplied));
        rule(
            "sharpen: negative sum, 0", [](QImage& i) { filterSharpen(i, 1); },
            spot(3, 3, grey(100), {1, 1}, grey(10)), spot(3, 3, grey(100), {1, 1}, grey(0), premultiplied));
        rule(
            "sharpen: plain 5c - 4n", [](QImage& i) { filterSharpen(i, 1); },
            spot(3, 3, grey(20), {1, 1}, grey(50)), spot(3, 3, grey(20), {1, 1}, grey(170), premultiplied));
        // Radius 1 in one row: (0 + 30) / 2, 120 / 3, (30 + 90) / 2.
        rule(
            "box blur means the clipped neighbourhood", [](QImage& i) { filterBlur(i, 1); },
            columns({0xff000000, 0xff00001e, 0xff00005a}),
            columns({0xff00000f, 0xff000028, 0xff00003c}, premultiplied));
        // Left column 0, the others 40: next to the step gx = 4 * 40 = 160, elsewhere 0.
        rule("edge of a vertical step", filterEdge,
             columns({0x80000000, 0x80282828, 0x80282828, 0x80282828}, QImage::Format_ARGB32, 3),
             columns({grey(160), grey(160), grey(0), grey(0)}, premultiplied, 3));
        // A single 200 among zeros: the centre keeps 8 * 200 / 20 = 80, edge neighbours 20, corners 10.
        QImage antialiased = filled(5, 5, 0x80000000, premultiplied);
        for (int y = 1; y < 4; ++y)
            for (int x = 1; x < 4; ++x)
                antialiased.setPixel(x, y,
                                     qPremultiply(qRgba(x == 2 && y == 2   ? 80
                                                        : x == 2 || y == 2 ? 20
                                                                           : 10,
                                                        0, 0, 0x80)));
        rule("antialias weights", filterAntialias, spot(5, 5, 0x80000000, {2, 2}, 0x80c80000), antialiased);
        // (11 * 200 + 16 * 100 + 5 * 40) >> 5 = 125; alpha becomes opaque.
        rule("grayscale weights", filterGrayscale, filled(2, 1, qRgba(200, 100, 40, 77)),
             filled(2, 1, grey(125), premultiplied));
        rule(
            "negative gamma is 0.01", [](QImage& i) { filterGamma(i, -3); }, seeded(16, 16, 7),
            applied([](QImage& i) { filterGamma(i, 0.01); }, seeded(16, 16, 7)));
    }
    void handComputed() { check(); }

    // Neutral settings and sizes too small for a filter leave the image as it was: untouched
    // (ARGB32 kept) where the filter returns early, only converted where it runs.
    void unchanged_data() {
        addColumns<Filter, QImage, QImage>("filter", "before", "after");
        const QImage translucent = seeded(9, 7, 3, false);
        for (const auto& [name, filter] : std::initializer_list<std::pair<const char*, Filter>>{
                 {"brightness 0", [](QImage& i) { filterBrightness(i, 0); }},
                 {"colorize 0", [](QImage& i) { filterColorize(i, 0, 0, 0); }},
                 {"gamma 1", [](QImage& i) { filterGamma(i, 1.0); }},
                 {"contrast 0", [](QImage& i) { filterContrast(i, 0); }},
                 {"desaturate 0", [](QImage& i) { filterDesaturate(i, 0.0f); }},
                 {"desaturate negative", [](QImage& i) { filterDesaturate(i, -2.0f); }},
                 {"gaussian blur, sigma 0", [](QImage& i) { filterGaussianBlur(i, 2, 0); }},
                 {"gaussian sharpen, sigma 0", [](QImage& i) { filterGaussianSharpen(i, 2, 0); }},
                 {"emboss, sigma 0", [](QImage& i) { filterEmboss(i, 2, 0); }},
                 {"gaussian blur of width 1", [](QImage& i) { filterGaussianBlur(i, 0, 0.1f); }},
                 {"box blur radius 0", [](QImage& i) { filterBlur(i, 0); }},
                 {"sharpen argument 0", [](QImage& i) { filterSharpen(i, 0); }}})
            rule(name, filter, translucent, translucent);
        const QImage narrow = seeded(2, 10, 5, false), low = seeded(10, 2, 5, false);
        rule("edge on 2 x 10", filterEdge, narrow, narrow);
        rule("edge on 10 x 2", filterEdge, low, low);
        rule("antialias 2 high", filterAntialias, low, low);
        rule(
            "box blur radius 5, 9 wide", [](QImage& i) { filterBlur(i, 5); }, seeded(9, 20, 5, false),
            seeded(9, 20, 5, false));
        rule(
            "sharpen on 2 rows only converts", [](QImage& i) { filterSharpen(i, 3); }, seeded(5, 2, 11),
            asPremultiplied(seeded(5, 2, 11)));
        rule(
            "swirl 0", [](QImage& i) { filterSwirl(i, 0); }, seeded(9, 6, 4),
            asPremultiplied(seeded(9, 6, 4)));
        rule(
            "implode 0", [](QImage& i) { filterImplode(i, 0); }, seeded(6, 9, 4),
            asPremultiplied(seeded(6, 9, 4)));
        const QImage uniform = filled(9, 7, 0xff3070b0);
        for (const auto& [name, filter] : std::initializer_list<std::pair<const char*, Filter>>{
                 {"uniform: box blur", [](QImage& i) { filterBlur(i, 2); }},
                 {"uniform: antialias", filterAntialias},
                 {"uniform: gaussian blur, width from sigma",
                  [](QImage& i) { filterGaussianBlur(i, 0, 1.5f); }},
                 {"uniform: gaussian blur, kernel wider than image",
                  [](QImage& i) { filterGaussianBlur(i, 20, 3); }},
                 {"uniform: gaussian sharpen", [](QImage& i) { filterGaussianSharpen(i, 0, 1); }}})
            rule(name, filter, uniform, asPremultiplied(uniform));
    }
    void unchanged() { check(); }

    // Square kernels are as wide as asked, however small the image: on equal rows each row of the
    // result is the result of that row alone, whatever the image's height (the rows of the kernel
    // add the same row again; equalising counts every level as many times over).
    void kernelsWiderThanTheImage_data() {
        addColumns<Filter, QImage, QImage>("filter", "before", "after");
        const QImage row = columns({0xff2080c0, 0x80ff4000, 0xff10e070});
        for (const auto& [name, filter] : std::initializer_list<std::pair<const char*, Filter>>{
                 {"gaussian sharpen, radius 8", [](QImage& i) { filterGaussianSharpen(i, 8, 3); }},
                 {"gaussian sharpen, width from sigma 3", [](QImage& i) { filterGaussianSharpen(i, 0, 3); }},
                 {"emboss, radius 6", [](QImage& i) { filterEmboss(i, 6, 2); }},
                 {"emboss, width from sigma 1.5", [](QImage& i) { filterEmboss(i, 0, 1.5f); }}})
            rule(name, filter, stacked(row, 40), stacked(applied(filter, row), 40));
    }
    void kernelsWiderThanTheImage() { check(); }

    // Histogram filters count every level of a large image: a few colours repeated over more than a
    // million pixels (hundreds of thousands of each) give the result of a single row, repeated, on
    // one thread as on all of them.
    void largeCounts_data() {
        addColumns<Filter, int>("filter", "threads");
        for (int threads : {1, 0}) {
            const QByteArray suffix = threads == 1 ? ", one thread" : ", all threads";
            QTest::newRow("equalize" + suffix) << Filter(filterEqualize) << threads;
            QTest::newRow("auto-contrast" + suffix) << Filter(filterAutoContrast) << threads;
        }
    }
    void largeCounts() {
        QFETCH(Filter, filter);
        QFETCH(int, threads);
        const QList<QRgb> colours{0xff2080c0, 0xff20c040, 0xffe08010, 0xff40c0c0};
        QList<QRgb> words;
        for (int x = 0; x < 1024; ++x)
            words.append(colours[x * x % 7 % 4]);
        const QImage row = columns(words);
        setFilterThreads(threads);
        const QImage result = applied(filter, stacked(row, 1200));
        setFilterThreads(0);
        const QString difference = ::difference(result, stacked(applied(filter, row), 1200));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }

    // A kernel too wide for any use is refused with one warning, not narrowed; so are weights too
    // large for floats.
    void refusesAbsurdKernels_data() {
        QTest::addColumn<Filter>("filter");
        QTest::newRow("sharpen, radius") << Filter([](QImage& i) { filterGaussianSharpen(i, 1e9f, 1); });
        QTest::newRow("sharpen, sigma") << Filter([](QImage& i) { filterGaussianSharpen(i, 0, 1e30f); });
        QTest::newRow("emboss, radius") << Filter([](QImage& i) { filterEmboss(i, 40000, 2); });
        QTest::newRow("sharpen, tiny sigma")
            << Filter([](QImage& i) { filterGaussianSharpen(i, 2, 1e-30f); });
    }
    void refusesAbsurdKernels() {
        QFETCH(Filter, filter);
        const QImage before = seeded(5, 4, 8);
        QImage image = before;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("the image is left unchanged"));
        filter(image);
        QVERIFY(image == before);
        QCOMPARE(image.format(), before.format());
    }

private:
    void check() {
        QFETCH(Filter, filter);
        QFETCH(QImage, before);
        QFETCH(QImage, after);
        // A deep copy: a filter writing into shared data would change both sides alike.
        const QImage expected = after.copy();
        filter(before);
        QCOMPARE(before.format(), expected.format());
        const QString difference = ::difference(before, expected);
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
};

QTEST_GUILESS_MAIN(TestFilterRules)
#include "tst_filterrules.moc"
