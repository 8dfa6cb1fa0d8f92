#include "Commands.h"
#include "Console.h"
#include "Files.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <cmath>
#include <functional>

namespace {

// One filter of the library as the command line names it, with the range of each argument.
struct Filter {
    const char* name;
    const char* arguments;
    double low;
    double high;
    bool whole; // the arguments are whole numbers
    std::function<void(QImage&, const QList<double>&)> apply;
};

const QList<Filter>& filters() {
    static const QList<Filter> list = {
        {"brightness", "DELTA", -255, 255, true,
         [](QImage& i, const QList<double>& v) { filterBrightness(i, int(v[0])); }},
        {"contrast", "AMOUNT", -255, 255, true,
         [](QImage& i, const QList<double>& v) { filterContrast(i, int(v[0])); }},
        {"gamma", "GAMMA", 0.01, 10, false, [](QImage& i, const QList<double>& v) { filterGamma(i, v[0]); }},
        {"colorize", "BLUE GREEN RED", -255, 255, true,
         [](QImage& i, const QList<double>& v) { filterColorize(i, int(v[0]), int(v[1]), int(v[2])); }},
        {"auto-contrast", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterAutoContrast(i); }},
        {"equalize", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterEqualize(i); }},
        {"desaturate", "AMOUNT", 0, 1, false,
         [](QImage& i, const QList<double>& v) { filterDesaturate(i, float(v[0])); }},
        {"grayscale", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterGrayscale(i); }},
        {"blur", "RADIUS", 1, 100, true, [](QImage& i, const QList<double>& v) { filterBlur(i, int(v[0])); }},
        {"sharpen", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterSharpen(i, 1); }},
        {"edge", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterEdge(i); }},
        {"despeckle", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterDespeckle(i); }},
        {"antialias", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterAntialias(i); }},
        {"gaussian-blur", "RADIUS SIGMA", 0, 100, false,
         [](QImage& i, const QList<double>& v) { filterGaussianBlur(i, float(v[0]), float(v[1])); }},
        {"gaussian-sharpen", "RADIUS SIGMA", 0, 100, false,
         [](QImage& i, const QList<double>& v) { filterGaussianSharpen(i, float(v[0]), float(v[1])); }},
        {"emboss", "RADIUS SIGMA", 0, 100, false,
         [](QImage& i, const QList<double>& v) { filterEmboss(i, float(v[0]), float(v[1])); }},
        {"charcoal", "", 0, 0, false, [](QImage& i, const QList<double>&) { filterCharcoal(i); }},
        {"swirl", "DEGREES", -3600, 3600, false,
         [](QImage& i, const QList<double>& v) { filterSwirl(i, float(v[0])); }},
        {"implode", "AMOUNT", -5, 5, false,
         [](QImage& i, const QList<double>& v) { filterImplode(i, float(v[0])); }},
    };
    return list;
}

const Filter* findFilter(const QString& option) {
    for (const Filter& f : filters()) {
        if (option == QLatin1String("--") + QLatin1String(f.name))
            return &f;
    }
    return nullptr;
}

int argumentCount(const Filter& f) {
    return int(QString::fromLatin1(f.arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts).size());
}

void printHelp() {
    out() << "usage: gotool filter INPUT -o OUTPUT [--force] --NAME [ARGS...] [--NAME [ARGS...]]...\n"
             "  Applies the library's image filters to the picture INPUT, in the order given, and writes\n"
             "  OUTPUT in the format its extension names (png, jpg, bmp...). Pictures are limited to\n"
             "  32768 pixels a side and 2^28 pixels in all. An existing output is replaced only with\n"
             "  --force, and never when it is the input.\n"
             "filters:\n";
    for (const Filter& f : filters()) {
        out() << "  --" << qSetFieldWidth(18) << Qt::left << f.name << qSetFieldWidth(16) << f.arguments
              << qSetFieldWidth(0);
        if (argumentCount(f) > 0)
            out() << (f.whole ? "whole numbers" : "numbers") << " from " << f.low << " to " << f.high;
        out() << '\n';
    }
}

struct Step {
    const Filter* filter;
    QList<double> values;
};

// The picture in file, or null after one clear message.
QImage readPicture(const QString& fileName) {
    const QFileInfo info(fileName);
    if (!info.isFile()) {
        fail(QStringLiteral("%1: %2").arg(fileName, info.exists() ? QStringLiteral("not a regular file")
                                                                  : QStringLiteral("no such file")));
        return QImage();
    }
    QImageReader reader(fileName);
    const QSize size = reader.size();
    if (size.isValid() && !SceneDocument::sizeAllowed(size)) {
        fail(QStringLiteral("%1: %2 x %3 pixels is beyond the limit of %4 x %4 and %5 pixels in all")
                 .arg(fileName)
                 .arg(size.width())
                 .arg(size.height())
                 .arg(SceneDocument::MaxSide)
                 .arg(SceneDocument::MaxPixels));
        return QImage();
    }
    QImage image;
    if (!reader.read(&image) || !SceneDocument::sizeAllowed(image.size())) {
        fail(QStringLiteral("%1: not a picture gotool can read: %2").arg(fileName, reader.errorString()));
        return QImage();
    }
    return image;
}

} // namespace

int filterCommand(const QStringList& args) {
    QStringList positional;
    QString target;
    bool force = false;
    QList<Step> steps;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args.at(i);
        if (a == QLatin1String("--help")) {
            printHelp();
            return 0;
        }
        if (a == QLatin1String("--force")) {
            force = true;
        } else if (a == QLatin1String("-o")) {
            if (++i == args.size())
                return fail(QStringLiteral("-o needs a value (see gotool filter --help)"), ExitUsage);
            target = args.at(i);
        } else if (const Filter* f = findFilter(a)) {
            Step step{f, {}};
            for (int n = argumentCount(*f); n > 0; --n) {
                const QString text = args.value(++i);
                bool ok = false;
                const double v = text.toDouble(&ok);
                if (!ok || !(v >= f->low && v <= f->high) || (f->whole && v != std::floor(v)))
                    return fail(QStringLiteral("%1 %2: \"%3\" is not a %4 from %5 to %6")
                                    .arg(a, QLatin1String(f->arguments), text,
                                         f->whole ? QStringLiteral("whole number") : QStringLiteral("number"))
                                    .arg(f->low)
                                    .arg(f->high),
                                ExitUsage);
                step.values << v;
            }
            steps << step;
        } else if (a.startsWith(QLatin1Char('-')) && a.size() > 1) {
            return fail(QStringLiteral("unknown filter or option %1 (see gotool filter --help)").arg(a),
                        ExitUsage);
        } else {
            positional << a;
        }
    }
    if (positional.size() != 1 || target.isEmpty() || steps.isEmpty())
        return fail(
            QStringLiteral("filter takes a picture, -o OUTPUT and at least one filter (see gotool filter "
                           "--help)"),
            ExitUsage);
    const QByteArray format = QFileInfo(target).suffix().toLower().toLatin1();
    if (!QImageWriter::supportedImageFormats().contains(format))
        return fail(QStringLiteral("%1: no picture format is known by that extension").arg(target),
                    ExitUsage);
    const QString input = positional.first();
    if (!outputAllowed(target, {input}, force))
        return ExitFailure;
    QImage image = readPicture(input);
    if (image.isNull())
        return ExitFailure;
    for (const Step& step : std::as_const(steps))
        step.filter->apply(image, step.values);
    QString error;
    if (!writeImage(image, target, &error))
        return fail(error);
    out() << "wrote " << target << '\n';
    return 0;
}
