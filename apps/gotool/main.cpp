// Command-line tool of the GraphicsObjects library.
#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << "GraphicsObjects\n";
    return 0;
}
