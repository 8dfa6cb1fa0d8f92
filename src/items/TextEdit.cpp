#include "TextEdit.h"

#include <QColorDialog>

TextEdit::TextEdit(QWidget* parent)
    : QTextEdit(parent) {
    setAcceptRichText(true);
}

void TextEdit::setBold(bool bold) {
    setFontWeight(bold ? QFont::Bold : QFont::Normal);
}

void TextEdit::setFontFamily(const QFont& font) {
    QTextEdit::setFontFamily(font.family());
}

void TextEdit::setColor() {
    auto* chooser = new QColorDialog(textColor(), this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(chooser, &QColorDialog::colorSelected, this, &TextEdit::updateColor);
    chooser->open();
}

void TextEdit::updateColor(const QColor& color) {
    if (color.isValid())
        setTextColor(color);
}
