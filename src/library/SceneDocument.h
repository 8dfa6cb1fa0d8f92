#pragma once

#include "Calibration.h"
#include "graphicsobjects_export.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStringList>

class AbstractBaseItem;
class AbstractScene;
class DocumentReader;
class QIODevice;

// What an item is to another item of the same document, by the target's reference.
struct SceneLink {
    QString role;
    QString target;
    bool operator==(const SceneLink& other) const { return role == other.role && target == other.target; }
};

// A saved scene: the image the items measure (a file beside the document or embedded as PNG), the
// scene's size and calibration, the common parameters, one element per item in scene order, and
// the links between items. Items are referred to by a reference of the document's own, kept from
// one save to the next: GUID names repeat across documents and copies.
//
// <scene version="2" width= height= unit= factor= decimals=>
//   <image path="relative/to/the/document.png"/>  or  <image encoding="base64">PNG data</image>
//   <commonparams .../>
//   <item class="LineItem" ref="i1" ...what toXml wrote.../>
//   <links><link item="i2" role="text" target="i1"/></links>
// </scene>
//
// Documents without a version (the first gotool scenes) hold no image, references nor links: a text
// finds the item it follows by its link name, when exactly one item carries that GUID name.
class GRAPHICSOBJECTS_EXPORT SceneDocument {
public:
    static constexpr int Version = 2;
    // Limits on what a document may hold or ask for; beyond them it is refused as a whole.
    static constexpr qint64 MaxFileBytes = qint64(256) << 20;
    static constexpr int MaxDepth = 64;
    static constexpr int MaxItems = 250000;
    static constexpr int MaxSide = 32768;
    static constexpr qint64 MaxPixels = qint64(1) << 28;
    static constexpr double MinFactor = 1e-12;
    static constexpr double MaxFactor = 1e12;
    static constexpr int MaxDecimals = 12;

    // A text annotation that shows and follows the target's measure (eTextItem::associate).
    static QString textLinkRole() { return QStringLiteral("text"); }
    // Whether an image of that size stays within MaxSide on each side and MaxPixels in all.
    static bool sizeAllowed(const QSize& size);

    // Reads the document and recreates its items in the scene, adding them in document order after
    // giving the scene the document's size and image; they are selectable, and movable unless locked. Returns
    // false, with errorString() and nothing added, when the document is refused as a whole (unreadable, not
    // well-formed, beyond a limit, absurd calibration or size). Items of unknown class, damaged items and
    // links to missing items are skipped and told in messages(); the rest is kept.
    bool open(const QString& fileName, AbstractScene* scene);
    // The same from a device; a linked image is looked for in folder (not at all when it is empty),
    // which becomes the scene's document folder before the items are made. Once every item is
    // made, those that keep others by uid are linked again; one left without an item it needs is
    // removed and told in messages().
    bool read(QIODevice* device, AbstractScene* scene, const QString& folder = QString());
    // Writes the scene's items (its tools, in stacking order) with the document's image,
    // calibration and links through a temporary file renamed over fileName, so that a failed save
    // leaves the previous file whole. Returns false with errorString() on failure.
    bool save(const QString& fileName, AbstractScene* scene);
    // The same onto a device (an undo snapshot, a copy); a linked image is named relative to folder,
    // which, when given, becomes the scene's document folder before the items write themselves.
    bool write(QIODevice* device, AbstractScene* scene, const QString& folder = QString());

    QString errorString() const { return m_error; }
    QStringList messages() const { return m_messages; }
    // The version of the document read; Version for one that was never read.
    int version() const { return m_version; }

    Calibration calibration() const { return m_calibration; }
    void setCalibration(const Calibration& calibration) { m_calibration = calibration; }
    // The scene's size; empty when the document does not say.
    QSize size() const { return m_size; }
    void setSize(const QSize& size) { m_size = size; }

    QImage image() const { return m_image; }
    // The image file as the document names it (relative to the document), empty when embedded.
    QString imagePath() const { return m_imagePath; }
    // The absolute path of a linked image, empty when embedded or when there is none.
    QString imageFilePath() const { return m_imageFile; }
    // A linked image that could not be read, or an embedded one that could not be decoded.
    QString imageError() const { return m_imageError; }
    // With a file path the document refers to that file; without, it embeds the image.
    void setImage(const QImage& image, const QString& filePath = QString());

    // The items read or saved, in document order (items deleted since are left out).
    QList<AbstractBaseItem*> items() const;
    // The item's reference in this document, given one when it has none yet; the item then gets a
    // uid (AbstractBaseItem::ensureUid) if it had none. An item made again with the uid of one
    // that went (an undone deletion) takes back that item's reference.
    QString reference(AbstractBaseItem* item);
    AbstractBaseItem* item(const QString& reference) const;

    // Links item to target in role, replacing the item's link in that role; a text role also
    // associates the text with the target.
    void setLink(AbstractBaseItem* item, const QString& role, AbstractBaseItem* target);
    QList<SceneLink> links(AbstractBaseItem* item) const;
    AbstractBaseItem* linkTarget(AbstractBaseItem* item, const QString& role) const;

private:
    struct Parsed;
    void reset();
    bool parse(QIODevice* device, Parsed& parsed);
    bool parse(DocumentReader& reader, Parsed& parsed);
    void loadImage(const Parsed& parsed, const QString& folder);
    void createItems(Parsed& parsed, AbstractScene* scene);
    // Items that keep others by uid (constructions, anchors) find them; those left without one go.
    void linkItems();
    void resolveLinks(const Parsed& parsed);
    void refreshLinks(const QList<AbstractBaseItem*>& sceneItems);
    QString newReference();
    void bind(AbstractBaseItem* item, const QString& reference);
    QString describe(AbstractBaseItem* item) const;
    bool writeXml(QIODevice* device, const QString& folder, const QList<AbstractBaseItem*>& sceneItems);

    struct Entry {
        QPointer<AbstractBaseItem> item;
        QString reference;
    };
    QList<Entry> m_entries; // document order
    QHash<QString, int> m_byReference;
    QHash<const AbstractBaseItem*, int> m_byItem;
    QHash<QString, QList<SceneLink>> m_links;
    QHash<QString, QString> m_referenceByUid; // kept for the items that went
    int m_nextReference = 1;

    Calibration m_calibration;
    QSize m_size;
    QImage m_image;
    QString m_imagePath;
    QString m_imageFile;
    QString m_imageError;
    int m_version = Version;
    QString m_error;
    QStringList m_messages;
};
