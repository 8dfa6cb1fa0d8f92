#pragma once

#include "Calibration.h"
#include "graphicsobjects_export.h"

#include <QDialog>
#include <QList>

class AbstractBaseItem;
class QButtonGroup;
class QComboBox;
class QDialogButtonBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSettings;
class QSpinBox;

// Calibrates a scene: from a length on the image whose true length the user knows (a drawn line,
// or a side or the diagonal of a RectCalibItem), or from a typed number of pixels per unit. Named
// calibrations (one per objective, say) are kept in QSettings under "calibrations/<name>".
class GRAPHICSOBJECTS_EXPORT CalibrationDialog : public QDialog {
    Q_OBJECT
public:
    explicit CalibrationDialog(const Calibration& current, QWidget* parent = nullptr);

    // The lengths an item offers to calibrate from: a line's length, a calibration rectangle's
    // width, height and diagonal. False when it offers none.
    bool setReferenceItem(const AbstractBaseItem* item);
    // A length on the image, in pixels, named for the user.
    void addReference(const QString& what, double pixels);

    // The user's choices, as code sets them.
    void setKnownLength(double length, const QString& unit);
    void setPixelsPerUnit(double pixels, const QString& unit);
    void setDecimals(int decimals);
    // The settings holding the named calibrations; the application's by default.
    void setSettings(QSettings* settings);

    // The calibration the dialog gives; its factor is checked (finite, from 1e-12 to 1e12).
    Calibration calibration() const;
    bool isValid() const;

    static QStringList savedCalibrations(QSettings& settings);
    static bool loadCalibration(QSettings& settings, const QString& name, Calibration* calibration);
    static void saveCalibration(QSettings& settings, const QString& name, const Calibration& calibration);
    static void removeCalibration(QSettings& settings, const QString& name);

private:
    void update();
    void fillSaved();
    void useSaved();
    void saveNamed();
    void removeNamed();
    QSettings& settings();

    Calibration m_start;
    QList<double> m_references; // pixels, by entry of m_reference
    QComboBox* m_reference;
    QRadioButton* m_fromLength;
    QRadioButton* m_fromPixels;
    QDoubleSpinBox* m_length;
    QDoubleSpinBox* m_pixels;
    QComboBox* m_unit;
    QSpinBox* m_decimals;
    QLabel* m_result;
    QComboBox* m_saved;
    QLineEdit* m_name;
    QDialogButtonBox* m_buttons;
    QSettings* m_settings = nullptr;
    QSettings* m_ownSettings = nullptr;
};
