#pragma once

#include "FrameItem.h"
#include "ItemTypes.h"

#include <QImage>

// A picture placed on the scene: laid by a click at its own size (or drawn by a drag), scaled by
// its corner grips, turned by the grip above it, shown at 100, 75, 50 or 25 % opacity. It is saved
// with its file's path, relative to the scene's document folder when there is one, and, when
// embedded (or when it has no file), as PNG data in base64, so that a document can travel alone.
// A picture that cannot be read leaves a placeholder box with the path, and warning() says why.
class GRAPHICSOBJECTS_EXPORT PixmapItem : public FrameItem {
    Q_OBJECT
public:
    // A context record may name the file (texts["file"]) and the place (rect, else center as the top-left
    // corner).
    GRAPHICSOBJECTS_ITEM(PixmapItem)
    // The index transformIndex carries at each grip step; its flag is set on the step that ends a drag.
    enum TransformStep { ScaleStep = 1, RotationStep = 2 };
    // Menu data: an opacity entry carries minus its percentage.
    enum MenuCommand { ToggleEmbedded = -1 };
    // Pictures beyond these are refused (pixels a side, pixels in all, file bytes).
    static const int MaxSide;
    static const qint64 MaxPixels;
    static const qint64 MaxFileBytes;

    // Reads the picture of a file, relative to the scene's document folder when it has one; false,
    // with warning() set and the placeholder shown, when it cannot.
    bool setFileName(const QString& fileName);
    QString fileName() const { return m_fileName; }
    // A picture without a file, embedded when saved; false for a null picture or one beyond the limits.
    bool setImage(const QImage& image);
    QImage image() const { return m_image; }
    QString warning() const { return m_warning; }
    // Whether the picture is saved in the document; always when it has no file.
    bool isEmbedded() const { return m_embedded || m_fileName.isEmpty(); }
    void setEmbedded(bool embedded);
    int opacityPercent() const { return m_opacity; }
    void setOpacityPercent(int percent);

    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QSizeF naturalSize() const override { return m_image.size(); }
    void transformStep(int grip, bool last) override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    QImage m_image;
    QString m_fileName;
    QString m_warning;
    // The embedded PNG as read or first written, so that saving again writes the same bytes.
    mutable QByteArray m_png;
    bool m_embedded = false;
    int m_opacity = 100;
};
