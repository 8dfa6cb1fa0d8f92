#include "Commands.h"
#include "Console.h"
#include "Files.h"
#include "Scene.h"

#include <QFileInfo>

#include <cmath>

namespace {

constexpr double MaxScale = 16;

const char* const exportHelp =
    "usage: gotool export DOC OUTPUT.dxf|OUTPUT.png [--force]\n"
    "  Writes the scene document DOC as a DXF drawing or as a PNG picture of the scene's size,\n"
    "  chosen by the output's extension. An existing output is replaced only with --force, and\n"
    "  never when it is one of the inputs.\n";

const char* const renderHelp =
    "usage: gotool render DOC -o OUTPUT.png [--scale S] [--force]\n"
    "  Draws the scene document DOC, its image with its items, into a PNG picture of S times the\n"
    "  scene's size (S above 0, at most 16; 1 by default). Pictures are limited to 32768 pixels a\n"
    "  side and 2^28 pixels in all. An existing output is replaced only with --force, and never\n"
    "  when it is one of the inputs.\n";

// Opens the document and writes the picture or drawing; the output checks come first.
int writeScene(const QString& fileName, const QString& target, double scale, bool force) {
    const bool dxf = QFileInfo(target).suffix().compare(QLatin1String("dxf"), Qt::CaseInsensitive) == 0;
    AbstractScene scene;
    SceneDocument document;
    // The inputs are known only once the document is read (its image); nothing is written before.
    if (!outputAllowed(target, {fileName}, force) || !openDocument(fileName, scene, document, !dxf) ||
        !outputAllowed(target, documentInputs(fileName, document), true))
        return ExitFailure;
    QString error;
    if (dxf) {
        const QSizeF size = scene.sceneRect().size();
        if (!(size.width() <= SceneDocument::MaxSide && size.height() <= SceneDocument::MaxSide))
            return fail(QStringLiteral("%1: a drawing of %2 x %3 is beyond the limit of %4 x %4")
                            .arg(fileName)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(SceneDocument::MaxSide));
        scene.clearSelection();
        if (!writeDxf(target, &scene, &error))
            return fail(error);
    } else {
        const QImage picture = renderScene(scene, scale);
        if (picture.isNull())
            return ExitFailure;
        if (!writeImage(picture, target, &error))
            return fail(error);
    }
    out() << "wrote " << target << '\n';
    return 0;
}

} // namespace

// The scene as a DXF drawing or as a picture, chosen by the output's extension.
int exportCommand(const QStringList& args) {
    const Arguments a = parseArguments(args, {}, {QStringLiteral("--force"), QStringLiteral("--help")});
    if (a.flags.contains(QStringLiteral("--help"))) {
        out() << exportHelp;
        return 0;
    }
    if (!a.error.isEmpty() || a.positional.size() != 2)
        return fail((a.error.isEmpty() ? QStringLiteral("export takes a document and an output") : a.error) +
                        QStringLiteral(" (see gotool export --help)"),
                    ExitUsage);
    const QString target = a.positional.at(1);
    const QString suffix = QFileInfo(target).suffix().toLower();
    if (suffix != QLatin1String("dxf") && suffix != QLatin1String("png"))
        return fail(QStringLiteral("%1: the output must end in .dxf or .png").arg(target), ExitUsage);
    return writeScene(a.positional.at(0), target, 1.0, a.flags.contains(QStringLiteral("--force")));
}

int renderCommand(const QStringList& args) {
    const Arguments a = parseArguments(args, {QStringLiteral("-o"), QStringLiteral("--scale")},
                                       {QStringLiteral("--force"), QStringLiteral("--help")});
    if (a.flags.contains(QStringLiteral("--help"))) {
        out() << renderHelp;
        return 0;
    }
    const QString target = a.values.value(QStringLiteral("-o"));
    if (!a.error.isEmpty() || a.positional.size() != 1 || target.isEmpty())
        return fail(
            (a.error.isEmpty() ? QStringLiteral("render takes a document and -o OUTPUT.png") : a.error) +
                QStringLiteral(" (see gotool render --help)"),
            ExitUsage);
    if (QFileInfo(target).suffix().toLower() != QLatin1String("png"))
        return fail(QStringLiteral("%1: the output must end in .png").arg(target), ExitUsage);
    bool ok = true;
    const QString scaleText = a.values.value(QStringLiteral("--scale"), QStringLiteral("1"));
    const double scale = scaleText.toDouble(&ok);
    if (!ok || !(scale > 0 && scale <= MaxScale))
        return fail(
            QStringLiteral("--scale %1: give a number above 0 and at most %2").arg(scaleText).arg(MaxScale),
            ExitUsage);
    return writeScene(a.positional.at(0), target, scale, a.flags.contains(QStringLiteral("--force")));
}
