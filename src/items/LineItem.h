#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

#include <QLineF>

class QGraphicsLineItem;

// A straight segment drawn with one press, a drag and a release: measures its length and two
// angles, shows arrow heads on demand and marks its start point while drawn or selected.
class GRAPHICSOBJECTS_EXPORT LineItem : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_MEASURED_ITEM(LineItem, "line_mesureIndex", Dist1)

    // Menu data of the arrow and orthogonal-mode entries (measure entries carry the measure index).
    enum MenuCommand {
        NoArrow = -1,
        ArrowHeadOnly = -2,
        ArrowTailOnly = -3,
        ArrowBoth = -4,
        ToggleStartMark = -5,
        OrthoOn = -6,
        OrthoOff = -7
    };

    long mesuresFlag() const override { return 5; }
    GRAPHICSOBJECTS_LOCKS_GRIPS_ONLY
    GRAPHICSOBJECTS_ITEM_DRAWING
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    QList<MenuEntry> mesureMenu() const override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    int arrowFactor() const { return m_arrowFactor; }
    bool arrowHead() const { return m_arrowHead; }
    bool arrowTail() const { return m_arrowTail; }
    bool showStartMark() const { return m_showStartMark; }
    // The visible segment, in item coordinates.
    QLineF line() const;

public slots:
    bool computeMesures(void*) override;
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;
    void selectfromPoint(const QPointF&);

protected:
    // The line's menu opens where the click was, not where the cursor is now.
    QPoint menuPosition(QGraphicsSceneContextMenuEvent* event) const override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void placeLine();
    void storeChoices();

    int m_arrowFactor = 2;
    bool m_arrowHead = false;
    bool m_arrowTail = false;
    bool m_showStartMark = true;
};
