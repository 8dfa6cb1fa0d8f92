#include "TextItemDialog.h"

#include "TextEdit.h"
#include "TextItem.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFontComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextCharFormat>
#include <QToolBar>
#include <QVBoxLayout>

TextItemDialog::TextItemDialog(TextItem* item, QWidget* parent)
    : QDialog(parent)
    , m_item(item)
    , m_editor(new TextEdit(this))
    , m_toolBar(new QToolBar(this))
    , m_fontCombo(new QFontComboBox(this))
    , m_fontSize(new QDoubleSpinBox(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    m_bold = m_toolBar->addAction(QIcon(QStringLiteral(":/bold.png")), tr("Bold"));
    m_bold->setShortcut(tr("Ctrl+B"));
    m_bold->setCheckable(true);
    m_italic = m_toolBar->addAction(QIcon(QStringLiteral(":/italic.png")), tr("Italic"));
    m_italic->setShortcut(tr("Ctrl+I"));
    m_italic->setCheckable(true);
    m_toolBar->addSeparator();
    m_toolBar->addWidget(new QLabel(tr("Font:"), this));
    m_toolBar->addWidget(m_fontCombo);
    m_toolBar->addWidget(new QLabel(tr("Size:"), this));
    m_fontSize->setRange(1, 500);
    m_fontSize->setDecimals(1);
    m_toolBar->addWidget(m_fontSize);
    QAction* color = m_toolBar->addAction(QIcon(QStringLiteral(":/colormodel.png")), tr("Color"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_toolBar);
    layout->addWidget(m_editor);
    layout->addWidget(m_buttons);

    if (m_item) {
        m_editor->setHtml(m_item->toHtml());
        m_editor->document()->setDefaultFont(m_item->font());
    }
    setWindowTitle(
        tr("%1 - %2 Text Item").arg(QApplication::applicationName(), m_item ? tr("Edit") : tr("Add")));

    connect(m_bold, &QAction::toggled, m_editor, &TextEdit::setBold);
    connect(m_italic, &QAction::toggled, m_editor, &TextEdit::setFontItalic);
    connect(m_fontCombo, &QFontComboBox::currentFontChanged, m_editor,
            qOverload<const QFont&>(&TextEdit::setFontFamily));
    connect(m_fontSize, &QDoubleSpinBox::valueChanged, m_editor, &TextEdit::setFontPointSize);
    connect(color, &QAction::triggered, m_editor, &TextEdit::setColor);
    connect(m_editor, &QTextEdit::currentCharFormatChanged, this, &TextItemDialog::updateToolBar);
    connect(m_editor, &QTextEdit::textChanged, this, &TextItemDialog::updateUi);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &TextItemDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &TextItemDialog::reject);

    updateToolBar(m_editor->currentCharFormat());
    updateUi();
}

void TextItemDialog::updateUi() {
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_editor->toPlainText().isEmpty());
}

void TextItemDialog::updateToolBar(const QTextCharFormat& format) {
    // Showing the format at the cursor must not apply it back to the text.
    const QSignalBlocker boldBlocker(m_bold);
    const QSignalBlocker italicBlocker(m_italic);
    const QSignalBlocker fontBlocker(m_fontCombo);
    const QSignalBlocker sizeBlocker(m_fontSize);
    const QFont font = format.font();
    m_bold->setChecked(font.bold());
    m_italic->setChecked(font.italic());
    m_fontCombo->setCurrentFont(font);
    if (font.pointSizeF() > 0)
        m_fontSize->setValue(font.pointSizeF());
}

void TextItemDialog::accept() {
    if (!m_item)
        m_item = new TextItem;
    m_item->setHtml(m_editor->toHtml());
    QDialog::accept();
}
