#pragma once

#include "AbstractBaseItem.h"

// The smallest concrete item: it exposes what only derived items can reach, so that tests can
// drive the base through its public and protected interface.
class TestItem : public AbstractBaseItem {
    Q_OBJECT
public:
    explicit TestItem(QGraphicsItem* parent = nullptr, int id = 0, void* context = nullptr);

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 5; }
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override { return accept; }
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override { chooseMesure(data, QStringLiteral("test_mesureIndex")); }
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    QRectF boundingRect() const override { return QRectF(0, 0, 100, 50); }
    QPointF centroid() override { return boundingRect().center(); }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override;

    // Test access to the protected parts of the base.
    void setMesure(int i, double calibrated, double pixels);
    // A grip the item asks for from now on.
    void addGrip(int id, int kind, const QPointF& pos = QPointF());
    QList<Handle> handles() const override { return m_handles; }
    bool drawnByClicks() const override { return pressesToComplete > 1; }
    int leaderLinesPainted() const { return m_leaderLines; }
    using AbstractBaseItem::commonUpdateText;
    using AbstractBaseItem::createPointIfNeeded;
    using AbstractBaseItem::isPointSelected;
    using AbstractBaseItem::mesureIndexToName;
    using AbstractBaseItem::setupCentroidHandgrip;
    using AbstractBaseItem::updateHandgrips;
    void setMesureIndex(int i) { m_mesureIndex = i; }

    // Drawing: the presses and moves received, how many presses complete it, what endEdition says.
    QList<QPointF> presses;
    QList<QPointF> moves;
    int pressesToComplete = 1;
    bool accept = true;

    int pressed = 0;
    int updated = 0;
    int released = 0;

public slots:
    void pressPoint(const QPointF&) override { ++pressed; }
    void updatePoint(const QPointF&) override { ++updated; }
    void releasePoint(const QPointF&) override { ++released; }

private:
    int m_leaderLines = 0;
    QList<Handle> m_handles;
};
