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

    double horizontalZoom() const { return m_zoomX; }
    double verticalZoom() const { return m_zoomY; }
    // When false the horizontal factor stands for both directions.
    bool verticalZoomInForce() const { return m_verticalZoomInForce; }
    void setZoomFactors(double horizontal, double vertical);
    void setVerticalZoomInForce(bool inForce) { m_verticalZoomInForce = inForce; }

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

signals:
    void orthoReferenceAngleChanged(double degrees);
    void itemAccepted(AbstractBaseItem* item);
    void itemRejected(const QString& type);
    void imageChanged();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;

private:
    void finishCreation();
    void discard(AbstractBaseItem* item);

    QPointer<AbstractBaseItem> m_creating;
    QImage m_image;
    Calibration m_calibration;
    bool m_hasCalibration = false;
    QString m_documentFolder;
    double m_zoomX = 1.0;
    double m_zoomY = 1.0;
    bool m_verticalZoomInForce = false;
    double m_orthoAngle = 0.0;
};
