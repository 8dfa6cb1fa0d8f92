#include "XmlAttributes.h"

#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QHashFunctions>

#include <cstring>

XmlAttributes::XmlAttributes(const QDomElement& element) {
    const QDomNamedNodeMap attributes = element.attributes();
    m_names.reserve(attributes.count());
    m_ends.reserve(attributes.count());
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomNode node = attributes.item(i);
        append(node.nodeName(), node.nodeValue());
    }
}

void XmlAttributes::copyTo(QDomElement& element) const {
    for (qsizetype i = 0; i < size(); ++i)
        element.setAttribute(m_names[i], value(i).toString());
}

namespace {

// Beyond this many slots the names are not an item's: Qt's seeded hash keeps a document from
// choosing names that all fall on one slot.
constexpr qsizetype SmallTable = 128;

// FNV-1a for an item's few short names, where a general hash costs more than the whole probe.
qsizetype hashOf(const QString& name, qsizetype tableSize) {
    if (tableSize > SmallTable)
        return qsizetype(qHash(name, QHashSeed::globalSeed()));
    size_t hash = 2166136261u;
    for (const QChar c : name)
        hash = (hash ^ c.unicode()) * 16777619u;
    return qsizetype(hash);
}

} // namespace

void XmlAttributes::prepareLookups() const {
    if (!m_slots.isEmpty())
        return;
    qsizetype size = 16;
    while (size < 2 * m_names.size())
        size *= 2;
    m_slots.fill(-1, size);
    const qsizetype mask = size - 1;
    for (int i = 0; i < m_names.size(); ++i) {
        qsizetype slot = hashOf(m_names[i], size) & mask;
        while (m_slots[slot] >= 0)
            slot = (slot + 1) & mask;
        m_slots[slot] = i;
    }
}

qsizetype XmlAttributes::indexOf(const QString& name) const {
    if (m_slots.isEmpty())
        prepareLookups();
    const int* const table = m_slots.constData();
    const QString* const names = m_names.constData();
    const qsizetype mask = m_slots.size() - 1;
    for (qsizetype slot = hashOf(name, m_slots.size()) & mask; table[slot] >= 0; slot = (slot + 1) & mask) {
        const QString& candidate = names[table[slot]];
        if (candidate.size() == name.size() &&
            std::memcmp(candidate.constData(), name.constData(), size_t(name.size()) * sizeof(QChar)) == 0)
            return table[slot];
    }
    return -1;
}

QStringView XmlAttributes::value(qsizetype i) const {
    const qsizetype begin = valueBegin(i);
    return QStringView(m_values).sliced(begin, m_ends.at(i) - begin);
}

QString XmlAttributes::attribute(const QString& name, const QString& fallback) const {
    const qsizetype i = indexOf(name);
    return i < 0 ? fallback : value(i).toString();
}

QStringView XmlAttributes::view(const QString& name) const {
    const qsizetype i = indexOf(name);
    return i < 0 ? QStringView() : value(i);
}

void XmlAttributes::setAttribute(const QString& name, QStringView value) {
    for (qsizetype i = 0; i < m_names.size(); ++i) {
        if (m_names[i].size() == name.size() && m_names[i] == name) {
            const qsizetype begin = valueBegin(i);
            const qsizetype shift = value.size() - (m_ends[i] - begin);
            m_values.replace(begin, m_ends[i] - begin, value.data(), value.size());
            for (qsizetype k = i; k < m_ends.size(); ++k)
                m_ends[k] += shift;
            return;
        }
    }
    append(name, value);
}

void XmlAttributes::append(const QString& name, QStringView value) {
    m_names.append(name);
    m_slots.clear();
    m_values.append(value);
    m_ends.append(m_values.size());
}

void XmlAttributes::reserve(qsizetype count) {
    m_names.reserve(count);
    m_ends.reserve(count);
    m_values.reserve(count * 12);
}

void XmlAttributes::setValues(QString values, QList<qsizetype> ends) {
    bool ordered = ends.size() == m_names.size();
    qsizetype previous = 0;
    for (const qsizetype end : std::as_const(ends)) {
        ordered = ordered && end >= previous && end <= values.size();
        previous = end;
    }
    if (!ordered) {
        values.clear();
        ends.fill(0, m_names.size());
    }
    m_values = std::move(values);
    m_ends = std::move(ends);
}

void XmlAttributes::setAttribute(const QString& name, qlonglong value) {
    setAttribute(name, QString::number(value));
}

void XmlAttributes::setAttribute(const QString& name, qulonglong value) {
    setAttribute(name, QString::number(value));
}

void XmlAttributes::setAttribute(const QString& name, int value) {
    setAttribute(name, QString::number(value));
}

void XmlAttributes::setAttribute(const QString& name, uint value) {
    setAttribute(name, QString::number(value));
}

// QDomElement's precision: enough digits to read the number back.
void XmlAttributes::setAttribute(const QString& name, float value) {
    setAttribute(name, QString::number(value, 'g', 8));
}

void XmlAttributes::setAttribute(const QString& name, double value) {
    setAttribute(name, QString::number(value, 'g', 17));
}
