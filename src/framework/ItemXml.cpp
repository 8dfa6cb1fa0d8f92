// The common part of every item's XML form.
#include "AbstractBaseItem.h"

#include "SimpleTextItem.h"
#include "VariantText.h"
#include "XmlAttributes.h"
#include "XmlRead.h"

#include <QDomDocument>
#include <QDomElement>
#include <QHash>

#include <array>
#include <functional>

namespace {

int intAttribute(const XmlAttributes& e, const QString& key) {
    return e.view(key).toInt(nullptr, 10);
}

constexpr int MesureSlots = 12;

// The attribute names of the measures, made once: "mesure0".."mesure11", then "mesureP0"..
const QString& mesureKey(bool pixel, int i) {
    static const QList<QString> keys = [] {
        QList<QString> names;
        for (const char* pattern : {"mesure%1", "mesureP%1"})
            for (int k = 0; k < MesureSlots; ++k)
                names << QString::fromLatin1(pattern).arg(k);
        return names;
    }();
    return keys[(pixel ? MesureSlots : 0) + i];
}

// A round-capped, round-joined pen, shared by the items loaded with the same colour, width and style.
QPen sharedPen(const QColor& color, int width, Qt::PenStyle style) {
    static QHash<std::pair<quint64, qint64>, QPen> pens;
    const std::pair<quint64, qint64> key(color.rgba64(), qint64(width) * 16 + int(style));
    auto it = pens.find(key);
    if (it == pens.end()) {
        if (pens.size() > 256)
            pens.clear();
        it = pens.insert(key,
                         QPen(QBrush(color, Qt::SolidPattern), width, style, Qt::RoundCap, Qt::RoundJoin));
    }
    return *it;
}

// The font a description names, shared by every item loaded with it: a scene's items use a few
// fonts, and a font of its own costs an item more than the rest of it.
QFont sharedFont(QStringView description) {
    static QHash<QString, QFont> fonts;
    // An item names its two fonts as the item before it did: those are found without a copy.
    struct Recent {
        QString description;
        QFont font;
    };
    static std::array<Recent, 4> recent;
    static size_t nextRecent = 0;
    for (const Recent& r : recent) {
        if (!r.description.isNull() && description == r.description)
            return r.font;
    }
    const QString key = description.toString();
    auto it = fonts.find(key);
    if (it == fonts.end()) {
        if (fonts.size() > 256)
            fonts.clear();
        it = fonts.insert(key, stringToVariant(key, QMetaType::QFont).value<QFont>());
    }
    recent[nextRecent++ % recent.size()] = {key, *it};
    return *it;
}

// The description of a font, made once for the run of items that share it.
QString fontText(const QFont& font) {
    static QFont last;
    static QString text = last.toString();
    if (!(font == last)) {
        last = font;
        text = font.toString();
    }
    return text;
}

// What a writer of attribute lists writes, set on an element.
void writeOn(QDomElement& e, const std::function<void(XmlAttributes&)>& write) {
    XmlAttributes attributes;
    write(attributes);
    attributes.copyTo(e);
}

} // namespace

void AbstractBaseItem::commonWriteXML(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("guidname"), m_guidName);
    e.setAttribute(QStringLiteral("locked"), m_locked ? 1 : 0);
    e.setAttribute(QStringLiteral("generated"), m_generated ? 1 : 0);
    e.setAttribute(QStringLiteral("textuse"), m_textusage ? 1 : 0);
    e.setAttribute(QStringLiteral("mesureIndex"), m_mesureIndex);
    e.setAttribute(QStringLiteral("color"), variantToString(m_pen.color()));
    e.setAttribute(QStringLiteral("width"), m_pen.width());
    e.setAttribute(QStringLiteral("style"), int(m_pen.style()));
    e.setAttribute(QStringLiteral("font1"), fontText(m_font));
    e.setAttribute(QStringLiteral("font2"), fontText(m_font2));
    if (m_label)
        e.setAttribute(QStringLiteral("textPos"), variantToString(m_label->pos()));
    if (!m_uid.isEmpty())
        e.setAttribute(QStringLiteral("uid"), m_uid);
}

void AbstractBaseItem::commonReadXML(const XmlAttributes& e) {
    m_guidName = e.attribute(QStringLiteral("guidname"));
    m_locked = intAttribute(e, QStringLiteral("locked")) != 0;
    m_generated = intAttribute(e, QStringLiteral("generated")) != 0;
    m_textusage = intAttribute(e, QStringLiteral("textuse")) != 0;
    m_mesureIndex = intAttribute(e, QStringLiteral("mesureIndex"));

    const QColor color = QColor::fromString(e.view(QStringLiteral("color")));
    const int width = intAttribute(e, QStringLiteral("width"));
    const int style = intAttribute(e, QStringLiteral("style"));
    // Styles outside Qt's range would make the pen unusable; they draw nothing, as a missing style does.
    const Qt::PenStyle penStyle =
        style >= Qt::NoPen && style <= Qt::CustomDashLine ? Qt::PenStyle(style) : Qt::NoPen;
    m_pen = sharedPen(color, qMax(0, width), penStyle);

    m_font = sharedFont(e.view(QStringLiteral("font1")));
    m_font2 = sharedFont(e.view(QStringLiteral("font2")));
    if (m_label)
        m_label->setPos(readPoint(e, QStringLiteral("textPos")));
    m_uid = readUid(e, QStringLiteral("uid"));
}

void AbstractBaseItem::commonMesuresWriteXML(XmlAttributes& e) const {
    static_assert(MesuresCount == MesureSlots);
    for (int i = 0; i < MesuresCount; ++i)
        e.setAttribute(mesureKey(false, i), variantToString(m_mesure[i]));
    for (int i = 0; i < MesuresCount; ++i)
        e.setAttribute(mesureKey(true, i), variantToString(m_mesureP[i]));
}

void AbstractBaseItem::commonMesuresReadXML(const XmlAttributes& e) {
    for (int i = 0; i < MesuresCount; ++i)
        m_mesure[i] = parseDouble(e.view(mesureKey(false, i)));
    for (int i = 0; i < MesuresCount; ++i)
        m_mesureP[i] = parseDouble(e.view(mesureKey(true, i)));
}

void AbstractBaseItem::commonWriteXML(QDomElement& e) const {
    writeOn(e, [this](XmlAttributes& a) { commonWriteXML(a); });
}

void AbstractBaseItem::commonReadXML(const QDomElement& e) {
    commonReadXML(XmlAttributes(e));
}

void AbstractBaseItem::commonMesuresWriteXML(QDomElement& e) const {
    writeOn(e, [this](XmlAttributes& a) { commonMesuresWriteXML(a); });
}

void AbstractBaseItem::commonMesuresReadXML(const QDomElement& e) {
    commonMesuresReadXML(XmlAttributes(e));
}

bool AbstractBaseItem::toXml(QDomElement& e) const {
    bool done = false;
    writeOn(e, [&](XmlAttributes& a) { done = toAttributes(a); });
    return done;
}

bool AbstractBaseItem::fromXml(const QDomElement& e) {
    return fromAttributes(XmlAttributes(e));
}

bool AbstractBaseItem::toAttributes(XmlAttributes& attributes) const {
    QDomDocument document;
    QDomElement e = document.createElement(QStringLiteral("item"));
    const bool done = toXml(e);
    attributes = XmlAttributes(e);
    return done;
}

bool AbstractBaseItem::fromAttributes(const XmlAttributes& attributes) {
    QDomDocument document;
    QDomElement e = document.createElement(QStringLiteral("item"));
    attributes.copyTo(e);
    return fromXml(e);
}
