#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QString>

#include <utility>

class QDomElement;

// The attributes of one element as a flat list: what items read and write, so that a document of
// many items is read and written without a DOM. Lookups and the text of numbers are those of
// QDomElement, so an item reads and writes the same whichever it is given.
class GRAPHICSOBJECTS_EXPORT XmlAttributes {
public:
    XmlAttributes() = default;
    explicit XmlAttributes(const QDomElement& element);
    // Sets every attribute on element.
    void copyTo(QDomElement& element) const;

    bool hasAttribute(const QString& name) const { return indexOf(name) >= 0; }
    QString attribute(const QString& name, const QString& fallback = QString()) const;

    // An attribute of that name is replaced.
    void setAttribute(const QString& name, const QString& value);
    void setAttribute(const QString& name, qlonglong value);
    void setAttribute(const QString& name, qulonglong value);
    void setAttribute(const QString& name, int value);
    void setAttribute(const QString& name, uint value);
    void setAttribute(const QString& name, float value);
    void setAttribute(const QString& name, double value);
    // For a reader that has already refused repeated names.
    void append(QString name, QString value);
    void reserve(qsizetype count) { m_attributes.reserve(count); }

    qsizetype size() const { return m_attributes.size(); }
    const QString& name(qsizetype i) const { return m_attributes.at(i).first; }
    const QString& value(qsizetype i) const { return m_attributes.at(i).second; }

private:
    qsizetype indexOf(const QString& name) const;

    QList<std::pair<QString, QString>> m_attributes;
    // Positions ordered by name, made at the first lookup after a change.
    mutable QList<int> m_sorted;
};
