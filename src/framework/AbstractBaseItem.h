#pragma once

#include "Calibration.h"
#include "HostTypes.h"
#include "graphicsobjects_export.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QGraphicsObject>
#include <QHash>
#include <QIcon>
#include <QList>
#include <QPen>
#include <QPointF>
#include <QTransform>
#include <QVariant>

#include <initializer_list>

class AbstractScene;
class HoverEventItem;
class SimpleTextItem;
class QAction;
class QActionGroup;
class QDomElement;
class XmlAttributes;
class QGraphicsSceneMouseEvent;
class QMenu;

// Base of every measuring tool, construction measure and annotation: identity, pens and fonts,
// state flags, rotation state, points and handgrips, calibrated measures with their label, and the
// common part of the XML form.
class GRAPHICSOBJECTS_EXPORT AbstractBaseItem : public QGraphicsObject {
    Q_OBJECT
public:
    // Value a mouse step returns: whether the interactive creation goes on.
    enum typModeEdition { EditionIdle = 0, EditionCreating = 1, EditionComplete = 2 };
    Q_ENUM(typModeEdition)

    // Measure kinds: indices into both measure arrays.
    enum MesureKind { Centroid = 0, Dist1, Dist2, Ang1, Ang2, Aera, Perim, Rad1, Rad2, Diam, Cust, Reserved };
    static constexpr int NoMesure = 100;
    // The common parameter holding the measure a new item of the class shows, and its default;
    // a class that has one declares both again.
    static constexpr const char* MesureKey = nullptr;
    static constexpr int MesureDefault = 0;

    AbstractBaseItem(QGraphicsItem* parent, int id, void* context);
    ~AbstractBaseItem() override;

    // Keeps the centroid grip and its label at their pixel size under the scene's zoom factors and
    // the item's own rotation and scale; the scene calls it when its zoom changes.
    void fitCentroidGripToZoom();

    // The library item a graphics item is, or null.
    static AbstractBaseItem* fromGraphicsItem(QGraphicsItem* item);
    // The library item a graphics item is when it stands on its scene as a tool, else null.
    static AbstractBaseItem* sceneTool(QGraphicsItem* item);
    // A tool is top-level or held in a layer (ToolLayer); an item inside another item is a part.
    bool isSceneTool() const;

    // --- Non-virtual operations
    void setInternalLock(bool lock) { m_internalLock = lock; }
    bool getInternalLock() const { return m_internalLock; }
    void setLinkScene(AbstractScene* scene) { m_linkScene = scene; }
    AbstractScene* LinkScene() const { return m_linkScene; }
    // The scene set by setLinkScene, else the scene holding the item when it is an AbstractScene.
    AbstractScene* hostScene() const;
    bool previewed() const { return m_previewed; }
    bool locked() const { return m_locked; }
    bool constrained() const { return m_constrained; }
    bool textusage() const { return m_textusage; }
    bool generated() const { return m_generated; }
    void setgenerated(bool generated) { m_generated = generated; }
    bool creationStarted() const { return m_creationStarted; }
    void setcentroidPoint(QPointF p) { m_centroidPoint = p; }
    QPointF centroidPoint() const { return m_centroidPoint; }
    QPointF refRotationPoint() const { return m_refRotationPoint; }
    double currentRotation() const { return m_currentRotation; }
    // The accumulated rotation of the item's own transform steps (hides QGraphicsItem::rotation()).
    double rotation() const { return m_rotation; }
    double relativeRotation() const { return m_relativeRotation; }
    double currentSx() const { return m_currentSx; }
    double currentSy() const { return m_currentSy; }
    int transformIndex() const { return m_transformIndex; }
    double radius1() const { return m_radius1; }
    double radius2() const { return m_radius2; }
    void setmodeEdition(typModeEdition mode) { m_modeEdition = mode; }
    typModeEdition modeEdition() const { return m_modeEdition; }

    double calibratedDistance1() const;
    double calibratedDistance2() const;
    double calibrateValue(double v) const;
    double uncalibrateValue(double v) const;
    static void copyCommonData(AbstractBaseItem* dst, AbstractBaseItem* src);
    // How a host calibrates an item: the whole block at once. A change recomputes the calibrated
    // measures, refreshes the label and emits mesureChanged and mesureChangedEND.
    void setCalibration(const Calibration& calibration);
    Calibration calibration() const { return m_calibration; }
    // While deferred, the label's text and the centroid grip's place wait until deferral ends: a
    // reader sets an item's figures several times and the label need only be laid out once.
    void setRefreshDeferred(bool deferred);
    // How a pixel measure turns into a calibrated one.
    enum class MesureUnit { None, Length, Area, Angle };
    virtual MesureUnit mesureUnit(int i) const;
    // Length of the horizontal reference line the second angle is measured against.
    void setReferenceLength(int length) { m_referenceLength = length; }
    int referenceLength() const { return m_referenceLength; }

    int maxMesuresNum() const { return MesuresCount; }
    int mesureIndex() const { return m_mesureIndex; }
    QString mesure2QString(int i) const;
    // The text of measure i by the common table ("dist1:12.50*mm").
    QString formatTextMesure(int i) const;
    QString formatTextMesureP(int i) const;
    // Measure i as the item's label shows it: the common text, or the item's own names and units
    // (a hardness indentation shows "hardness:511.01*HV").
    QString displayedMesure(int i) const;
    // The parts of a measure text: every text the library shows (label, grip tooltip, linked text)
    // is assembled from them.
    struct MesureText {
        QString name;           // "dist1:"
        QString number;         // "12.50", empty for the centroid
        QString unit;           // "mm", empty where no unit is shown
        QString label() const;  // "dist1:12.50*mm"
        QString inText() const; // "dist1:12.50 mm", for running text
    };
    virtual MesureText mesureText(int i) const;

    QPen penCentroidText() const { return m_penCentroidText; }
    QPen pen() const { return m_pen; }
    QBrush brush() const { return m_brush; }
    QFont font() const { return m_font; }
    QFont font2() const { return m_font2; }

    HoverEventItem* handgripCentroid() const { return m_handgripCentroid; }
    // The item's grips, created on demand: an item keeps none while it is neither selected nor
    // being drawn.
    QList<HoverEventItem*> handgripItems() const;
    // The defining points, in scene coordinates (the item keeps them in its own).
    QList<QPointF> mline() const;
    SimpleTextItem* label() const { return m_label; }
    QString getLinkName() const { return m_linkName; }

    static QVariant getCommonParams(const QString& key, const QVariant& defaultValue);
    static void setCommonParams(QString key, QVariant& value);

    // --- Virtual operations, QObject side
    virtual AbstractBaseItem* clone(int id) = 0;
    virtual long mesuresSupport() const { return 0; }
    virtual const QString& getType() const { return m_type; }
    virtual const unsigned long& getSubType() const { return m_subType; }
    virtual const QString& getGUIDname() const { return m_guidName; }
    virtual const unsigned long& getGUID() const { return m_guid; }
    virtual void setGUIDname(const QString& name) { m_guidName = name; }
    virtual void setGUID(const unsigned long& guid) { m_guid = guid; }
    virtual QString getSimpleHELP();
    virtual void edit();
    virtual void subEdit() {}
    virtual QPointF centroid();
    virtual void setForcePainting() {}
    virtual void setPenCentroidText(const QPen& pen) { m_penCentroidText = pen; }
    virtual void setPen(const QPen& pen);
    virtual void setBrush(const QBrush& brush) { m_brush = brush; }
    virtual void setFont(const QFont& font);
    virtual void transmitFont(const QFont& font);
    virtual void transmitFontColor(const QColor& color);
    virtual void setPreviewstate(const bool& state) { m_previewed = state; }
    virtual void setLockstate(const bool& state);
    virtual void setConstrainstate(const bool& state) { m_constrained = state; }
    virtual void setTextUsage(const bool& state) { m_textusage = state; }
    virtual void setSpecificparameters(QString, void*) {}
    virtual QLineF qlinef(int) { return QLineF(); }
    virtual long isBuilder() const { return 0; }
    // Constant flag set of the item's kind (5 lines and distances, 0x70 circles, 0x200 point lists).
    virtual long mesuresFlag() const = 0;
    virtual double accessmesure(unsigned i) const;
    virtual double accessmesureP(unsigned i) const;

public slots:
    void forceSelection();
    void forceSelectionNoMove();
    virtual bool computeMesures(void*) { return false; }
    virtual QRectF itemRectF(void*) { return boundingRect(); }
    virtual void fixupForTransform(_AUTOPOINTPARAMS&, int, void*) {}
    virtual void fixupForSceneChange(const QRectF&, void*) {}
    virtual void videoStarted(void*, cameraInfos*) {}
    virtual void videoStopped(void*) {}
    virtual void pressPoint(const QPointF&) {}
    virtual void releasePoint(const QPointF&) {}
    virtual void updatePoint(const QPointF&) {}
    virtual void initRotationReferencePoint(const QPointF& p) { m_refRotationPoint = p; }
    virtual void validRotationReferencePoint(const QPointF&) {}

public:
    virtual bool computeMesures(QList<AbstractBaseItem*> items, void* arg);
    virtual void mouseMove(QGraphicsSceneMouseEvent* event) = 0;
    virtual void mousePress(QGraphicsSceneMouseEvent* event) = 0;
    // Pure, with a body that derived items may call: it answers the current edition mode.
    virtual typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) = 0;
    virtual bool endEdition() { return true; }
    virtual void setTransformIndex(int index) { m_transformIndex = index; }
    // The XML form, either on a QDomElement or on a flat attribute list (what documents of many
    // items use). Each pair by default goes through the other: an item overrides one of them.
    virtual bool toXml(QDomElement& e) const;
    virtual bool fromXml(const QDomElement& e);
    virtual bool toAttributes(XmlAttributes& attributes) const;
    virtual bool fromAttributes(const XmlAttributes& attributes);
    virtual QAction* createMenuAction(QMenu* menu, const QIcon& icon, const QString& text, bool checked,
                                      QActionGroup* group, const QVariant& data);
    virtual void rotate(double) {}
    virtual QTransform makeRotation(double angle, const QPointF& c);
    virtual QTransform makeRotation(double angle, const QRectF& r);
    virtual QPainterPath createPath(QRectF) { return QPainterPath(); }

    // A menu entry: its text (translated in the item's class context) and its action data.
    struct MenuEntry {
        const char* text;
        int data;
    };
    // Menus are built and applied in two halves, so that a choice made in code takes the same path
    // as a click: fill*Menu adds the actions, apply*Menu receives the chosen action's data.
    // The context menu opens on a right click, the edit menu from edit() (or a double click).
    // By default the context menu offers mesureMenu() and a choice is shown and remembered under
    // the class's measure key.
    virtual void fillContextMenu(QMenu* menu);
    virtual void applyContextMenu(int data);
    virtual QList<MenuEntry> mesureMenu() const { return {}; }
    virtual void fillEditMenu(QMenu*) {}
    virtual void applyEditMenu(int) {}

    // One grip of the item: its id (a point index, or a rectangle position for grips on a frame),
    // its kind (HoverEventItem::Kind) and its place in item coordinates. The centroid grip is not a
    // handle: it carries the label and never reaches the handle calls, so an id of 8 is free for a
    // ninth point.
    struct Handle {
        int id;
        int kind;
        QPointF pos;
    };
    // The grips as the geometry asks for them now.
    virtual QList<Handle> handles() const { return {}; }
    // A grip's drag, as one call per step with the grip's id. Press and release emit
    // mesureChangedSTART and mesureChangedEND unless overridden.
    virtual void handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers);
    virtual void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers);
    virtual void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers);
    // Whether the item is drawn click by click: its releases then say whether creation goes on
    // (EditionCreating), and a double click or Return/Enter ends it through completeCreation(),
    // whose answer is the next mode. Other items are complete at the release of their drag.
    virtual bool drawnByClicks() const { return false; }
    // Whether the measures read from XML are the ones shown, as they were saved: a reader then does
    // not compute them again from the geometry (which may be saved rounded).
    virtual bool keepsReadMesures() const { return false; }
    virtual typModeEdition completeCreation() { return EditionComplete; }
    // Items made of other items of the scene (the construction measures) are drawn by picking: the
    // scene hands them the item under each click instead of the press, and each pick answers
    // EditionCreating until the item has its picksNeeded() items. A pick the item cannot use leaves
    // the mode as it was and says why in refusal.
    virtual int picksNeeded() const { return 0; }
    virtual typModeEdition pickItem(AbstractBaseItem* item, const QPointF& scenePos, QString* refusal);

    // A reference to the item that other items keep through save and load (GUID names repeat): an
    // identifier given on first demand and written as the attribute "uid" once the item has one. A
    // copy made through the XML form is another item and starts without one.
    QString uid() const { return m_uid; }
    QString ensureUid();
    // Items that refer to others by their uid (constructions, anchors) find them again after a
    // document is loaded; byUid holds every loaded item. False when the item cannot stand without
    // an item that is missing; missing receives one text per missing item, naming it.
    virtual bool resolveLinks(const QHash<QString, AbstractBaseItem*>& byUid, QStringList* missing);

    // Linking of a text annotation to a measuring item.
    virtual void associate(AbstractBaseItem* item, void*);
    virtual void unassociate(AbstractBaseItem* item, void*);
    virtual void setLinkName(AbstractBaseItem* item, QString& name);

    // --- QGraphicsItem side
    QRectF boundingRect() const override { return QRectF(); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}

signals:
    void mesureChangedSTART(void* item);
    void mesureChangedEND(void* item);
    void mesureChanged(void* item);
    void imageChanged(QString name, bool);
    void itemChanged(void* item, QString what, void* data);
    void transformIndex(void* item, int index, bool);
    void transformIndex(void* item, int index);
    void transformFinished(void* item, void* data);
    void objectDeleted(void* item, QString type, unsigned long guid);

protected:
    static constexpr int MesuresCount = 12;

    virtual bool computeMesures(AbstractBaseItem*, AbstractBaseItem*, AbstractBaseItem*, void*) {
        return false;
    }
    virtual void commonPaintCentroidText(QPainter* painter);
    virtual void commonUpdateText();
    virtual void commonWriteXML(XmlAttributes& e) const;
    virtual void commonReadXML(const XmlAttributes& e);
    void commonWriteXML(QDomElement& e) const;
    void commonReadXML(const QDomElement& e);
    virtual void commonPostReadXML() {}
    virtual void commonMesuresWriteXML(XmlAttributes& e) const;
    virtual void commonMesuresReadXML(const XmlAttributes& e);
    void commonMesuresWriteXML(QDomElement& e) const;
    void commonMesuresReadXML(const QDomElement& e);
    virtual void setupCentroidHandgrip();
    virtual void showHandgripCentroid();
    virtual void hideHandgripCentroid();
    virtual void showHandgrips();
    virtual void hideHandgrips();
    virtual void updateHandgrips();
    virtual void lockunlockHandgrips(bool lock);
    virtual void computeGUID(const QString& name, int index);

    QString mesureIndexToName(int i, double v) const;
    // The measure text of kind i for value v by the base's table.
    MesureText tableMesureText(int i, double v) const;
    // Calibrates the listed measures from their pixel values, each by its unit's rule.
    void calibrateMesures(std::initializer_list<int> kinds);
    // What a calibration change does: recompute and announce. Items with other rules override it.
    virtual void recalibrate();
    // Places the existing grips where handles() says, adding or dropping grips when their number
    // changed; does nothing while the item has no grips.
    void refreshHandgrips();
    // The grip with this id, if the item has its grips now.
    HoverEventItem* handgrip(int id) const;
    // Locks the grips without the movable flag that lockunlockHandgrips gives them.
    void lockHandgripsOnly(bool lock);
    // Points in item coordinates mapped to the scene, and back.
    QList<QPointF> toScene(const QList<QPointF>& points) const;
    QList<QPointF> fromScene(const QList<QPointF>& points) const;
    // Identity of a new item, called by the most derived constructor: the class name as type, the
    // GUID from it and the id, and "<class><id>" as GUID name unless one was given; with a measure
    // key, the measure shown is the one the common parameters remember.
    void initIdentity(int id, const char* mesureKey = nullptr, int mesureDefault = 0);
    // The host record a constructor was given, or null; a record marks the item started and
    // generated.
    const _AUTOPOINTPARAMS* startGenerated(void* context);
    // Both measure arrays of another item.
    void takeMesuresFrom(const AbstractBaseItem* source);
    // Centre of a child's scene bounding rectangle, in item coordinates.
    QPointF childCentre(const QGraphicsItem* child) const;
    // Creates the centroid grip and the label if needed and puts the grip on centroid().
    void placeCentroidHandgrip();
    // A measure picked in a menu: shown, remembered under commonKey for the next item, announced.
    void chooseMesure(int index, const QString& commonKey);
    // One checkable action per entry, checked where the entry's data equals checked.
    void addMenuEntries(QMenu* menu, const QList<MenuEntry>& entries, int checked);
    void copyDataTo(AbstractBaseItem* other);
    double distancePointToLine(QPointF p, QPointF a, QPointF b) const;
    void insertPoint(int index, const QPointF& p, QList<QPointF>& points);
    void deletePoint(int index, QList<QPointF>& points);
    bool isPointSelected(const QPointF& p, QList<QPointF>& points, int& index, double tolerance);
    bool createPointIfNeeded(const QPointF& p, QList<QPointF>& points, bool closed);

    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;
    // Where the context menu opens, and whether it (or the edit menu) opens while the item is a preview.
    virtual QPoint menuPosition(QGraphicsSceneContextMenuEvent* event) const;
    virtual bool menuInPreview() const { return true; }
    virtual bool editMenuInPreview() const { return false; }
    void keyPressEvent(QKeyEvent*) override {}
    void keyReleaseEvent(QKeyEvent*) override {}
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override {}
    void wheelEvent(QGraphicsSceneWheelEvent*) override {}
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

    // State shared with the derived items.
    typModeEdition m_modeEdition = EditionCreating;
    QList<QPointF> m_mline;
    mutable QList<HoverEventItem*> m_handgripItems;
    HoverEventItem* m_handgripCentroid = nullptr;
    QPointF m_centroidPoint;
    QPointF m_refRotationPoint;
    double m_currentRotation = 0;
    double m_rotation = 0;
    double m_relativeRotation = 0;
    double m_currentSx = 0;
    double m_currentSy = 0;
    double m_radius1 = 0;
    double m_radius2 = 0;
    QPen m_penCentroidText;
    QPen m_pen;
    QBrush m_brush;
    QFont m_font;
    QFont m_font2;
    QString m_type;
    QString m_guidName;
    unsigned long m_subType = 0;
    unsigned long m_guid = 0;
    int m_mesureIndex = 0;
    int m_transformIndex = 0;
    bool m_creationStarted = false;
    bool m_previewed = false;
    bool m_constrained = false;
    bool m_locked = false;
    bool m_internalLock = false;
    bool m_generated = false;
    bool m_textusage = true;
    QString m_linkName;
    SimpleTextItem* m_label = nullptr;
    Calibration m_calibration;
    double m_mesure[MesuresCount] = {};
    double m_mesureP[MesuresCount] = {};
    QList<QPointF> m_auxPoints;
    const char* m_mesureKey = nullptr;
    AbstractScene* m_linkScene = nullptr;
    int m_referenceLength = 0;
    QString m_uid;

private:
    friend class HoverEventItem;
    void materialiseHandgrips() const;
    void releaseHandgrips();
    HoverEventItem* createHandgrip(const Handle& handle) const;
    void gripEvent(HoverEventItem* grip, int phase, const QPointF& scenePos, Qt::KeyboardModifiers modifiers);

    bool m_gripsLocked = false;
    bool m_gripsMovable = false;
    bool m_gripFontSet = false;
    bool m_refreshDeferred = false;
    bool m_labelPending = false;
    bool m_centroidPending = false;
    QColor m_gripFontColor;
};
