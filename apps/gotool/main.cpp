// Command-line tool of the GraphicsObjects library.
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QTextStream>

namespace {

void printClasses(QTextStream& out, const QString& title, const QStringList& classNames) {
    out << title << " (" << classNames.size() << ")\n";
    const QMap<QString, QString>& names = *getTools_NamesRef();
    for (const QString& className : classNames) {
        const QString displayed = names.contains(className) ? '"' + names.value(className) + '"' : "-";
        out << "  " << qSetFieldWidth(20) << Qt::left << className << qSetFieldWidth(22) << displayed
            << qSetFieldWidth(18) << getIconPathFor(className) << qSetFieldWidth(0)
            << (factoryBuilds(className) ? "built" : "not built") << '\n';
    }
}

// Class name, displayed name, icon and factory state of every class the library knows.
int catalogue() {
    InitToolsNames();
    QTextStream out(stdout);
    out << toolInterfaceVersion(nullptr).join(' ') << "\n\n";
    printClasses(out, "tools", toolsAvailableNoTr());
    printClasses(out, "measures", mesuresAvailableNoTr());
    printClasses(out, "annotations", annotationsAvailableNoTr());

    const QStringList listed = toolsAvailableNoTr() + mesuresAvailableNoTr() + annotationsAvailableNoTr();
    QStringList unlisted;
    for (const QString& className : toolFactoryClassNames() + mesureFactoryClassNames()) {
        if (!listed.contains(className))
            unlisted << className;
    }
    printClasses(out, "in no list, by class name only", unlisted);
    return 0;
}

int usage() {
    QTextStream(stderr) << "usage: gotool catalogue\n"
                           "  catalogue  list the tools, measures and annotations the library offers\n";
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "catalogue") == 0)
        return catalogue();
    return usage();
}
