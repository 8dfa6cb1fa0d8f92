#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QString>
#include <QStringView>

class QDomElement;

// The attributes of one element as a flat list: what items read and write, so that a document of
// many items is read and written without a DOM. Lookups and the text of numbers are those of
// QDomElement, so an item reads and writes the same whichever it is given.
//
// The values lie one after another in one string: an element costs a few allocations, not one per
// attribute. A reader of many elements with the same names shares the names and their lookup
// table among them (prepareLookups, clearValues, appendValue).
class GRAPHICSOBJECTS_EXPORT XmlAttributes {
public:
    XmlAttributes() = default;
    explicit XmlAttributes(const QDomElement& element);
    // Sets every attribute on element.
    void copyTo(QDomElement& element) const;

    bool hasAttribute(const QString& name) const { return indexOf(name) >= 0; }
    QString attribute(const QString& name, const QString& fallback = QString()) const;
    // The value without a copy, empty when there is none; valid until the attributes change.
    QStringView view(const QString& name) const;

    // An attribute of that name is replaced.
    void setAttribute(const QString& name, QStringView value);
    void setAttribute(const QString& name, const QString& value) { setAttribute(name, QStringView(value)); }
    void setAttribute(const QString& name, qlonglong value);
    void setAttribute(const QString& name, qulonglong value);
    void setAttribute(const QString& name, int value);
    void setAttribute(const QString& name, uint value);
    void setAttribute(const QString& name, float value);
    void setAttribute(const QString& name, double value);
    // For a reader that has already refused repeated names.
    void append(const QString& name, QStringView value);
    // Room for count attributes of numbers.
    void reserve(qsizetype count);

    // Makes the lookup table now, so that copies share it.
    void prepareLookups() const;
    // Keeps the names and their lookup table and takes new values: the value of each name in turn,
    // one after another in values, the i-th ending at ends[i]. Wrong ends read as no values.
    void setValues(QString values, QList<qsizetype> ends);

    qsizetype size() const { return m_names.size(); }
    const QString& name(qsizetype i) const { return m_names.at(i); }
    QStringView value(qsizetype i) const;

private:
    qsizetype indexOf(const QString& name) const;
    qsizetype valueBegin(qsizetype i) const { return i == 0 ? 0 : m_ends.at(i - 1); }

    QList<QString> m_names;
    QString m_values;
    // Where the value of each name ends in m_values.
    QList<qsizetype> m_ends;
    // Open addressing over the names by their hash: positions, -1 where free; made at the first
    // lookup after a change of names.
    mutable QList<int> m_slots;
};
