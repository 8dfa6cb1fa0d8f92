#pragma once

#include "graphicsobjects_export.h"

#include <QDialog>
#include <QPointer>

class QAction;
class QDialogButtonBox;
class QDoubleSpinBox;
class QFontComboBox;
class QTextCharFormat;
class QToolBar;
class TextEdit;
class TextItem;

// Edits a text item's content and format in a window. Given an item it edits it ("Edit" mode);
// without one, accepting creates a new item that the caller takes ("Add" mode).
class GRAPHICSOBJECTS_EXPORT TextItemDialog : public QDialog {
    Q_OBJECT
public:
    explicit TextItemDialog(TextItem* item = nullptr, QWidget* parent = nullptr);

    TextEdit* editor() const { return m_editor; }
    QToolBar* toolBar() const { return m_toolBar; }
    // The edited item, or the one created on acceptance in "Add" mode (null before).
    TextItem* textItem() const { return m_item; }

public slots:
    void accept() override;

private slots:
    void updateUi();
    void updateToolBar(const QTextCharFormat& format);

private:
    QPointer<TextItem> m_item;
    TextEdit* m_editor = nullptr;
    QToolBar* m_toolBar = nullptr;
    QAction* m_bold = nullptr;
    QAction* m_italic = nullptr;
    QFontComboBox* m_fontCombo = nullptr;
    QDoubleSpinBox* m_fontSize = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
