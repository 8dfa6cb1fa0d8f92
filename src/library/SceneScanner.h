#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <vector>

// A reader for the plain XML the library writes: an optional UTF-8 declaration, elements,
// attributes, the five predefined entities and character references, and text without markup.
// It reads from memory several times faster than QXmlStreamReader. Anything beyond that subset
// (comments, processing instructions, a DOCTYPE, CDATA, namespaces, other encodings, and any
// error) makes it answer Unsupported, and the caller reads the document with QXmlStreamReader,
// which gives the verdict. Where it reads a document, it gives the same elements, attributes,
// texts and line numbers as QXmlStreamReader.
class SceneScanner {
public:
    enum Token { StartElement, EndElement, Characters, EndDocument, Unsupported };

    explicit SceneScanner(QByteArrayView bytes);

    Token next();
    Token token() const { return m_token; }

    // Of the current start or end element.
    QStringView name() const { return m_name; }
    // Of the current start element, in document order.
    qsizetype attributeCount() const { return qsizetype(m_attributes.size()); }
    // The same name is the same shared string in every element of the document.
    const QString& attributeName(qsizetype i) const { return m_namesById[m_attributes.at(i).id].text; }
    QString attributeValue(qsizetype i) const;
    // The bytes of the value as they stand in the document: its text when isPlainValue.
    bool isPlainValue(qsizetype i) const { return m_attributes.at(i).value.plain; }
    QLatin1StringView plainValue(qsizetype i) const;
    bool hasAttribute(QLatin1StringView name) const { return find(name) >= 0; }
    QString attribute(QLatin1StringView name) const;
    // Of the current characters.
    QString text() const;
    // The line the current token ends on, from 1.
    qint64 lineNumber() const { return m_line; }

private:
    struct Span {
        qsizetype begin = 0;
        qsizetype size = 0;
        bool plain = true; // ASCII without references or line breaks: copied as it is
    };
    struct Attribute {
        Span name;
        Span value;
        int id = -1;
    };
    // A name met in the document, the element it was last met in, and the name that followed it.
    struct Name {
        QString text;
        QByteArrayView bytes;
        size_t hash = 0;
        quint64 element = 0;
        int next = -1;
    };

    Token unsupported();
    Token startTag();
    Token endTag();
    Token characters();
    bool prolog();
    // Whether the name is at the reading position, whole: readName would read the same.
    bool nameFollows(QByteArrayView name) const;
    bool readName(Span& span);
    bool readValue(Span& span);
    void skipSpace();
    void advanceLines(qsizetype to);
    qsizetype find(QLatin1StringView name) const;
    // The id of a name, or -1 beyond the names a document may use.
    int intern(QByteArrayView name);
    QString decode(const Span& span, bool attribute) const;

    QByteArrayView m_bytes;
    qsizetype m_pos = 0;
    qsizetype m_linePos = 0;
    qint64 m_line = 1;
    Token m_token = Unsupported;
    bool m_started = false;
    bool m_rootClosed = false;
    bool m_pendingEnd = false;
    QString m_name;
    QList<QString> m_open;
    // A vector keeps its room from one element to the next.
    std::vector<Attribute> m_attributes;
    QList<Name> m_namesById;
    // Open addressing over m_namesById: ids, -1 where free.
    QList<int> m_nameTable;
    quint64 m_element = 0;
    // The first name of the last element.
    int m_firstName = -1;
    Span m_text;
};
