// The main window's work on items and on the image, each change an undoable command.
#include "MainWindow.h"

#include "FilterDialog.h"
#include "SceneView.h"
#include "VickersLoads.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QMenu>
#include <QStatusBar>
#include <QUndoStack>

void MainWindow::deleteSelection() {
    const QList<AbstractBaseItem*> items = selectedItems();
    if (!items.isEmpty())
        m_undo->push(new DeleteItemsCommand(m_scene, items));
}

void MainWindow::editSelectedText() {
    const QList<eTextItem*> texts = selected<eTextItem>();
    if (texts.size() != 1 || !texts.first()->textItem())
        return;
    eTextItem* text = texts.first();
    const ItemSnapshot before = ItemSnapshot::take(text);
    TextItemDialog dialog(text->textItem(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_undo->push(new ItemStateCommand(m_scene, {before}, {ItemSnapshot::take(text)}, tr("Edit text")));
}

void MainWindow::startLinkingText() {
    const QList<eTextItem*> texts = selected<eTextItem>();
    if (texts.size() != 1)
        return;
    m_linkingText = texts.first();
    m_view->startPicking();
    statusBar()->showMessage(tr("Click the item whose measure the text should show (Esc cancels)"));
}

void MainWindow::linkSelectedText(AbstractBaseItem* target) {
    auto* text = qobject_cast<eTextItem*>(m_linkingText.data());
    m_linkingText = nullptr;
    statusBar()->clearMessage();
    if (!text || !target || target == text || qobject_cast<eTextItem*>(target)) {
        statusBar()->showMessage(tr("A text follows the measure of a measuring item"), 4000);
        return;
    }
    const ItemSnapshot before = ItemSnapshot::take(text);
    m_document.setLink(text, SceneDocument::textLinkRole(), target);
    m_undo->push(new ItemStateCommand(m_scene, {before}, {ItemSnapshot::take(text)},
                                      tr("Link %1 to %2").arg(text->getGUIDname(), target->getGUIDname())));
}

void MainWindow::setVickersLoad(double kgf) {
    const QList<VickersPItem*> items = selected<VickersPItem>();
    if (!items.isEmpty())
        m_undo->push(new VickersLoadCommand(m_scene, items, VickersLoads::toNewtons(kgf)));
}

void MainWindow::calibrate() {
    CalibrationDialog dialog(m_scene->calibration(), this);
    for (AbstractBaseItem* item : selectedItems())
        dialog.setReferenceItem(item);
    if (dialog.exec() == QDialog::Accepted && dialog.isValid())
        m_undo->push(new CalibrationCommand(m_scene, dialog.calibration()));
}

void MainWindow::addScaleBar() {
    QString className = QStringLiteral("StampItem");
    auto* stamp = static_cast<StampItem*>(XBaseItemToolCreate(className, nullptr, 0, nullptr));
    m_scene->addItem(stamp);
    stamp->setLinkScene(m_scene);
    stamp->setCalibration(m_scene->calibration());
    stamp->placeInCorner(StampItem::BottomRight);
    stamp->computeMesures(nullptr);
    if (!stamp->endEdition()) {
        delete stamp;
        tell(tr("No scale bar"), tr("A scale bar needs an image or a scene size and a calibration."));
        return;
    }
    stamp->setFlag(QGraphicsItem::ItemIsSelectable, true);
    stamp->setFlag(QGraphicsItem::ItemIsMovable, true);
    m_undo->push(new CreateItemCommand(m_scene, stamp));
}

void MainWindow::applyFilter(const QString& name) {
    const ImageFilterInfo* filter = findImageFilter(name);
    if (!filter || m_scene->image().isNull())
        return;
    FilterDialog dialog(m_scene, *filter, this);
    if (dialog.exec() == QDialog::Accepted)
        m_undo->push(new FilterImageCommand(m_scene, *filter, dialog.values()));
}

// After the item's own entries, what the viewer does with it.
void MainWindow::extendContextMenu(AbstractBaseItem* item, QMenu* menu) {
    if (!item->isSelected()) {
        m_scene->clearSelection();
        item->setSelected(true);
    }
    menu->addSeparator();
    if (qobject_cast<eTextItem*>(item)) {
        menu->addAction(m_actions.value("editText"));
        menu->addAction(m_actions.value("linkText"));
    }
    if (qobject_cast<VickersPItem*>(item))
        menu->addMenu(m_loadMenu);
    if (item->getType() == QLatin1String("LineItem") || qobject_cast<RectCalibItem*>(item))
        menu->addAction(tr("Calibrate from this item…"), this, &MainWindow::calibrate);
    menu->addAction(m_actions.value("delete"));
}
