#include "ToolPalette.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "ItemFactory.h"
#include "StartTool.h"
#include "ToolsCatalogue.h"

#include <QActionGroup>
#include <QEvent>

namespace {

QString displayedName(const QString& className) {
    const QString name = getTools_NamesRef()->value(className);
    return name.isEmpty() ? className : name;
}

} // namespace

ToolPalette::ToolPalette(AbstractScene* scene, QWidget* parent)
    : QToolBar(tr("Tools"), parent)
    , m_scene(scene)
    , m_group(new QActionGroup(this)) {
    setObjectName(QStringLiteral("ToolPalette"));
    m_group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
    const QList<QStringList> lists = {toolsAvailableNoTr(), mesuresAvailableNoTr(),
                                      annotationsAvailableNoTr()};
    for (const QStringList& list : lists) {
        if (!actions().isEmpty())
            addSeparator();
        for (const QString& className : list) {
            if (!factoryBuilds(className))
                continue;
            QAction* action = addAction(QIcon(getIconFor(className)), displayedName(className));
            action->setCheckable(true);
            action->setData(className);
            action->setObjectName(className);
            m_group->addAction(action);
        }
    }
    retranslate();
    connect(m_group, &QActionGroup::triggered, this, &ToolPalette::triggered);
    if (scene) {
        connect(scene, &AbstractScene::itemAccepted, this, &ToolPalette::finished);
        connect(scene, &AbstractScene::itemRejected, this, &ToolPalette::finished);
    }
}

QAction* ToolPalette::action(const QString& className) const {
    for (QAction* a : m_group->actions()) {
        if (a->data().toString() == className)
            return a;
    }
    return nullptr;
}

QStringList ToolPalette::classNames() const {
    QStringList names;
    for (QAction* a : m_group->actions())
        names << a->data().toString();
    return names;
}

void ToolPalette::retranslate() {
    setWindowTitle(tr("Tools"));
    for (QAction* a : m_group->actions()) {
        const QString name = displayedName(a->data().toString());
        a->setText(name);
        a->setToolTip(name);
        a->setStatusTip(tr("Draw: %1").arg(name));
    }
}

void ToolPalette::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QToolBar::changeEvent(event);
}

void ToolPalette::triggered(QAction* action) {
    if (!m_scene)
        return;
    if (!action->isChecked()) {
        m_scene->cancelTool();
        return;
    }
    // Starting cancels the drawing going on, whose rejection must not uncheck the new entry.
    m_starting = true;
    AbstractBaseItem* item = startTool(m_scene, action->data().toString());
    m_starting = false;
    if (!item) {
        action->setChecked(false);
        return;
    }
    emit toolStarted(item);
}

void ToolPalette::finished() {
    if (m_starting)
        return;
    if (QAction* checked = m_group->checkedAction())
        checked->setChecked(false);
}
