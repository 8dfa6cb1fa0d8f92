#pragma once

#include <QList>
#include <QUndoCommand>

class AbstractScene;
class VickersPItem;

// The standard test forces of the Vickers test, HV 0.01 to HV 100: the number is the force in
// kilogram-force, the items take it in newtons.
namespace VickersLoads {

QList<double> standardKgf();
double toNewtons(double kgf);
// "HV 0.5"
QString designation(double kgf);

} // namespace VickersLoads

// A new test load for indentations, undone to each one's own.
class VickersLoadCommand : public QUndoCommand {
public:
    VickersLoadCommand(AbstractScene* scene, const QList<VickersPItem*>& items, double newtons);
    void undo() override;
    void redo() override;

private:
    void apply(bool forward);

    AbstractScene* m_scene;
    QStringList m_uids;
    QList<double> m_before;
    double m_after;
};
