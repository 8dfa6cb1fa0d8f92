#pragma once

#include "AbstractBaseItem.h"
#include "ItemTypes.h"
#include "graphicsobjects_export.h"

#include <QPointer>

#include "TextItem.h"

class QGraphicsRectItem;

// A text annotation typed in place: centred on its centre point while it grows, drawn over a
// background rectangle, rotated by its corner grips, and optionally linked to a measuring item
// whose measure it shows and follows.
class GRAPHICSOBJECTS_EXPORT eTextItem : public AbstractBaseItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(eTextItem)
    // Context menu commands.
    enum MenuCommand { EditInWindow = -1, Unlink = -2 };

    ~eTextItem() override;

    QString text() const;
    TextItem* textItem() const { return m_text; }
    QGraphicsRectItem* background() const { return m_background; }
    QPointF centerPoint() const { return m_center; }
    void setCenterPoint(const QPointF& center);
    bool isEditing() const { return data(0).toBool(); }
    // Set by every change of the text; cleared only by the host.
    bool textModified() const { return m_modified; }
    void setTextModified(bool modified) { m_modified = modified; }
    void activateEditor();

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0; }
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override;
    void setFont(const QFont& font) override;
    void rotate(double angle) override;
    QPointF centroid() override;
    GRAPHICSOBJECTS_ITEM_DRAWING
    // The corner grips turn the text; turning it is no measure edit and announces nothing.
    void handlePressed(int, const QPointF&, Qt::KeyboardModifiers) override {}
    void handleReleased(int, const QPointF&, Qt::KeyboardModifiers) override {}

    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;

    bool toAttributes(XmlAttributes& e) const override;
    bool fromAttributes(const XmlAttributes& e) override;

    void associate(AbstractBaseItem* item, void* arg) override;
    void unassociate(AbstractBaseItem* item, void* arg) override;
    void setLinkName(AbstractBaseItem* item, QString& name) override;
    // The item whose measure the text follows, null when unlinked or once that item is gone.
    AbstractBaseItem* linkedItem() const { return m_source; }

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

public slots:
    void setText(void* source = nullptr);
    void focusOut();
    void textChanged();
    QRectF itemRectF(void* inScene) override;
    void initRotationReferencePoint(const QPointF& p) override;

protected:
    void focusInEvent(QFocusEvent* event) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private slots:
    void textMoved();
    void textSelected();
    void sourceDestroyed();
    void textDestroyed();

private:
    QRectF textRect() const;
    void syncBackground();
    void recenter();
    void disconnectSource(AbstractBaseItem* item);

    QGraphicsRectItem* m_background = nullptr;
    // Guarded: a host may destroy the text before the item, which then goes too.
    QPointer<TextItem> m_text;
    QPointF m_center;
    QPointer<AbstractBaseItem> m_source;
    bool m_modified = false;
    bool m_justCreated = false;
    bool m_recentering = false;
};
