#pragma once

#include "FrameItem.h"
#include "ItemTypes.h"

// A face for quick pass / fail notes on inspection images: happy, neutral or sad, drawn in the
// item's pen inside its frame.
class GRAPHICSOBJECTS_EXPORT SmileyItem : public FrameItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(SmileyItem)
    enum Mood { Happy = 0, Neutral = 1, Sad = 2 };

    int mood() const { return m_mood; }
    void setMood(int mood);
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override { setMood(data); }

    // The face of a mood inside r: its outline, two eyes and the mouth.
    static QPainterPath face(const QRectF& r, int mood);

protected:
    QSizeF clickSize() const override { return {48, 48}; }
    void frameChanged() override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    int m_mood = Happy;
};
