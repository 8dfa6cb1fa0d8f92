#pragma once

#include <QMap>
#include <QTranslator>

// A translator for the context "NAMES" only, from a table of class name -> displayed name.
class NamesTranslator : public QTranslator {
public:
    explicit NamesTranslator(QMap<QString, QString> names)
        : m_names(std::move(names)) {}

    QString translate(const char* context, const char* sourceText, const char*, int) const override {
        return qstrcmp(context, "NAMES") == 0 ? m_names.value(QString::fromLatin1(sourceText)) : QString();
    }
    bool isEmpty() const override { return false; }

private:
    QMap<QString, QString> m_names;
};
