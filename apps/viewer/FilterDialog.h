#pragma once

#include <QDialog>
#include <QImage>
#include <QList>
#include <QTimer>

class AbstractScene;
class QCheckBox;
class QDoubleSpinBox;
struct ImageFilterInfo;

// The arguments of one image filter, with a live preview on the scene: the filtered image is
// shown in place while the dialog is open, and the original comes back when it closes. The
// caller applies the accepted filter (as an undoable command).
class FilterDialog : public QDialog {
    Q_OBJECT
public:
    FilterDialog(AbstractScene* scene, const ImageFilterInfo& filter, QWidget* parent = nullptr);
    ~FilterDialog() override;

    QList<double> values() const;
    void setValues(const QList<double>& values);
    // Shows the preview now rather than after the short pause that gathers quick changes.
    void updatePreview();

    void done(int result) override;

private:
    void restore();

    AbstractScene* m_scene;
    const ImageFilterInfo& m_filter;
    QImage m_original;
    QList<QDoubleSpinBox*> m_boxes;
    QCheckBox* m_preview;
    QTimer m_pause;
    bool m_showing = false; // the scene shows the preview
};
