#include "SceneDocument.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "CommonParams.h"
#include "DocumentReader.h"
#include "ItemFactory.h"
#include "ItemLinks.h"
#include "XmlAttributes.h"
#include "eTextItem.h"

#include <QBuffer>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>

namespace {

// Every element of a document counts: items, their children, links and the few header elements.
constexpr int MaxElements = 4 * SceneDocument::MaxItems + 16;
// Beyond this many, problems are counted rather than listed.
constexpr int MaxMessages = 100;

// A number attribute: absent gives fallback; present, it must be a finite number.
bool readNumber(const DocumentReader& r, const char* name, double fallback, double& value, QString& error) {
    const QString text = r.attribute(name).trimmed();
    if (text.isEmpty()) {
        value = fallback;
        return true;
    }
    bool ok = false;
    value = text.toDouble(&ok);
    if (ok && std::isfinite(value))
        return true;
    error = QStringLiteral("%1=\"%2\" is not a finite number").arg(QLatin1String(name), text.left(40));
    return false;
}

AbstractBaseItem* createItem(QString className) {
    AbstractBaseItem* item = XBaseItemToolCreate(className, nullptr, 0, nullptr);
    return item ? item : XBaseItemMesureCreate(className, nullptr, 0, nullptr);
}

// The attribute names of an element, sorted so that saving the same scene twice gives the same file.
// names holds those of the previous element of the same kind: items of a class write the same
// names, which are then looked up rather than sorted again.
void sortedNames(const XmlAttributes& e, QStringList& names) {
    bool same = e.size() == names.size();
    for (int i = 0; same && i < names.size(); ++i)
        same = e.hasAttribute(names.at(i));
    if (same)
        return;
    names.clear();
    for (qsizetype i = 0; i < e.size(); ++i)
        names << e.name(i);
    std::sort(names.begin(), names.end());
}

// Appends text the writer would copy as it is (printable ASCII without markup characters) and
// answers true; leaves out any other and answers false.
bool appendPlain(QByteArray& out, QStringView text) {
    const qsizetype start = out.size();
    out.resize(start + text.size());
    char* to = out.data() + start;
    for (const QChar c : text) {
        const char16_t u = c.unicode();
        if (u < 0x20 || u > 0x7e || u == u'<' || u == u'>' || u == u'&' || u == u'"') {
            out.truncate(start);
            return false;
        }
        *to++ = char(u);
    }
    return true;
}

// Plain attributes go straight to the device as the writer would put them, which spares the
// writer's encoder its cost per call; any other goes through the writer, which alone escapes. The
// writer holds nothing back between calls, so both may write in turn.
bool writeAttributes(QXmlStreamWriter& w, const XmlAttributes& e, const QStringList& skipped,
                     QStringList& names) {
    sortedNames(e, names);
    QIODevice* device = w.device();
    QByteArray plain;
    bool written = true;
    const auto flush = [&] {
        if (!plain.isEmpty())
            written = device->write(plain) == plain.size() && written;
        plain.clear();
    };
    for (const QString& name : std::as_const(names)) {
        if (skipped.contains(name))
            continue;
        const QStringView value = e.view(name);
        const qsizetype mark = plain.size();
        plain += ' ';
        if (device && appendPlain(plain, name) && (plain += "=\"", appendPlain(plain, value))) {
            plain += '"';
            continue;
        }
        plain.truncate(mark);
        if (device)
            flush();
        w.writeAttribute(name, value.toString());
    }
    if (device)
        flush();
    return written;
}

} // namespace

struct SceneDocument::Parsed {
    struct Item {
        QString className;
        QString guidName;
        QString reference;
        qint64 line = 0;
        XmlAttributes attributes;
    };
    struct Link {
        QString item;
        QString role;
        QString target;
        qint64 line = 0;
    };
    QDomDocument dom;
    QList<Item> items;
    QList<Link> links;
    QDomElement commonParams;
    QString imagePath;
    QString imageText;
    bool imageEmbedded = false;
    QSize size;
    Calibration calibration;
    int version = 1;
    QStringList messages;
};

bool SceneDocument::sizeAllowed(const QSize& size) {
    return size.width() > 0 && size.height() > 0 && size.width() <= MaxSide && size.height() <= MaxSide &&
           qint64(size.width()) * size.height() <= MaxPixels;
}

void SceneDocument::reset() {
    *this = SceneDocument();
}

bool SceneDocument::open(const QString& fileName, AbstractScene* scene) {
    reset();
    const QFileInfo info(fileName);
    if (!info.exists()) {
        m_error = QStringLiteral("%1: no such file").arg(fileName);
        return false;
    }
    if (!info.isFile()) {
        m_error = QStringLiteral("%1: not a regular file").arg(fileName);
        return false;
    }
    if (info.size() > MaxFileBytes) {
        m_error =
            QStringLiteral("%1: not opened: it is larger than %2 MB").arg(fileName).arg(MaxFileBytes >> 20);
        return false;
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        m_error = QStringLiteral("%1: cannot read: %2").arg(fileName, file.errorString());
        return false;
    }
    if (!read(&file, scene, info.absolutePath())) {
        m_error = fileName + QStringLiteral(": ") + m_error;
        return false;
    }
    return true;
}

bool SceneDocument::read(QIODevice* device, AbstractScene* scene, const QString& folder) {
    reset();
    Parsed parsed;
    if (!parse(device, parsed))
        return false;
    m_version = parsed.version;
    m_calibration = parsed.calibration;
    m_size = parsed.size;
    m_messages = parsed.messages;
    loadImage(parsed, folder);

    if (m_size.isValid())
        scene->setSceneRect(QRectF(QPointF(0, 0), QSizeF(m_size)));
    if (!m_image.isNull())
        scene->setImage(m_image);
    if (!parsed.commonParams.isNull())
        fromCommonParams(parsed.commonParams);
    // Pictures of the items are named relative to the document.
    scene->setDocumentFolder(folder);
    createItems(parsed, scene);
    linkItems();
    resolveLinks(parsed);
    if (m_messages.size() > MaxMessages) {
        const int more = int(m_messages.size()) - MaxMessages;
        m_messages = m_messages.mid(0, MaxMessages);
        m_messages << QStringLiteral("%1 more problems not listed").arg(more);
    }
    return true;
}

bool SceneDocument::parse(QIODevice* device, Parsed& parsed) {
    // A document that can be held is read from memory by the scanner; what it does not take, and a
    // stream, go through QXmlStreamReader.
    if (device->isSequential() || device->size() - device->pos() > MaxFileBytes) {
        DocumentReader r(device, MaxDepth, MaxElements, MaxFileBytes);
        return parse(r, parsed);
    }
    // A document already in memory is read where it lies.
    QByteArray bytes;
    if (auto* memory = qobject_cast<QBuffer*>(device)) {
        bytes = memory->pos() == 0 ? memory->data() : memory->data().sliced(memory->pos());
        memory->seek(memory->size());
    } else {
        bytes = device->readAll();
    }
    DocumentReader fast(QByteArrayView(bytes), MaxDepth, MaxElements, MaxFileBytes);
    const bool done = parse(fast, parsed);
    if (!fast.unsupported())
        return done;
    parsed = Parsed();
    m_error.clear();
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    DocumentReader r(&buffer, MaxDepth, MaxElements, MaxFileBytes);
    return parse(r, parsed);
}

bool SceneDocument::parse(DocumentReader& r, Parsed& parsed) {
    while (r.next() && !r.isStartElement()) {
    }
    if (!r.isStartElement()) {
        m_error = r.startError();
        return false;
    }
    if (r.name() != QLatin1String("scene")) {
        m_error = QStringLiteral("not a scene document: the root element is <%1>, not <scene>")
                      .arg(r.name().toString().left(40));
        return false;
    }

    const QString versionText = r.attribute("version");
    if (!versionText.isEmpty()) {
        bool ok = false;
        parsed.version = versionText.toInt(&ok);
        if (!ok || parsed.version < 1) {
            m_error = QStringLiteral("not opened: version=\"%1\" is not a document version")
                          .arg(versionText.left(40));
            return false;
        }
        if (parsed.version > Version)
            parsed.messages << QStringLiteral(
                                   "written by a newer version (%1): what this version (%2) does not "
                                   "know is skipped")
                                   .arg(parsed.version)
                                   .arg(Version);
    }

    QString error;
    double width = 0;
    double height = 0;
    double factor = 1;
    double decimals = 2;
    if (!readNumber(r, "width", 0, width, error) || !readNumber(r, "height", 0, height, error) ||
        !readNumber(r, "factor", 1, factor, error) || !readNumber(r, "decimals", 2, decimals, error)) {
        m_error = QStringLiteral("not opened: ") + error;
        return false;
    }
    if (width != 0 || height != 0) {
        // Both within the limits before they are rounded to whole pixels.
        const bool inRange = width > 0 && height > 0 && width <= MaxSide && height <= MaxSide;
        parsed.size = inRange ? QSize(int(std::ceil(width)), int(std::ceil(height))) : QSize();
        if (!sizeAllowed(parsed.size)) {
            m_error =
                QStringLiteral("not opened: the scene size %1 x %2 is beyond the limit of %3 x %3 and %4 "
                               "pixels in all")
                    .arg(width)
                    .arg(height)
                    .arg(MaxSide)
                    .arg(MaxPixels);
            return false;
        }
    }
    if (!(factor >= MinFactor && factor <= MaxFactor)) {
        m_error = QStringLiteral("not opened: the calibration factor %1 is not between %2 and %3")
                      .arg(factor)
                      .arg(MinFactor)
                      .arg(MaxFactor);
        return false;
    }
    if (!(decimals >= 0 && decimals <= MaxDecimals) || decimals != std::floor(decimals)) {
        m_error = QStringLiteral("not opened: decimals=\"%1\" is not a whole number from 0 to %2")
                      .arg(decimals)
                      .arg(MaxDecimals);
        return false;
    }
    parsed.calibration.factor = factor;
    parsed.calibration.decimals = int(decimals);
    if (r.hasAttribute("unit"))
        parsed.calibration.unitName = r.attribute("unit");

    bool haveImage = false;
    while (r.next()) {
        if (r.isEndElement() && r.depth() == 0)
            break;
        if (!r.isStartElement())
            continue;
        const QString name = r.name().toString();
        const qint64 line = r.lineNumber();
        if (name == QLatin1String("item")) {
            if (parsed.items.size() >= MaxItems) {
                r.stop(QStringLiteral("it holds more than %1 items").arg(MaxItems));
                break;
            }
            Parsed::Item item;
            item.className = r.attribute("class");
            item.guidName = r.attribute("guidname");
            item.reference = r.attribute("ref");
            item.line = line;
            r.copyAttributes(item.attributes);
            r.skipContent();
            parsed.items << item;
        } else if (name == QLatin1String("links")) {
            while (r.next() && !(r.isEndElement() && r.depth() == 1)) {
                if (!r.isStartElement())
                    continue;
                if (r.name() == QLatin1String("link"))
                    parsed.links << Parsed::Link{r.attribute("item"), r.attribute("role"),
                                                 r.attribute("target"), r.lineNumber()};
                else
                    parsed.messages << QStringLiteral(
                                           "line %1: unknown element <%2> among the links, skipped")
                                           .arg(r.lineNumber())
                                           .arg(r.name().toString().left(40));
                r.skipContent();
            }
        } else if (name == QLatin1String("image") && !haveImage) {
            haveImage = true;
            parsed.imagePath = r.attribute("path");
            parsed.imageEmbedded = parsed.imagePath.isEmpty();
            const QString encoding = r.attribute("encoding");
            if (parsed.imageEmbedded && encoding != QLatin1String("base64"))
                parsed.messages << QStringLiteral(
                                       "line %1: the image has neither a path nor base64 data, skipped")
                                       .arg(line);
            parsed.imageText = r.readText();
        } else if (name == QLatin1String("commonparams") && parsed.commonParams.isNull()) {
            parsed.commonParams = parsed.dom.createElement(name);
            r.copyAttributes(parsed.commonParams);
            r.skipContent();
        } else {
            parsed.messages << QStringLiteral("line %1: unknown or repeated element <%2>, skipped")
                                   .arg(line)
                                   .arg(name.left(40));
            r.skipContent();
        }
    }
    if (r.hasError()) {
        m_error = r.error();
        return false;
    }
    return true;
}

void SceneDocument::loadImage(const Parsed& parsed, const QString& folder) {
    if (parsed.imagePath.isEmpty() && parsed.imageText.trimmed().isEmpty())
        return;
    QByteArray data;
    QString source;
    if (parsed.imageEmbedded) {
        source = QStringLiteral("the embedded image");
        data = QByteArray::fromBase64(parsed.imageText.toLatin1());
    } else {
        m_imagePath = parsed.imagePath;
        source = QStringLiteral("the image \"%1\"").arg(parsed.imagePath);
        if (folder.isEmpty() && QDir::isRelativePath(parsed.imagePath)) {
            m_imageError = source + QStringLiteral(": no folder to look for it in");
        } else {
            m_imageFile = QDir(folder).absoluteFilePath(parsed.imagePath);
            const QFileInfo info(m_imageFile);
            QFile file(m_imageFile);
            if (!info.isFile())
                m_imageError = source + (info.exists() ? QStringLiteral(": not a regular file")
                                                       : QStringLiteral(": no such file"));
            else if (info.size() > MaxFileBytes)
                m_imageError = source + QStringLiteral(": larger than %1 MB").arg(MaxFileBytes >> 20);
            else if (!file.open(QIODevice::ReadOnly))
                m_imageError = source + QStringLiteral(": cannot read: ") + file.errorString();
            else
                data = file.readAll();
        }
    }
    if (m_imageError.isEmpty()) {
        QBuffer buffer(&data);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer);
        const QSize size = reader.size();
        // The size a header claims is checked before the pixels are allocated.
        if (size.isValid() && !sizeAllowed(size))
            m_imageError =
                source + QStringLiteral(": %1 x %2 pixels is beyond the limit of %3 x %3 and %4 in all")
                             .arg(size.width())
                             .arg(size.height())
                             .arg(MaxSide)
                             .arg(MaxPixels);
        else if (!reader.read(&m_image))
            m_imageError = source + QStringLiteral(": not an image: ") + reader.errorString();
        else if (!sizeAllowed(m_image.size()))
            m_imageError = source + QStringLiteral(": beyond the size limit");
    }
    if (!m_imageError.isEmpty()) {
        m_image = QImage();
        m_messages << m_imageError;
    }
}

void SceneDocument::createItems(Parsed& parsed, AbstractScene* scene) {
    QList<AbstractBaseItem*> created;
    created.reserve(parsed.items.size());
    for (Parsed::Item& p : parsed.items) {
        // Only for messages.
        const auto name = [&p] {
            return p.guidName.isEmpty() ? QString() : QStringLiteral(" \"%1\"").arg(p.guidName.left(60));
        };
        if (p.className.isEmpty()) {
            m_messages << QStringLiteral("line %1: item%2 has no class, skipped").arg(p.line).arg(name());
            continue;
        }
        AbstractBaseItem* item = createItem(p.className);
        if (!item) {
            m_messages << QStringLiteral("line %1: item%2 of unknown class \"%3\", skipped")
                              .arg(p.line)
                              .arg(name(), p.className.left(60));
            continue;
        }
        // The item reads its figures before it joins the scene, which would otherwise take each
        // change of its geometry as a change of the scene. What it needs of the scene (its image,
        // size and document folder) it finds through its link.
        item->setLinkScene(scene);
        // Calibrated before its figures are read, the item computes its measures once.
        item->setCalibration(m_calibration);
        item->setRefreshDeferred(true);
        if (!item->fromAttributes(p.attributes)) {
            m_messages
                << QStringLiteral("line %1: %2%3 is damaged, skipped").arg(p.line).arg(p.className, name());
            delete item;
            continue;
        }
        if (!item->keepsReadMesures())
            item->computeMesures(nullptr);
        item->setRefreshDeferred(false);
        // Editable as a drawn item is once accepted, before the scene announces it.
        QGraphicsItem::GraphicsItemFlags flags = item->flags() | QGraphicsItem::ItemIsSelectable;
        flags.setFlag(QGraphicsItem::ItemIsMovable, !item->locked());
        item->setFlags(flags);
        created << item;
        QString reference = p.reference;
        if (reference.isEmpty() || m_byReference.contains(reference)) {
            const QString given = newReference();
            if (!reference.isEmpty())
                m_messages << QStringLiteral("line %1: the reference \"%2\" is taken; the item is now \"%3\"")
                                  .arg(p.line)
                                  .arg(reference.left(40), given);
            reference = given;
        }
        bind(item, reference);
    }
    scene->addItems(created);
}

void SceneDocument::linkItems() {
    const ItemLinkReport report = linkLoadedItems(items());
    m_messages << report.messages;
    for (AbstractBaseItem* item : report.skipped) {
        m_messages << QStringLiteral("%1 needs an item that is missing, skipped").arg(describe(item));
        if (item->scene())
            item->scene()->removeItem(item);
        delete item;
    }
}

void SceneDocument::resolveLinks(const Parsed& parsed) {
    const QString text = textLinkRole();
    QSet<AbstractBaseItem*> textLinked;
    for (const Parsed::Link& link : parsed.links) {
        AbstractBaseItem* from = item(link.item);
        AbstractBaseItem* to = item(link.target);
        if (!from) {
            m_messages << QStringLiteral("line %1: a link of the missing item \"%2\", skipped")
                              .arg(link.line)
                              .arg(link.item.left(40));
            continue;
        }
        if (!to || to == from) {
            m_messages << QStringLiteral("line %1: %2: the %3 link to \"%4\" has no item to go to, skipped")
                              .arg(link.line)
                              .arg(describe(from), link.role.left(40), link.target.left(40));
            continue;
        }
        if (link.role == text)
            textLinked << from;
        else
            m_messages << QStringLiteral("line %1: %2: the link role \"%3\" is unknown here; kept as it is")
                              .arg(link.line)
                              .arg(describe(from), link.role.left(40));
        setLink(from, link.role, to);
    }

    // Texts that name the item they follow only by its GUID name.
    QHash<QString, QList<AbstractBaseItem*>> byName;
    const QList<AbstractBaseItem*> all = items();
    for (AbstractBaseItem* i : all)
        byName[i->getGUIDname()] << i;
    for (AbstractBaseItem* i : all) {
        const QString linkName = i->getLinkName();
        if (linkName.isEmpty() || textLinked.contains(i))
            continue;
        QList<AbstractBaseItem*> targets = byName.value(linkName);
        targets.removeAll(i);
        if (targets.size() == 1) {
            setLink(i, text, targets.first());
            continue;
        }
        m_messages << QStringLiteral("%1: the linked item \"%2\" is %3; the link is left out")
                          .arg(describe(i), linkName.left(60),
                               targets.isEmpty() ? QStringLiteral("missing")
                                                 : QStringLiteral("not the only one"));
        QString none;
        i->setLinkName(nullptr, none);
    }
}

QString SceneDocument::describe(AbstractBaseItem* item) const {
    const int index = m_byItem.value(item, -1);
    const QString reference = index >= 0 ? m_entries.at(index).reference : QStringLiteral("?");
    return QStringLiteral("item %1 (%2 \"%3\")")
        .arg(reference, item->getType(), item->getGUIDname().left(60));
}

QString SceneDocument::newReference() {
    QString reference;
    do
        reference = QStringLiteral("i%1").arg(m_nextReference++);
    while (m_byReference.contains(reference));
    return reference;
}

QList<AbstractBaseItem*> SceneDocument::items() const {
    QList<AbstractBaseItem*> list;
    for (const Entry& e : m_entries) {
        if (e.item)
            list << e.item.data();
    }
    return list;
}

QString SceneDocument::reference(AbstractBaseItem* item) {
    const int index = m_byItem.value(item, -1);
    if (index >= 0 && m_entries.at(index).item == item)
        return m_entries.at(index).reference;
    // A new item, or one that took the address of a deleted one.
    QString reference = item->uid().isEmpty() ? QString() : m_referenceByUid.value(item->uid());
    if (reference.isEmpty() || this->item(reference))
        reference = newReference();
    bind(item, reference);
    return reference;
}

void SceneDocument::bind(AbstractBaseItem* item, const QString& reference) {
    // By its uid an item made again (an undone deletion) finds its reference.
    m_referenceByUid.insert(item->ensureUid(), reference);
    const int index = m_byReference.value(reference, -1);
    if (index >= 0) {
        m_entries[index].item = item;
        m_byItem.insert(item, index);
    } else {
        m_byItem.insert(item, int(m_entries.size()));
        m_byReference.insert(reference, int(m_entries.size()));
        m_entries << Entry{item, reference};
    }
}

AbstractBaseItem* SceneDocument::item(const QString& reference) const {
    const int index = m_byReference.value(reference, -1);
    return index >= 0 ? m_entries.at(index).item.data() : nullptr;
}

void SceneDocument::setLink(AbstractBaseItem* item, const QString& role, AbstractBaseItem* target) {
    if (!item || !target || item == target)
        return;
    QList<SceneLink>& list = m_links[reference(item)];
    list.erase(std::remove_if(list.begin(), list.end(), [&](const SceneLink& l) { return l.role == role; }),
               list.end());
    list << SceneLink{role, reference(target)};
    if (role == textLinkRole())
        item->associate(target, nullptr);
}

QList<SceneLink> SceneDocument::links(AbstractBaseItem* item) const {
    const int index = m_byItem.value(item, -1);
    if (index < 0 || m_entries.at(index).item != item)
        return {};
    return m_links.value(m_entries.at(index).reference);
}

AbstractBaseItem* SceneDocument::linkTarget(AbstractBaseItem* item, const QString& role) const {
    for (const SceneLink& link : links(item)) {
        if (link.role == role)
            return this->item(link.target);
    }
    return nullptr;
}

void SceneDocument::setImage(const QImage& image, const QString& filePath) {
    m_image = image;
    m_imageFile = filePath.isEmpty() ? QString() : QFileInfo(filePath).absoluteFilePath();
    m_imagePath = filePath;
    m_imageError.clear();
}

void SceneDocument::refreshLinks(const QList<AbstractBaseItem*>& sceneItems) {
    const QString text = textLinkRole();
    QHash<QString, QList<AbstractBaseItem*>> byName;
    for (AbstractBaseItem* i : sceneItems)
        byName[i->getGUIDname()] << i;
    const QSet<AbstractBaseItem*> inScene(sceneItems.begin(), sceneItems.end());

    QHash<QString, QList<SceneLink>> refreshed;
    for (AbstractBaseItem* i : sceneItems) {
        const QString from = reference(i);
        QList<SceneLink> kept;
        bool textLink = false;
        for (const SceneLink& link : m_links.value(from)) {
            AbstractBaseItem* target = item(link.target);
            if (!target || !inScene.contains(target))
                continue;
            // A text that was unlinked, or linked elsewhere since, no longer follows this target.
            if (link.role == text && i->getLinkName() != target->getGUIDname())
                continue;
            textLink = textLink || link.role == text;
            kept << link;
        }
        const QString linkName = i->getLinkName();
        // A text that follows an item (linked since, or again by an undo) says which itself.
        const auto* annotation = qobject_cast<const eTextItem*>(i);
        AbstractBaseItem* followed = annotation ? annotation->linkedItem() : nullptr;
        if (!textLink && followed && inScene.contains(followed)) {
            kept << SceneLink{text, reference(followed)};
        } else if (!textLink && !linkName.isEmpty()) {
            QList<AbstractBaseItem*> targets = byName.value(linkName);
            targets.removeAll(i);
            if (targets.size() == 1)
                kept << SceneLink{text, reference(targets.first())};
            else
                m_messages << QStringLiteral("%1: the link to \"%2\" is not saved: %3")
                                  .arg(describe(i), linkName.left(60),
                                       targets.isEmpty() ? QStringLiteral("no item has that name")
                                                         : QStringLiteral("several items have that name"));
        }
        if (!kept.isEmpty())
            refreshed.insert(from, kept);
    }
    m_links = refreshed;
}

bool SceneDocument::save(const QString& fileName, AbstractScene* scene) {
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly)) {
        m_error = QStringLiteral("%1: cannot write: %2").arg(fileName, file.errorString());
        return false;
    }
    if (!write(&file, scene, QFileInfo(fileName).absolutePath())) {
        file.cancelWriting();
        m_error = fileName + QStringLiteral(": ") + m_error;
        return false;
    }
    if (!file.commit()) {
        m_error = QStringLiteral("%1: cannot write: %2").arg(fileName, file.errorString());
        return false;
    }
    return true;
}

bool SceneDocument::write(QIODevice* device, AbstractScene* scene, const QString& folder) {
    m_error.clear();
    m_messages.clear();
    if (!(m_calibration.factor >= MinFactor && m_calibration.factor <= MaxFactor) ||
        m_calibration.decimals < 0 || m_calibration.decimals > MaxDecimals) {
        m_error = QStringLiteral("not saved: the calibration factor must lie between %1 and %2 and the "
                                 "decimals between 0 and %3")
                      .arg(MinFactor)
                      .arg(MaxFactor)
                      .arg(MaxDecimals);
        return false;
    }
    QList<AbstractBaseItem*> sceneItems;
    for (QGraphicsItem* g : scene->items(Qt::AscendingOrder)) {
        if (AbstractBaseItem* item = AbstractBaseItem::sceneTool(g))
            sceneItems << item;
    }
    // The document now holds the scene's items, in its order, each under the reference it had.
    QList<Entry> entries;
    for (AbstractBaseItem* i : std::as_const(sceneItems))
        entries << Entry{i, reference(i)};
    refreshLinks(sceneItems);
    m_entries = entries;
    m_byItem.clear();
    m_byReference.clear();
    for (int i = 0; i < m_entries.size(); ++i) {
        AbstractBaseItem* item = m_entries.at(i).item.data();
        m_byItem.insert(item, i);
        m_byReference.insert(m_entries.at(i).reference, i);
    }
    if (!folder.isEmpty())
        scene->setDocumentFolder(folder);
    const QSize sceneSize = scene->sceneRect().size().toSize();
    if (sizeAllowed(sceneSize))
        m_size = sceneSize;
    if (!writeXml(device, folder, sceneItems)) {
        if (m_error.isEmpty())
            m_error = QStringLiteral("cannot write: ") + device->errorString();
        return false;
    }
    m_version = Version;
    return true;
}

bool SceneDocument::writeXml(QIODevice* device, const QString& folder,
                             const QList<AbstractBaseItem*>& sceneItems) {
    QXmlStreamWriter w(device);
    w.setAutoFormatting(true);
    w.setAutoFormattingIndent(2);
    w.writeStartDocument();
    w.writeStartElement(QStringLiteral("scene"));
    w.writeAttribute(QStringLiteral("version"), QString::number(Version));
    if (sizeAllowed(m_size)) {
        w.writeAttribute(QStringLiteral("width"), QString::number(m_size.width()));
        w.writeAttribute(QStringLiteral("height"), QString::number(m_size.height()));
    }
    w.writeAttribute(QStringLiteral("unit"), m_calibration.unitName);
    w.writeAttribute(QStringLiteral("factor"), QString::number(m_calibration.factor, 'g', 17));
    w.writeAttribute(QStringLiteral("decimals"), QString::number(m_calibration.decimals));

    if (!m_imageFile.isEmpty()) {
        m_imagePath = folder.isEmpty() ? m_imageFile : QDir(folder).relativeFilePath(m_imageFile);
        w.writeEmptyElement(QStringLiteral("image"));
        w.writeAttribute(QStringLiteral("path"), m_imagePath);
    } else if (!m_image.isNull()) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        if (!m_image.save(&buffer, "PNG")) {
            m_error = QStringLiteral("not saved: the image cannot be written as PNG");
            return false;
        }
        w.writeStartElement(QStringLiteral("image"));
        w.writeAttribute(QStringLiteral("encoding"), QStringLiteral("base64"));
        w.writeCharacters(QString::fromLatin1(png.toBase64()));
        w.writeEndElement();
    }

    QDomDocument dom;
    QDomElement params = dom.createElement(QStringLiteral("commonparams"));
    toCommonParams(params);
    w.writeStartElement(params.tagName());
    QStringList paramNames;
    bool written = writeAttributes(w, XmlAttributes(params), {}, paramNames);
    w.writeEndElement();

    const QStringList own = {QStringLiteral("class"), QStringLiteral("ref")};
    QHash<QString, QStringList> namesByClass;
    for (AbstractBaseItem* i : sceneItems) {
        XmlAttributes e;
        e.reserve(64);
        i->toAttributes(e);
        w.writeStartElement(QStringLiteral("item"));
        w.writeAttribute(QStringLiteral("class"), i->getType());
        w.writeAttribute(QStringLiteral("ref"), reference(i));
        written = writeAttributes(w, e, own, namesByClass[i->getType()]) && written;
        w.writeEndElement();
    }

    bool anyLink = false;
    for (AbstractBaseItem* i : sceneItems) {
        const QString from = reference(i);
        for (const SceneLink& link : m_links.value(from)) {
            if (!anyLink)
                w.writeStartElement(QStringLiteral("links"));
            anyLink = true;
            w.writeEmptyElement(QStringLiteral("link"));
            w.writeAttribute(QStringLiteral("item"), from);
            w.writeAttribute(QStringLiteral("role"), link.role);
            w.writeAttribute(QStringLiteral("target"), link.target);
        }
    }
    if (anyLink)
        w.writeEndElement();
    w.writeEndElement();
    w.writeEndDocument();
    return written && !w.hasError();
}
