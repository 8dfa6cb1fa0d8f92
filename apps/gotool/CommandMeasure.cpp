#include "Commands.h"
#include "Console.h"
#include "Scene.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

const char* const help =
    "usage: gotool measure DOC [--format table|csv|json]\n"
    "  Prints one row per item of the scene document DOC: its class, its GUID name and each\n"
    "  measure it fills, as its label shows it and as a calibrated value.\n"
    "  table  aligned text, the Vickers hardness designation last (the default)\n"
    "  csv    RFC 4180: class,name then label,value pairs\n"
    "  json   {\"document\", \"unit\", \"factor\", \"items\": [{\"class\", \"name\", \"measures\": "
    "[{\"label\", \"value\"}]}]}\n";

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

QString number(double v) {
    return QString::number(v, 'g', QLocale::FloatingPointShortest);
}

// Quoted when the field holds a comma, a quote or a line break; quotes doubled.
QString csvField(const QString& field) {
    if (!field.contains(QLatin1Char(',')) && !field.contains(QLatin1Char('"')) &&
        !field.contains(QLatin1Char('\n')) && !field.contains(QLatin1Char('\r')))
        return field;
    QString quoted = field;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
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

void printCsv(const QList<Row>& rows) {
    int columns = 0;
    for (const Row& row : rows)
        columns = qMax(columns, int(row.measures.size()));
    QStringList header = {QStringLiteral("class"), QStringLiteral("name")};
    for (int i = 1; i <= columns; ++i)
        header << QStringLiteral("label %1").arg(i) << QStringLiteral("value %1").arg(i);
    out() << header.join(QLatin1Char(',')) << "\r\n";
    for (const Row& row : rows) {
        QStringList fields = {csvField(row.className), csvField(row.name)};
        for (const Measure& m : row.measures)
            fields << csvField(m.label) << number(m.value);
        out() << fields.join(QLatin1Char(',')) << "\r\n";
    }
}

void printJson(const QString& fileName, const SceneDocument& document, const QList<Row>& rows) {
    QJsonArray items;
    for (const Row& row : rows) {
        QJsonArray measures;
        for (const Measure& m : row.measures)
            measures.append(
                QJsonObject{{QStringLiteral("label"), m.label}, {QStringLiteral("value"), m.value}});
        items.append(QJsonObject{{QStringLiteral("class"), row.className},
                                 {QStringLiteral("name"), row.name},
                                 {QStringLiteral("measures"), measures}});
    }
    const QJsonObject root{{QStringLiteral("document"), fileName},
                           {QStringLiteral("unit"), document.calibration().unitName},
                           {QStringLiteral("factor"), document.calibration().factor},
                           {QStringLiteral("items"), items}};
    out() << QJsonDocument(root).toJson(QJsonDocument::Indented);
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
    QList<Row> rows;
    for (AbstractBaseItem* item : document.items())
        rows << rowOf(item);
    if (format == QLatin1String("csv"))
        printCsv(rows);
    else if (format == QLatin1String("json"))
        printJson(fileName, document, rows);
    else
        printTable(fileName, document, rows);
    return 0;
}
