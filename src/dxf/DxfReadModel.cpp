#include "DxfReadModel.h"

namespace {

QString counted(const QMap<QString, qint64>& counts) {
    QStringList parts;
    for (auto it = counts.constBegin(); it != counts.constEnd(); ++it)
        parts.append(QStringLiteral("%1 %2").arg(it.key()).arg(it.value()));
    return parts.join(QStringLiteral(", "));
}

} // namespace

QString DxfReadReport::toText() const {
    QStringList lines;
    if (!error.isEmpty())
        lines.append(QStringLiteral("error: %1").arg(error));
    if (!read.isEmpty())
        lines.append(QStringLiteral("read: %1").arg(counted(read)));
    if (!unsupported.isEmpty())
        lines.append(QStringLiteral("not drawn, unsupported: %1").arg(counted(unsupported)));
    if (!refused.isEmpty())
        lines.append(QStringLiteral("refused, bad values: %1").arg(counted(refused)));
    lines.append(problems);
    return lines.join('\n');
}

const DxfLayer* DxfModel::layer(const QString& name) const {
    for (const DxfLayer& l : layers)
        if (l.name.compare(name, Qt::CaseInsensitive) == 0)
            return &l;
    return nullptr;
}

bool DxfModel::isEmpty() const {
    for (const DxfLayer& l : layers)
        if (!l.path.isEmpty() || !l.points.isEmpty() || !l.texts.isEmpty())
            return false;
    return true;
}
