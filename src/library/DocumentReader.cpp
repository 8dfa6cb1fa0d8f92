#include "DocumentReader.h"

#include <QDomElement>

#include <algorithm>

DocumentReader::DocumentReader(QByteArrayView bytes, int maxDepth, int maxElements, qint64 maxBytes)
    : m_scanner(std::in_place, bytes)
    , m_maxDepth(maxDepth)
    , m_maxElements(maxElements)
    , m_maxBytes(maxBytes) {}

DocumentReader::DocumentReader(QIODevice* device, int maxDepth, int maxElements, qint64 maxBytes)
    : m_xml(device)
    , m_maxDepth(maxDepth)
    , m_maxElements(maxElements)
    , m_maxBytes(maxBytes) {}

bool DocumentReader::next() {
    if (hasError())
        return false;
    if (m_scanner) {
        const SceneScanner::Token token = m_scanner->next();
        if (token == SceneScanner::Unsupported || token == SceneScanner::EndDocument)
            return false;
    } else {
        m_xml.readNext();
    }
    if (isStartElement()) {
        if (++m_depth > m_maxDepth)
            stop(QStringLiteral("elements are nested deeper than %1").arg(m_maxDepth));
        else if (++m_elements > m_maxElements)
            stop(QStringLiteral("it holds more than %1 elements").arg(m_maxElements));
    } else if (isEndElement()) {
        --m_depth;
    }
    if (!m_scanner && !m_xml.hasError() && m_xml.characterOffset() > m_maxBytes)
        stop(QStringLiteral("it is larger than %1 MB").arg(m_maxBytes >> 20));
    return !hasError() && (m_scanner || !m_xml.atEnd());
}

bool DocumentReader::isStartElement() const {
    return m_scanner ? m_scanner->token() == SceneScanner::StartElement : m_xml.isStartElement();
}

bool DocumentReader::isEndElement() const {
    return m_scanner ? m_scanner->token() == SceneScanner::EndElement : m_xml.isEndElement();
}

bool DocumentReader::isCharacters() const {
    return m_scanner ? m_scanner->token() == SceneScanner::Characters : m_xml.isCharacters();
}

QString DocumentReader::text() const {
    return m_scanner ? m_scanner->text() : m_xml.text().toString();
}

QStringView DocumentReader::name() const {
    return m_scanner ? m_scanner->name() : m_xml.name();
}

qint64 DocumentReader::lineNumber() const {
    return m_scanner ? m_scanner->lineNumber() : m_xml.lineNumber();
}

bool DocumentReader::hasAttribute(const char* name) const {
    return m_scanner ? m_scanner->hasAttribute(QLatin1StringView(name))
                     : m_xml.attributes().hasAttribute(QLatin1StringView(name));
}

QString DocumentReader::attribute(const char* name) const {
    return m_scanner ? m_scanner->attribute(QLatin1StringView(name))
                     : m_xml.attributes().value(QLatin1StringView(name)).toString();
}

void DocumentReader::copyAttributes(QDomElement& element) const {
    if (m_scanner) {
        for (qsizetype i = 0; i < m_scanner->attributeCount(); ++i)
            element.setAttribute(m_scanner->attributeName(i), m_scanner->attributeValue(i));
        return;
    }
    for (const QXmlStreamAttribute& a : m_xml.attributes())
        element.setAttribute(a.qualifiedName().toString(), a.value().toString());
}

// The scanner gives the same name as the same shared string, so a model is recognised by the
// addresses of its names.
const XmlAttributes* DocumentReader::model() const {
    const qsizetype count = m_scanner->attributeCount();
    for (const XmlAttributes& model : m_models) {
        bool same = model.size() == count;
        for (qsizetype i = 0; same && i < count; ++i)
            same = model.name(i).constData() == m_scanner->attributeName(i).constData();
        if (same)
            return &model;
    }
    return nullptr;
}

void DocumentReader::copyAttributes(XmlAttributes& attributes) {
    if (!m_scanner) {
        const QXmlStreamAttributes all = m_xml.attributes();
        attributes = XmlAttributes();
        for (const QXmlStreamAttribute& a : all)
            attributes.append(a.qualifiedName().toString(), a.value());
        return;
    }
    // A document of many kinds is still read right, only without sharing beyond these.
    constexpr qsizetype MaxModels = 64;
    const qsizetype count = m_scanner->attributeCount();
    if (const XmlAttributes* like = model()) {
        attributes = *like;
    } else {
        attributes = XmlAttributes();
        for (qsizetype i = 0; i < count; ++i)
            attributes.append(m_scanner->attributeName(i), QStringView());
        attributes.prepareLookups();
        if (m_models.size() < MaxModels)
            m_models.append(attributes);
    }
    // A value read is never longer than its bytes: references, line ends and UTF-8 sequences
    // all shrink. Plain values are widened in place.
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < count; ++i)
        bytes += m_scanner->plainValue(i).size();
    QString values(bytes, Qt::Uninitialized);
    char16_t* out = reinterpret_cast<char16_t*>(values.data());
    QList<qsizetype> ends(count);
    qsizetype* const endOf = ends.data();
    qsizetype at = 0;
    for (qsizetype i = 0; i < count; ++i) {
        if (m_scanner->isPlainValue(i)) {
            const QLatin1StringView plain = m_scanner->plainValue(i);
            const uchar* in = reinterpret_cast<const uchar*>(plain.data());
            for (qsizetype k = 0; k < plain.size(); ++k)
                out[at + k] = in[k];
            at += plain.size();
        } else {
            const QString value = m_scanner->attributeValue(i);
            if (at + value.size() > values.size()) {
                values.resize(at + value.size());
                out = reinterpret_cast<char16_t*>(values.data());
            }
            std::copy(value.utf16(), value.utf16() + value.size(), out + at);
            at += value.size();
        }
        endOf[i] = at;
    }
    values.truncate(at);
    attributes.setValues(std::move(values), std::move(ends));
}

void DocumentReader::skipContent() {
    const int level = m_depth;
    while (next() && !(isEndElement() && m_depth < level)) {
    }
}

QString DocumentReader::readText() {
    QString result;
    const int level = m_depth;
    while (next()) {
        if (isEndElement() && m_depth < level)
            break;
        if (isCharacters() && m_depth == level)
            result += text();
    }
    return result;
}

void DocumentReader::stop(const QString& why) {
    if (m_limit.isEmpty())
        m_limit = why;
    if (!m_scanner)
        m_xml.raiseError(why);
}

bool DocumentReader::hasError() const {
    return !m_limit.isEmpty() || (!m_scanner && m_xml.hasError());
}

QString DocumentReader::startError() const {
    return m_limit.isEmpty() ? QStringLiteral("not a scene document: %1").arg(m_xml.errorString())
                             : QStringLiteral("not opened: %1").arg(m_limit);
}

QString DocumentReader::error() const {
    return m_limit.isEmpty() ? QStringLiteral("line %1, column %2: the document is damaged: %3")
                                   .arg(m_xml.lineNumber())
                                   .arg(m_xml.columnNumber())
                                   .arg(m_xml.errorString())
                             : QStringLiteral("not opened: %1").arg(m_limit);
}
