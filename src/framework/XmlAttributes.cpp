#include "XmlAttributes.h"

#include <QDomElement>
#include <QDomNamedNodeMap>

#include <algorithm>
#include <cstring>

XmlAttributes::XmlAttributes(const QDomElement& element) {
    const QDomNamedNodeMap attributes = element.attributes();
    m_attributes.reserve(attributes.count());
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomNode node = attributes.item(i);
        m_attributes.emplace_back(node.nodeName(), node.nodeValue());
    }
}

void XmlAttributes::copyTo(QDomElement& element) const {
    for (const auto& [name, value] : m_attributes)
        element.setAttribute(name, value);
}

namespace {

// Names ordered by length first: most comparisons of a lookup end on the length.
bool before(const QString& a, const QString& b) {
    if (a.size() != b.size())
        return a.size() < b.size();
    return std::memcmp(a.constData(), b.constData(), size_t(a.size()) * sizeof(QChar)) < 0;
}

} // namespace

qsizetype XmlAttributes::indexOf(const QString& name) const {
    if (m_sorted.size() != m_attributes.size()) {
        m_sorted.resize(m_attributes.size());
        for (int i = 0; i < m_sorted.size(); ++i)
            m_sorted[i] = i;
        std::sort(m_sorted.begin(), m_sorted.end(),
                  [this](int a, int b) { return before(m_attributes[a].first, m_attributes[b].first); });
    }
    const auto it =
        std::lower_bound(m_sorted.begin(), m_sorted.end(), name,
                         [this](int i, const QString& key) { return before(m_attributes[i].first, key); });
    return it != m_sorted.end() && m_attributes[*it].first == name ? *it : -1;
}

QString XmlAttributes::attribute(const QString& name, const QString& fallback) const {
    const qsizetype i = indexOf(name);
    return i < 0 ? fallback : m_attributes[i].second;
}

void XmlAttributes::setAttribute(const QString& name, const QString& value) {
    for (auto& attribute : m_attributes) {
        if (attribute.first.size() == name.size() && attribute.first == name) {
            attribute.second = value;
            return;
        }
    }
    append(name, value);
}

void XmlAttributes::append(QString name, QString value) {
    m_attributes.emplace_back(std::move(name), std::move(value));
    m_sorted.clear();
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
