#pragma once

#include "ItemTypes.h"
#include "PositionItem.h"

// The orthogonal reference: two perpendicular arms through a point. The press places the centre
// and the drag points the first arm; turning the arm's rotation grip sets the scene's orthogonal
// reference angle, which the line's constrained drawing and orthogonal mode follow. ang1 is the
// first arm's angle (degrees, counter-clockwise on screen), ang2 the second arm's.
class GRAPHICSOBJECTS_EXPORT CrossItem : public PositionItem {
    Q_OBJECT
public:
    // The centre's grip moves the cross, the first arm's grip turns it.
    enum Grip { CentreGrip = 0, ArmGrip = 1 };
    // context: optional _AUTOPOINTPARAMS; its centre places the cross, its radius (if any) is the
    // arm length.
    GRAPHICSOBJECTS_MEASURED_ITEM(CrossItem, "cross_mesureIndex", Ang1)
    // Arm length of a cross placed with a click.
    static constexpr double DefaultArm = 40;

    long mesuresFlag() const override { return 5; }
    double angle() const { return m_angle; }
    double armLength() const { return m_arm; }
    void setAngle(double degrees);
    QList<QLineF> lines() const override;

    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    QList<MenuEntry> mesureMenu() const override;
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

protected:
    void fillMesures() override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void placeArms();

    double m_angle = 0;
    double m_arm = DefaultArm;
};
