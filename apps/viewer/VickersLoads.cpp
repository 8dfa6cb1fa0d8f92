#include "VickersLoads.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QCoreApplication>

namespace VickersLoads {

QList<double> standardKgf() {
    return {0.01, 0.015, 0.02, 0.025, 0.05, 0.1, 0.2, 0.3, 0.5, 1, 2, 2.5, 3, 5, 10, 20, 30, 50, 100};
}

double toNewtons(double kgf) {
    return kgf * 9.80665;
}

QString designation(double kgf) {
    return QStringLiteral("HV %1").arg(QString::number(kgf, 'g', 4));
}

} // namespace VickersLoads

VickersLoadCommand::VickersLoadCommand(AbstractScene* scene, const QList<VickersPItem*>& items,
                                       double newtons)
    : QUndoCommand(QCoreApplication::translate("VickersLoads", "Test load %1 N").arg(newtons, 0, 'g', 6))
    , m_scene(scene)
    , m_after(newtons) {
    for (VickersPItem* item : items) {
        m_uids << item->ensureUid();
        m_before << item->charge();
    }
}

void VickersLoadCommand::apply(bool forward) {
    SceneUndo::Replay replay;
    const QHash<QString, AbstractBaseItem*> items = SceneItems::byUid(m_scene);
    for (int i = 0; i < m_uids.size(); ++i) {
        if (auto* vickers = qobject_cast<VickersPItem*>(items.value(m_uids.at(i))))
            vickers->setCharge(forward ? m_after : m_before.at(i));
    }
}

void VickersLoadCommand::undo() {
    apply(false);
}

void VickersLoadCommand::redo() {
    apply(true);
}
