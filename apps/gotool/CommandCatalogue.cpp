#include "Commands.h"
#include "Console.h"

#include <GraphicsObjects/GraphicsObjects.h>

namespace {

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

} // namespace

// Class name, displayed name, icon and factory state of every class the library knows.
int catalogueCommand(const QStringList& args) {
    if (args.contains(QStringLiteral("--help"))) {
        out() << "usage: gotool catalogue\n"
                 "  Lists the tools, measures and annotations the library offers: class name, displayed\n"
                 "  name, icon and whether the factories build the class.\n";
        return 0;
    }
    if (!args.isEmpty())
        return fail(QStringLiteral("catalogue takes no arguments (see gotool catalogue --help)"), ExitUsage);
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
