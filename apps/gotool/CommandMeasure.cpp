#include "Commands.h"
#include "Console.h"
#include "Scene.h"

#include <QFileInfo>

#include <cmath>

namespace {

const char* const help =
    "usage: gotool measure DOC [--format table|csv|json]\n"
    "  Prints one row per item of the scene document DOC: its class, its GUID name and each\n"
    "  measure it fills, as its label shows it and as a calibrated value.\n"
    "  table  aligned text, the Vickers hardness designation last (the default)\n"
    "  csv    RFC 4180: class, tool, name, then one column per measure name and unit\n"
    "  json   {\"items\": [{\"class\", \"displayedName\", \"name\", \"measures\": "
    "[{\"name\", \"value\", \"unit\"}]}]}\n";

struct Measure {
    QString label;
    double value;
};

struct Row {
    QString className;
    QString name;
    QList<Measure> measures;
    QStringList notes; // the indentation's designation and warning
};

Row rowOf(AbstractBaseItem* item) {
    Row row{item->getType(), item->getGUIDname(), {}, {}};
    auto* vickers = qgraphicsitem_cast<VickersPItem*>(item);
    for (int i = 0; i < item->maxMesuresNum(); ++i) {
        // As the item's label names it: the indentation keeps its own quantities in the slots.
        const QString label = item->displayedMesure(i);
        const double value = item->accessmesure(i);
        if (value != 0 && std::isfinite(value) && !label.isEmpty())
            row.measures << Measure{label, value};
    }
    if (vickers) {
        row.notes << vickers->hardnessDesignation();
        QString warning;
        if (vickers->diagonalsDiffer(&warning))
            row.notes << QStringLiteral("warning: ") + warning;
    }
    return row;
}

void printTable(const QString& fileName, const SceneDocument& document, const QList<Row>& rows) {
    const Calibration c = document.calibration();
    out() << fileName << ": " << rows.size() << " items, " << c.factor << ' ' << c.unitName << " per pixel\n";
    int classWidth = 5;
    int nameWidth = 4;
    for (const Row& row : rows) {
        classWidth = qMax(classWidth, int(row.className.size()));
        nameWidth = qMax(nameWidth, int(row.name.size()));
    }
    out() << Qt::left << qSetFieldWidth(classWidth + 2) << "class" << qSetFieldWidth(nameWidth + 2) << "name"
          << qSetFieldWidth(0) << "measures\n";
    for (const Row& row : rows) {
        QStringList cells;
        for (const Measure& m : row.measures)
            cells << m.label;
        cells << row.notes;
        out() << qSetFieldWidth(classWidth + 2) << row.className << qSetFieldWidth(nameWidth + 2) << row.name
              << qSetFieldWidth(0) << cells.join(QStringLiteral("  ")) << '\n';
    }
}

} // namespace

// Every item of the scene with every measure it holds, calibrated.
int measureCommand(const QStringList& args) {
    const Arguments a = parseArguments(args, {QStringLiteral("--format")}, {QStringLiteral("--help")});
    if (a.flags.contains(QStringLiteral("--help"))) {
        out() << help;
        return 0;
    }
    const QString format = a.values.value(QStringLiteral("--format"), QStringLiteral("table"));
    if (!a.error.isEmpty() || a.positional.size() != 1)
        return fail((a.error.isEmpty() ? QStringLiteral("measure takes one document") : a.error) +
                        QStringLiteral(" (see gotool measure --help)"),
                    ExitUsage);
    if (format != QLatin1String("table") && format != QLatin1String("csv") && format != QLatin1String("json"))
        return fail(QStringLiteral("unknown format \"%1\": table, csv or json").arg(format), ExitUsage);

    const QString fileName = a.positional.first();
    AbstractScene scene;
    SceneDocument document;
    if (!openDocument(fileName, scene, document, false))
        return ExitFailure;
    if (format != QLatin1String("table")) {
        const MeasuresModel model(&scene);
        out() << (format == QLatin1String("csv") ? model.toCsv() : QString::fromUtf8(model.toJson()));
        return 0;
    }
    QList<Row> rows;
    for (AbstractBaseItem* item : document.items())
        rows << rowOf(item);
    printTable(fileName, document, rows);
    return 0;
}
