// Command-line tool of the GraphicsObjects library: the catalogue of tools, and the measures and
// exports of a saved scene.
#include "SceneFile.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QTextStream>

namespace {

QTextStream& out() {
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err() {
    static QTextStream stream(stderr);
    return stream;
}

void printClasses(const QString& title, const QStringList& classNames) {
    out() << title << " (" << classNames.size() << ")\n";
    const QMap<QString, QString>& names = *getTools_NamesRef();
    for (const QString& className : classNames) {
        const QString displayed = names.contains(className) ? '"' + names.value(className) + '"' : "-";
        out() << "  " << qSetFieldWidth(20) << Qt::left << className << qSetFieldWidth(22) << displayed
              << qSetFieldWidth(18) << getIconPathFor(className) << qSetFieldWidth(0)
              << (factoryBuilds(className) ? "built" : "not built") << '\n';
    }
}

// Class name, displayed name, icon and factory state of every class the library knows.
int catalogue() {
    InitToolsNames();
    out() << toolInterfaceVersion(nullptr).join(' ') << "\n\n";
    printClasses("tools", toolsAvailableNoTr());
    printClasses("measures", mesuresAvailableNoTr());
    printClasses("annotations", annotationsAvailableNoTr());

    const QStringList listed = toolsAvailableNoTr() + mesuresAvailableNoTr() + annotationsAvailableNoTr();
    QStringList unlisted;
    for (const QString& className : toolFactoryClassNames() + mesureFactoryClassNames()) {
        if (!listed.contains(className))
            unlisted << className;
    }
    printClasses("in no list, by class name only", unlisted);
    return 0;
}

bool load(const QString& fileName, AbstractScene& scene, SceneFile& file) {
    QString error;
    if (!loadScene(fileName, &scene, file, error)) {
        err() << "gotool: " << error << '\n';
        return false;
    }
    for (const QString& warning : std::as_const(file.warnings))
        err() << "gotool: " << fileName << ": " << warning << '\n';
    return true;
}

// Every item of the scene with every measure it holds, calibrated.
int measure(const QString& fileName) {
    AbstractScene scene;
    SceneFile file;
    if (!load(fileName, scene, file))
        return 1;
    out() << fileName << ": " << file.items.size() << " items, " << file.factor << ' ' << file.unitName
          << " per pixel\n";
    for (AbstractBaseItem* item : std::as_const(file.items)) {
        out() << '\n' << item->getType() << " \"" << item->getGUIDname() << "\"\n";
        auto* vickers = qgraphicsitem_cast<VickersPItem*>(item);
        for (int i = 0; i < item->maxMesuresNum(); ++i) {
            // The indentation keeps its own quantities in the measure slots.
            const QString text = vickers ? vickers->slotText(i) : item->formatTextMesure(i);
            if (item->accessmesure(i) != 0 && !text.isEmpty())
                out() << "  " << text << '\n';
        }
        if (vickers) {
            out() << "  " << vickers->hardnessDesignation() << '\n';
            QString warning;
            if (vickers->diagonalsDiffer(&warning))
                out() << "  warning: " << warning << '\n';
        }
    }
    return 0;
}

// The scene as a DXF drawing or as a picture, chosen by the output's extension.
int exportScene(const QString& fileName, const QString& target, bool force) {
    const QString suffix = QFileInfo(target).suffix().toLower();
    if (suffix != QLatin1String("dxf") && suffix != QLatin1String("png")) {
        err() << "gotool: " << target << ": the output must end in .dxf or .png\n";
        return 2;
    }
    if (QFileInfo::exists(target) && !force) {
        err() << "gotool: " << target << " exists; give --force to replace it\n";
        return 1;
    }
    AbstractScene scene;
    SceneFile file;
    if (!load(fileName, scene, file))
        return 1;
    scene.clearSelection();
    if (suffix == QLatin1String("dxf")) {
        tools2DXF(target, &scene);
        if (!QFileInfo::exists(target)) {
            err() << "gotool: could not write " << target << '\n';
            return 1;
        }
    } else {
        const QRectF area = scene.sceneRect();
        QImage picture(area.size().toSize(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        scene.render(&painter, QRectF(picture.rect()), area);
        painter.end();
        if (!picture.save(target)) {
            err() << "gotool: could not write " << target << '\n';
            return 1;
        }
    }
    out() << "wrote " << target << '\n';
    return 0;
}

int usage() {
    err() << "usage: gotool catalogue\n"
             "       gotool measure SCENE.xml\n"
             "       gotool export SCENE.xml OUTPUT.dxf|OUTPUT.png [--force]\n"
             "  catalogue  list the tools, measures and annotations the library offers\n"
             "  measure    print the calibrated measures of every item of a saved scene\n"
             "  export     write a saved scene as a DXF drawing or a PNG picture\n";
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool force = args.removeAll(QStringLiteral("--force")) > 0;
    const QString command = args.value(0);
    if (command == QLatin1String("catalogue") && args.size() == 1)
        return catalogue();
    if (command == QLatin1String("measure") && args.size() == 2)
        return measure(args[1]);
    if (command == QLatin1String("export") && args.size() == 3)
        return exportScene(args[1], args[2], force);
    return usage();
}
