#pragma once

#include "graphicsobjects_export.h"

#include <QPointer>
#include <QToolBar>

class AbstractBaseItem;
class AbstractScene;
class QActionGroup;

// A tool bar of the catalogue: the tools, then the construction measures, then the annotations,
// each with its icon and displayed name, offering only the classes the factories build. Checking
// an entry starts drawing that item on the scene (startTool); the entry unchecks itself once the
// item is accepted or rejected, and unchecking it cancels the drawing.
class GRAPHICSOBJECTS_EXPORT ToolPalette : public QToolBar {
    Q_OBJECT
public:
    explicit ToolPalette(AbstractScene* scene, QWidget* parent = nullptr);

    AbstractScene* scene() const { return m_scene; }
    QActionGroup* actionGroup() const { return m_group; }
    // The entry of a class, null when the palette does not offer it.
    QAction* action(const QString& className) const;
    // The classes offered, in palette order.
    QStringList classNames() const;
    // Texts from the name table again (after InitToolsNames under another language).
    void retranslate();

signals:
    void toolStarted(AbstractBaseItem* item);

protected:
    void changeEvent(QEvent* event) override;

private:
    void triggered(QAction* action);
    void finished();

    QPointer<AbstractScene> m_scene;
    QActionGroup* m_group;
    bool m_starting = false;
};
