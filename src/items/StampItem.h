#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

// A calibrated scale bar: a bar of a round length (1, 2 or 5 times a power of ten, in the
// calibration's unit) nearest to a fraction of the image width, or of a length the user typed,
// labelled "50 µm". It is a length on the image: bar and label scale with it, and it follows
// calibration and image changes. Its point 0 is the bar's bottom-left corner, point 1 the
// bottom-right one; dist1 is the bar's calibrated length.
class GRAPHICSOBJECTS_EXPORT StampItem : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(StampItem)
    enum Style { SolidBar = 0, EndTicks = 1, Graduations = 2 };
    enum Corner { NoCorner = 0, TopLeft, TopRight, BottomLeft, BottomRight };
    // Menu data (negative command codes): a fraction of the width is -1 / fraction.
    enum MenuCommand { TypeLength = -20, StyleBase = -30, ToggleBox = -40, CornerBase = -50 };
    static constexpr double DefaultFraction = 0.2;
    // A stamp in a corner keeps this fraction of the image's smaller side from both edges.
    static constexpr double CornerMargin = 0.03;
    // Lengths that would make a longer bar, in pixels, are refused.
    static constexpr double MaxBarPixels = 1e6;

    // 1, 2 or 5 times a power of ten, nearest to v by ratio; 0 unless v is positive and finite.
    static double roundLength(double v);

    // The bar's calibrated length and its label; 0 and empty while there is nothing to measure
    // against (no scene, no calibration).
    double length() const { return m_mesure[Dist1]; }
    double barPixels() const { return m_mesureP[Dist1]; }
    QString text() const;
    // The share of the image width the automatic length comes nearest to, in (0, 1].
    double fraction() const { return m_fraction; }
    bool setFraction(double fraction);
    // A length of the user's, in calibrated units; 0 goes back to the automatic length. Refused
    // (false) when not finite, negative or longer than MaxBarPixels.
    double typedLength() const { return m_typed; }
    bool setTypedLength(double length);
    int style() const { return m_style; }
    void setStyle(int style);
    bool hasBox() const { return m_box; }
    void setBox(bool box);
    // Puts the stamp in a corner of the image, and keeps it there as its length changes, until it
    // is moved.
    int corner() const { return m_corner; }
    void placeInCorner(int corner);

    // The length is derived, not saved.
    GRAPHICSOBJECTS_UNMEASURED
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override { return barPixels() > 0; }
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void fillEditMenu(QMenu* menu) override { fillContextMenu(menu); }
    void applyEditMenu(int data) override { applyContextMenu(data); }
    // The grip at the bar's right end sets a round length.
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

public slots:
    bool computeMesures(void* arg) override;

protected:
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
    // Follows the image of the scene it is on; leaves its corner when moved.
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    struct Layout {
        QRectF bar;
        QRectF label;
        QRectF box;
        double thickness;
        double textScale; // of a 100-pixel font
    };
    Layout layout() const;
    QFont labelFont() const;
    // The image the stamp measures against, in scene coordinates: the scene's image, else its rectangle.
    QRectF referenceRect() const;
    void moveIntoCorner();
    void paintBar(QPainter* painter, const Layout& l) const;
    void changed();

    double m_fraction = DefaultFraction;
    double m_typed = 0;
    int m_style = SolidBar;
    bool m_box = false;
    int m_corner = NoCorner;
    QMetaObject::Connection m_imageConnection;
};
