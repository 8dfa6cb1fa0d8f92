#pragma once

#include "SceneScanner.h"
#include "XmlAttributes.h"

#include <QString>
#include <QXmlStreamReader>

#include <optional>

class QDomElement;

// What a scene document is parsed with: the scanner over the bytes in memory, or QXmlStreamReader
// for a device, and for whatever the scanner leaves (unsupported() then says to read again with
// it). Either way it keeps the element depth and stops a document beyond the limits as it reads.
class DocumentReader {
public:
    DocumentReader(QByteArrayView bytes, int maxDepth, int maxElements, qint64 maxBytes);
    DocumentReader(QIODevice* device, int maxDepth, int maxElements, qint64 maxBytes);

    // The next token; false at the end, on an error, or where the scanner gives up.
    bool next();
    bool unsupported() const { return m_scanner && m_scanner->token() == SceneScanner::Unsupported; }

    bool isStartElement() const;
    bool isEndElement() const;
    QStringView name() const;
    qint64 lineNumber() const;
    bool hasAttribute(const char* name) const;
    QString attribute(const char* name) const;
    void copyAttributes(QDomElement& element) const;
    void copyAttributes(XmlAttributes& attributes);

    // Reads to the end of the current element, past its content.
    void skipContent();
    // The text of the current element, skipping any child element.
    QString readText();

    void stop(const QString& why);
    bool hasError() const;
    // Why no document element was found, and why reading stopped.
    QString startError() const;
    QString error() const;

    int depth() const { return m_depth; }

private:
    bool isCharacters() const;
    QString text() const;
    // The attributes of an element seen before with the same names, or null.
    const XmlAttributes* model() const;

    std::optional<SceneScanner> m_scanner;
    // An element of each kind met so far: like elements share its names and their lookup table.
    QList<XmlAttributes> m_models;
    QXmlStreamReader m_xml;
    QString m_limit;
    int m_depth = 0;
    int m_elements = 0;
    int m_maxDepth;
    int m_maxElements;
    qint64 m_maxBytes;
};
