#pragma once

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>

// An exported drawing read back through ezdxf's strict audit (tests/dxf/check_dxf.py); empty when
// the reader fails.
inline QJsonObject readBackDxf(const QString& fileName) {
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(DXF_CHECKER), fileName});
    if (!python.waitForFinished(60000) || python.exitCode() != 0) {
        qWarning().noquote() << python.readAllStandardError();
        return {};
    }
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

// How many entities of each type the report lists.
inline QMap<QString, int> dxfEntityTypes(const QJsonObject& report) {
    QMap<QString, int> types;
    for (const QJsonValue& e : report["entities"].toArray())
        ++types[e["type"].toString()];
    return types;
}

// A reader takes the file as it is: read at all, with no audit errors and nothing to fix.
inline bool dxfTakenAsItIs(const QJsonObject& report) {
    return !report.isEmpty() && report["errors"].toArray().isEmpty() && report["fixes"].toArray().isEmpty();
}
