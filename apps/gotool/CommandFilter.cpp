#include "Commands.h"
#include "Console.h"
#include "Files.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <cmath>

namespace {

const ImageFilterInfo* findFilter(const QString& option) {
    return option.startsWith(QLatin1String("--")) ? findImageFilter(option.mid(2)) : nullptr;
}

void printHelp() {
    out() << "usage: gotool filter INPUT -o OUTPUT [--force] --NAME [ARGS...] [--NAME [ARGS...]]...\n"
             "  Applies the library's image filters to the picture INPUT, in the order given, and writes\n"
             "  OUTPUT in the format its extension names (png, jpg, bmp...). Pictures are limited to\n"
             "  32768 pixels a side and 2^28 pixels in all. An existing output is replaced only with\n"
             "  --force, and never when it is the input.\n"
             "filters:\n";
    for (const ImageFilterInfo& f : imageFilters()) {
        out() << "  --" << qSetFieldWidth(18) << Qt::left << f.name << qSetFieldWidth(16) << f.arguments
              << qSetFieldWidth(0);
        if (!f.argumentNames().isEmpty())
            out() << (f.whole ? "whole numbers" : "numbers") << " from " << f.low << " to " << f.high;
        out() << '\n';
    }
}

struct Step {
    const ImageFilterInfo* filter;
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
        } else if (const ImageFilterInfo* f = findFilter(a)) {
            Step step{f, {}};
            for (int n = int(f->argumentNames().size()); n > 0; --n) {
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
