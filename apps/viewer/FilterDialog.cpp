#include "FilterDialog.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QPushButton>

FilterDialog::FilterDialog(AbstractScene* scene, const ImageFilterInfo& filter, QWidget* parent)
    : QDialog(parent)
    , m_scene(scene)
    , m_filter(filter)
    , m_original(scene->image())
    , m_preview(new QCheckBox(tr("Preview"))) {
    setWindowTitle(filter.displayedTitle());
    auto* form = new QFormLayout(this);
    const QStringList names = filter.argumentNames();
    for (int i = 0; i < names.size(); ++i) {
        auto* box = new QDoubleSpinBox;
        box->setObjectName(QString::fromLatin1(filter.name) + QLatin1Char('-') + QString::number(i));
        box->setRange(filter.low, filter.high);
        box->setDecimals(filter.whole ? 0 : 2);
        box->setSingleStep(filter.whole ? 1 : (filter.high - filter.low) / 100);
        box->setValue(filter.defaults.value(i));
        form->addRow(names.at(i).toLower(), box);
        m_boxes << box;
        connect(box, &QDoubleSpinBox::valueChanged, &m_pause, qOverload<>(&QTimer::start));
    }
    if (names.isEmpty())
        form->addRow(new QWidget);
    m_preview->setChecked(true);
    form->addRow(m_preview);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_preview, &QCheckBox::toggled, this, &FilterDialog::updatePreview);
    m_pause.setSingleShot(true);
    m_pause.setInterval(150);
    connect(&m_pause, &QTimer::timeout, this, &FilterDialog::updatePreview);
    m_pause.start();
}

FilterDialog::~FilterDialog() {
    restore();
}

QList<double> FilterDialog::values() const {
    QList<double> values;
    for (const QDoubleSpinBox* box : m_boxes)
        values << box->value();
    return values;
}

void FilterDialog::setValues(const QList<double>& values) {
    for (int i = 0; i < m_boxes.size() && i < values.size(); ++i)
        m_boxes[i]->setValue(values.at(i));
}

void FilterDialog::updatePreview() {
    m_pause.stop();
    if (!m_preview->isChecked() || m_original.isNull() || !m_filter.accepts(values())) {
        restore();
        return;
    }
    QImage preview = m_original;
    m_filter.apply(preview, values());
    SceneUndo::Replay replay;
    m_scene->setImage(preview);
    m_showing = true;
}

void FilterDialog::restore() {
    m_pause.stop();
    if (!m_showing)
        return;
    m_showing = false;
    SceneUndo::Replay replay;
    m_scene->setImage(m_original);
}

void FilterDialog::done(int result) {
    restore();
    QDialog::done(result);
}
