#pragma once

#include "graphicsobjects_export.h"

#include <QTextEdit>

// The rich-text editor of the text dialog: format changes apply to the selection, or to what is
// typed next when nothing is selected.
class GRAPHICSOBJECTS_EXPORT TextEdit : public QTextEdit {
    Q_OBJECT
public:
    explicit TextEdit(QWidget* parent = nullptr);

    using QTextEdit::setFontFamily;

public slots:
    void setBold(bool bold);
    void setFontFamily(const QFont& font);
    // Opens a colour chooser; the chosen colour goes to updateColor.
    void setColor();
    void updateColor(const QColor& color);
};
