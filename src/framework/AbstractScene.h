#pragma once

#include "Calibration.h"
#include "graphicsobjects_export.h"

#include <QGraphicsScene>
#include <QImage>
#include <QPointer>

class AbstractBaseItem;

// The host's scene as the items know it: the zoom at which it is shown, the orthogonal drawing
// mode, and the drawing of a new item with the mouse.
class GRAPHICSOBJECTS_EXPORT AbstractScene : public QGraphicsScene {
    Q_OBJECT
public:
    explicit AbstractScene(QObject* parent = nullptr);
    explicit AbstractScene(const QRectF& sceneRect, QObject* parent = nullptr);
    ~AbstractScene() override;

    // The zoom of the view showing the scene, which the host passes on: labels keep their size on
    // screen through it.
    double horizontalZoom() const { return m_zoomX; }
    double verticalZoom() const { return m_zoomY; }
    // When false the horizontal factor stands for both directions.
    bool verticalZoomInForce() const { return m_verticalZoomInForce; }
    void setZoomFactors(double horizontal, double vertical);
    void setVerticalZoomInForce(bool inForce);

    // Reference direction of the orthogonal mode, in degrees; 0 turns the mode off.
    double orthoReferenceAngle() const { return m_orthoAngle; }
    virtual void setOrthoReferenceAngle(double degrees);

    // The image the items lie on, drawn as the background; null when there is none. Setting it
    // emits imageChanged, which the items that read the image follow.
    void setImage(const QImage& image);
    QImage image() const { return m_image; }

    // The calibration of the scene: setting it calibrates every item on the scene, and every item
    // started later with startTool.
    void setCalibration(const Calibration& calibration);
    Calibration calibration() const { return m_calibration; }
    bool hasCalibration() const { return m_hasCalibration; }

    // The folder of the document the scene is saved in or read from, empty when it has none: items
    // that refer to files (pictures) name them relative to it. A document loader sets it before it
    // creates the items, and a writer before it saves them.
    void setDocumentFolder(const QString& folder) { m_documentFolder = folder; }
    QString documentFolder() const { return m_documentFolder; }

    // Drawing: the item is added to the scene and receives the scene's mouse events (left button,
    // Shift constrains) until its release says creation is complete, or a double click or
    // Return/Enter completes it; endEdition then accepts it, left selected, or rejects it, removed
    // and deleted. Right button or Escape cancels. Every discarded item is announced by itemRejected.
    void startTool(AbstractBaseItem* item);
    AbstractBaseItem* itemInCreation() const;
    void cancelTool();

    // Adds the tools given, in their order above what the scene holds, in layers (ToolLayer) of
    // ToolLayer::capacityFor(their number): each is announced by itemAdded. An edit then costs
    // about the square root of their number, where Qt would visit every top-level item on each
    // repaint. Items already in a scene or inside another item are left alone.
    void addItems(const QList<AbstractBaseItem*>& items);
    // Removes the tools given from the scene, each announced by itemRemoved, and deletes them, with
    // the layers they leave empty; others are left alone. The time grows with their number where
    // removing them one by one from a large scene grows with its square.
    void deleteItems(const QList<AbstractBaseItem*>& items);

    // Picking: an item in creation made of other items (AbstractBaseItem::picksNeeded) is given the
    // item under each left click instead of the press; the releases, Return, Escape and the right
    // button then go as for items drawn by clicks. The picked items are selected while the picking
    // goes on. A click on nothing, or on an item the picker refuses, is announced by pickRefused.
    // The item under scenePos: the topmost library item whose shape (or child's: a grip, the label)
    // passes within tolerance scene units, except the item given.
    AbstractBaseItem* pickableItemAt(const QPointF& scenePos, double tolerance,
                                     const AbstractBaseItem* except = nullptr) const;

    // The origin that point items measure from and a host's cursor read-out shows; (0, 0) until an
    // anchor point (or the host) sets one.
    QPointF origin() const { return m_origin; }
    bool hasOrigin() const { return m_hasOrigin; }
    void setOrigin(const QPointF& origin);
    void clearOrigin();

    // Draws a translucent plate behind every measure label, light behind dark text and dark behind
    // light text, so that labels stay readable on any image; off by default.
    bool labelBackground() const { return m_labelBackground; }
    void setLabelBackground(bool on);

signals:
    // A tool (AbstractBaseItem::isSceneTool) entered or left the scene (addItem, removeItem, or a drawing
    // started); an item deleted on the scene only emits its own destroyed().
    void itemAdded(AbstractBaseItem* item);
    void itemRemoved(AbstractBaseItem* item);
    void orthoReferenceAngleChanged(double degrees);
    void itemAccepted(AbstractBaseItem* item);
    void itemRejected(const QString& type);
    void imageChanged();
    void pickRefused(AbstractBaseItem* item, const QString& reason);
    void originChanged(const QPointF& origin);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;

private:
    void finishCreation();
    void fitLabelsToZoom();
    void discard(AbstractBaseItem* item);
    void pick(QGraphicsSceneMouseEvent* event);

    QPointer<AbstractBaseItem> m_creating;
    QImage m_image;
    Calibration m_calibration;
    bool m_hasCalibration = false;
    QString m_documentFolder;
    double m_zoomX = 1.0;
    double m_zoomY = 1.0;
    bool m_verticalZoomInForce = false;
    double m_orthoAngle = 0.0;
    QPointF m_origin;
    bool m_hasOrigin = false;
    bool m_labelBackground = false;
};
