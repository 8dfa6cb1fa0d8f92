// Command-line tool of the GraphicsObjects library: the catalogue of tools, and the measures,
// exports and pictures of a scene document, and the image filters.
#include "Commands.h"
#include "Console.h"

#include <QApplication>

namespace {

const char* const usage = "usage: gotool catalogue\n"
                          "       gotool measure DOC [--format table|csv|json]\n"
                          "       gotool export DOC OUTPUT.dxf|OUTPUT.png [--force]\n"
                          "       gotool render DOC -o OUTPUT.png [--scale S] [--force]\n"
                          "       gotool filter INPUT -o OUTPUT [--force] --NAME [ARGS...]...\n"
                          "  catalogue  list the tools, measures and annotations the library offers\n"
                          "  measure    print the calibrated measures of every item of a scene document\n"
                          "  export     write a scene document as a DXF drawing or a PNG picture\n"
                          "  render     draw a scene document, image and items, into a PNG picture\n"
                          "  filter     apply image filters to a picture\n"
                          "gotool COMMAND --help tells more about a command.\n";

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    const QString command = args.value(0);
    const QStringList rest = args.mid(1);
    if (command == QLatin1String("catalogue"))
        return catalogueCommand(rest);
    if (command == QLatin1String("measure"))
        return measureCommand(rest);
    if (command == QLatin1String("export"))
        return exportCommand(rest);
    if (command == QLatin1String("render"))
        return renderCommand(rest);
    if (command == QLatin1String("filter"))
        return filterCommand(rest);
    if (command == QLatin1String("--help") || command == QLatin1String("help")) {
        out() << usage;
        return 0;
    }
    if (command.isEmpty()) {
        err() << usage;
        return ExitUsage;
    }
    return fail(QStringLiteral("unknown command \"%1\" (see gotool --help)").arg(command), ExitUsage);
}
