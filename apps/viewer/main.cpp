// The GraphicsObjects viewer: measures and annotates images with the library's tools.
#include "MainWindow.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTimer>
#include <QTranslator>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("GraphicsObjects"));
    QApplication::setApplicationName(QStringLiteral("viewer"));

    // The language of the system: Qt's own texts, then the viewer's and the catalogue's names.
    QTranslator qt;
    if (qt.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&qt);
    QTranslator viewer;
    if (viewer.load(QLocale(), QStringLiteral("goviewer"), QStringLiteral("_"), QStringLiteral(":/i18n")))
        QApplication::installTranslator(&viewer);
    InitToolsNames();

    // goviewer [FILE] [--screenshot OUT.png]: the screenshot shows FILE with its first item
    // selected and label backgrounds on, as the README does, then the viewer quits.
    QStringList args = QApplication::arguments().mid(1);
    QString screenshot;
    const qsizetype option = args.indexOf(QStringLiteral("--screenshot"));
    if (option >= 0) {
        screenshot = args.value(option + 1);
        args.remove(option, qMin<qsizetype>(2, args.size() - option));
    }
    MainWindow window;
    if (!screenshot.isEmpty())
        window.resize(1280, 760);
    window.show();
    if (!args.isEmpty())
        window.openFile(args.first());
    if (!screenshot.isEmpty()) {
        window.scene()->setLabelBackground(true);
        if (AbstractBaseItem* first = window.measures()->item(0))
            first->setSelected(true);
        QTimer::singleShot(1000, &window, [&window, screenshot] {
            const bool saved = window.grab().save(screenshot);
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return QApplication::exec();
}
