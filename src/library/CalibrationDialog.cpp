#include "CalibrationDialog.h"

#include "AbstractBaseItem.h"
#include "RectCalibItem.h"
#include "SceneDocument.h"
#include "Types.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSpinBox>

#include <cmath>

namespace {

const QString group = QStringLiteral("calibrations");

// The units offered, with their code in Types; others may be typed.
const QList<std::pair<QString, int>>& units() {
    static const QList<std::pair<QString, int>> list = {
        {QStringLiteral("µm"), Types::Micrometre}, {QStringLiteral("mm"), Types::Millimetre},
        {QStringLiteral("cm"), Types::Centimetre}, {QStringLiteral("in"), Types::Inch},
        {QStringLiteral("ft"), Types::Foot},       {QStringLiteral("pt"), Types::Point},
    };
    return list;
}

bool factorAllowed(double factor) {
    return std::isfinite(factor) && factor >= SceneDocument::MinFactor && factor <= SceneDocument::MaxFactor;
}

} // namespace

CalibrationDialog::CalibrationDialog(const Calibration& current, QWidget* parent)
    : QDialog(parent)
    , m_start(current)
    , m_reference(new QComboBox(this))
    , m_fromLength(new QRadioButton(tr("Known length of the reference"), this))
    , m_fromPixels(new QRadioButton(tr("Pixels per unit"), this))
    , m_length(new QDoubleSpinBox(this))
    , m_pixels(new QDoubleSpinBox(this))
    , m_unit(new QComboBox(this))
    , m_decimals(new QSpinBox(this))
    , m_result(new QLabel(this))
    , m_saved(new QComboBox(this))
    , m_name(new QLineEdit(this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)) {
    setWindowTitle(tr("Calibration"));
    m_reference->setObjectName(QStringLiteral("reference"));
    m_length->setObjectName(QStringLiteral("knownLength"));
    m_pixels->setObjectName(QStringLiteral("pixelsPerUnit"));
    m_unit->setObjectName(QStringLiteral("unit"));
    for (QDoubleSpinBox* box : {m_length, m_pixels}) {
        box->setDecimals(6);
        box->setRange(0, 1e9);
    }
    m_length->setValue(100);
    m_pixels->setValue(1 / current.factor);
    m_unit->setEditable(true);
    for (const auto& unit : units())
        m_unit->addItem(unit.first, unit.second);
    m_unit->setCurrentText(current.unitName);
    m_decimals->setRange(0, SceneDocument::MaxDecimals);
    m_decimals->setValue(current.decimals);
    m_fromPixels->setChecked(true);
    m_name->setPlaceholderText(tr("Name, e.g. the objective"));

    auto* saveButton = new QPushButton(tr("Save"), this);
    auto* useButton = new QPushButton(tr("Use"), this);
    auto* removeButton = new QPushButton(tr("Delete"), this);
    auto* savedRow = new QHBoxLayout;
    savedRow->addWidget(m_saved, 1);
    savedRow->addWidget(useButton);
    savedRow->addWidget(removeButton);
    auto* nameRow = new QHBoxLayout;
    nameRow->addWidget(m_name, 1);
    nameRow->addWidget(saveButton);

    auto* form = new QFormLayout(this);
    form->addRow(tr("Reference"), m_reference);
    form->addRow(m_fromLength, m_length);
    form->addRow(m_fromPixels, m_pixels);
    form->addRow(tr("Unit"), m_unit);
    form->addRow(tr("Decimals"), m_decimals);
    form->addRow(tr("Result"), m_result);
    form->addRow(tr("Saved calibrations"), savedRow);
    form->addRow(tr("Save as"), nameRow);
    form->addRow(m_buttons);

    const auto changed = [this] { update(); };
    connect(m_reference, &QComboBox::currentIndexChanged, this, changed);
    connect(m_fromLength, &QRadioButton::toggled, this, changed);
    connect(m_length, &QDoubleSpinBox::valueChanged, this, changed);
    connect(m_pixels, &QDoubleSpinBox::valueChanged, this, changed);
    connect(m_unit, &QComboBox::currentTextChanged, this, changed);
    connect(m_decimals, &QSpinBox::valueChanged, this, changed);
    connect(useButton, &QPushButton::clicked, this, &CalibrationDialog::useSaved);
    connect(saveButton, &QPushButton::clicked, this, &CalibrationDialog::saveNamed);
    connect(removeButton, &QPushButton::clicked, this, &CalibrationDialog::removeNamed);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fillSaved();
    update();
}

bool CalibrationDialog::setReferenceItem(const AbstractBaseItem* item) {
    if (!item)
        return false;
    const QString name = item->getGUIDname();
    if (qobject_cast<const RectCalibItem*>(item)) {
        addReference(tr("Width of %1").arg(name), item->accessmesureP(AbstractBaseItem::Rad1));
        addReference(tr("Height of %1").arg(name), item->accessmesureP(AbstractBaseItem::Rad2));
        addReference(tr("Diagonal of %1").arg(name), item->accessmesureP(AbstractBaseItem::Cust));
        return true;
    }
    if (item->getType() == QLatin1String("LineItem")) {
        addReference(tr("Length of %1").arg(name), item->accessmesureP(AbstractBaseItem::Dist1));
        return true;
    }
    return false;
}

void CalibrationDialog::addReference(const QString& what, double pixels) {
    if (!(pixels > 0) || !std::isfinite(pixels))
        return;
    m_references << pixels;
    m_reference->addItem(tr("%1: %2 pixels").arg(what).arg(pixels, 0, 'f', 2));
    m_fromLength->setChecked(true);
    update();
}

void CalibrationDialog::setKnownLength(double length, const QString& unit) {
    m_fromLength->setChecked(true);
    m_length->setValue(length);
    m_unit->setCurrentText(unit);
}

void CalibrationDialog::setPixelsPerUnit(double pixels, const QString& unit) {
    m_fromPixels->setChecked(true);
    m_pixels->setValue(pixels);
    m_unit->setCurrentText(unit);
}

void CalibrationDialog::setDecimals(int decimals) {
    m_decimals->setValue(decimals);
}

void CalibrationDialog::setSettings(QSettings* settings) {
    m_settings = settings;
    fillSaved();
}

QSettings& CalibrationDialog::settings() {
    if (m_settings)
        return *m_settings;
    if (!m_ownSettings)
        m_ownSettings = new QSettings(this);
    return *m_ownSettings;
}

Calibration CalibrationDialog::calibration() const {
    Calibration c = m_start;
    const int reference = m_reference->currentIndex();
    if (m_fromLength->isChecked())
        c.factor = reference >= 0 && reference < m_references.size()
                       ? m_length->value() / m_references.at(reference)
                       : 0.0;
    else
        c.factor = m_pixels->value() > 0 ? 1.0 / m_pixels->value() : 0.0;
    c.unitName = m_unit->currentText().trimmed();
    const int code = m_unit->findText(c.unitName);
    c.unitCode = code >= 0 ? m_unit->itemData(code).toInt() : -1;
    c.decimals = m_decimals->value();
    return c;
}

bool CalibrationDialog::isValid() const {
    const Calibration c = calibration();
    return factorAllowed(c.factor) && !c.unitName.isEmpty();
}

void CalibrationDialog::update() {
    m_fromLength->setEnabled(!m_references.isEmpty());
    m_reference->setEnabled(!m_references.isEmpty());
    m_length->setEnabled(m_fromLength->isChecked());
    m_pixels->setEnabled(m_fromPixels->isChecked());
    const Calibration c = calibration();
    m_result->setText(isValid() ? tr("1 pixel = %1 %2, %3 pixels per %2")
                                      .arg(QString::number(c.factor, 'g', 6), c.unitName,
                                           QString::number(1 / c.factor, 'g', 6))
                                : tr("Enter a length and a unit"));
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(isValid());
}

void CalibrationDialog::fillSaved() {
    m_saved->clear();
    m_saved->addItems(savedCalibrations(settings()));
}

void CalibrationDialog::useSaved() {
    Calibration c;
    if (!loadCalibration(settings(), m_saved->currentText(), &c))
        return;
    setPixelsPerUnit(1 / c.factor, c.unitName);
    m_decimals->setValue(c.decimals);
}

void CalibrationDialog::saveNamed() {
    // A slash would nest the settings groups.
    const QString name = m_name->text()
                             .trimmed()
                             .replace(QLatin1Char('/'), QLatin1Char('-'))
                             .replace(QLatin1Char('\\'), QLatin1Char('-'));
    if (name.isEmpty() || !isValid())
        return;
    saveCalibration(settings(), name, calibration());
    fillSaved();
    m_saved->setCurrentText(name);
}

void CalibrationDialog::removeNamed() {
    removeCalibration(settings(), m_saved->currentText());
    fillSaved();
}

QStringList CalibrationDialog::savedCalibrations(QSettings& settings) {
    settings.beginGroup(group);
    const QStringList names = settings.childGroups();
    settings.endGroup();
    return names;
}

bool CalibrationDialog::loadCalibration(QSettings& settings, const QString& name, Calibration* calibration) {
    if (name.isEmpty() || !savedCalibrations(settings).contains(name))
        return false;
    settings.beginGroup(group + QLatin1Char('/') + name);
    Calibration c;
    c.factor = settings.value(QStringLiteral("factor")).toDouble();
    c.unitName = settings.value(QStringLiteral("unit")).toString();
    c.unitCode = settings.value(QStringLiteral("unitCode"), -1).toInt();
    c.decimals = settings.value(QStringLiteral("decimals"), 2).toInt();
    settings.endGroup();
    // Settings are edited by hand too.
    if (!factorAllowed(c.factor) || c.unitName.isEmpty() || c.decimals < 0 ||
        c.decimals > SceneDocument::MaxDecimals)
        return false;
    *calibration = c;
    return true;
}

void CalibrationDialog::saveCalibration(QSettings& settings, const QString& name,
                                        const Calibration& calibration) {
    settings.beginGroup(group + QLatin1Char('/') + name);
    settings.setValue(QStringLiteral("factor"), calibration.factor);
    settings.setValue(QStringLiteral("unit"), calibration.unitName);
    settings.setValue(QStringLiteral("unitCode"), calibration.unitCode);
    settings.setValue(QStringLiteral("decimals"), calibration.decimals);
    settings.endGroup();
}

void CalibrationDialog::removeCalibration(QSettings& settings, const QString& name) {
    if (!name.isEmpty())
        settings.remove(group + QLatin1Char('/') + name);
}
