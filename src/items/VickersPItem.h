#pragma once

#include "ClickedPointsItem.h"
#include "ItemTypes.h"

class QGraphicsPolygonItem;

// A Vickers hardness indentation: the user clicks the four corners of the square indent, the item
// measures both diagonals and computes the hardness from them and the test load.
// Calibrated lengths are taken to be micrometres.
class GRAPHICSOBJECTS_EXPORT VickersPItem : public ClickedPointsItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS; its source item's measures are taken over and exactly
    // four points build and compute the indentation at once.
    GRAPHICSOBJECTS_ITEM(VickersPItem)
    // Context-menu commands (negative, as the measure indices are not).
    enum MenuCommand { HighPrecisionCommand = -1, StdPrecisionCommand = -2 };
    // Where the results lie in both measure arrays.
    enum Slot { DiagonalSlot1 = 0, DiagonalSlot2 = 1, LoadSlot = 2, LoadKgfSlot = 3, HardnessSlot = 9 };
    // 0.1 kgf, the usual micro-hardness load.
    static constexpr double DefaultCharge = 0.98;

    // The copy keeps the precision mode, which the XML form does not carry.
    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0x200; }
    // The slots 0 to 9 that this item declares.
    int mesuresCount() const { return 10; }
    QString getSimpleHELP() override;

    double charge() const { return m_charge; }
    // The test load in newtons; recomputes at once.
    void setCharge(double newtons);
    bool highPrecision() const { return m_highPrecision; }
    // High precision uses 2 F sin(68 deg) / (g d^2), standard precision 0.189 F / d^2.
    void setHighPrecision(bool high);
    // While suspended, point, load and mode changes compute nothing and parameter records are
    // ignored; resuming recomputes.
    void suspendComputation(bool suspended);
    bool computationSuspended() const { return m_suspended; }

    // The computation behind computeMesures. A silent one leaves the label's place and text alone,
    // for a host that refreshes the values (after a calibration change, say) behind the user's label.
    bool recompute(bool silent);

    // The result as a metallographer writes it: hardness to three significant digits, "HV", the
    // test force in kgf to two significant digits ("18.5 HV 0.1"); empty without a finite result.
    QString hardnessDesignation() const;
    // Whether the diagonals differ by more than 5 % of their mean, which makes the result doubtful;
    // warning receives the text to show the user (empty when they agree).
    bool diagonalsDiffer(QString* warning = nullptr) const;
    // The label text of one slot ("d1:60.00*µm", "hardness:510.85*HV"); empty for a slot not written.
    QString slotText(int slot) const { return displayedMesure(slot); }
    MesureText mesureText(int i) const override;

    // The load from a parameter record (an _AUTOPOINTPARAMS, member load).
    void setSpecificparameters(QString, void* params) override;

    // Centre of the quadrilateral's bounding rectangle: where the label is anchored.
    QPointF centroid() override;
    QRectF boundingRect() const override;

    // The grips shown while the corners are clicked go once the last one is in.
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    // A degenerate indent is kept: its infinite hardness tells the user what went wrong.
    bool endEdition() override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    QGraphicsPolygonItem* polygonItem() const { return m_polygon; }

public slots:
    // Recomputes and places the label anew; false with fewer than four corners or while suspended.
    bool computeMesures(void*) override;
    // The quadrilateral's bounding rectangle in scene coordinates.
    QRectF itemRectF(void*) override;

protected:
    void recalibrate() override { recompute(false); }
    // The grips show each corner as it is clicked.
    void pointClicked() override;
    void drawPoints(const QList<QPointF>& points) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    static constexpr int CornerCount = 4;

    void addCorner(const QPointF& p);
    void removeCorners();
    void reverseCorners();
    double locateCentroid();
    void placeLabel();
    void takeOverContext(const _AUTOPOINTPARAMS& params);

    QGraphicsPolygonItem* m_polygon;
    double m_charge = DefaultCharge;
    bool m_highPrecision = true;
    bool m_suspended = false;
};
