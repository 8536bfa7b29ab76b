// The editor's "Page setup" dialog: the paper (a standard size or a custom
// one in millimetres) and its orientation, the header and footer with their
// fonts, alignments and distances, the printed border and whether the
// background prints. OK applies all of it to the canvas at once; Cancel
// leaves the canvas as it was. The fields have object names so that they can
// be found and set from outside.
#pragma once

#include "cad/canvas/mycad.h"
#include "page_settings.h"

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QSpinBox;

class PageSetupDialog : public QDialog {
    Q_OBJECT
public:
    explicit PageSetupDialog(faroven::TMyCAD* cad, QWidget* parent = nullptr);
    // The settings the fields hold now.
    PageSettings settings() const;
    // After OK: whether the canvas's settings changed.
    bool changedPage() const { return m_changed; }

    void accept() override;

private:
    // The fields of a header or a footer.
    struct BandFields {
        QLineEdit* text = nullptr;
        QPushButton* font = nullptr;
        QComboBox* alignment = nullptr;
        QSpinBox* distance = nullptr;
        faroven::TFont chosenFont;
    };

    QGroupBox* paperGroup();
    // labels: text, font, alignment and distance.
    QGroupBox* bandGroup(BandFields& band, const QString& title, const QString& prefix, const QStringList& labels,
                         const PageSettings::Band& value);
    QGroupBox* borderGroup(const PageSettings& value);
    void chooseFont(BandFields& band, const QString& title);
    // Shows the standard size of the chosen style; a custom size is editable.
    void styleChosen();
    // Turns the paper: a standard size is shown turned, a custom one swaps its sides.
    void orientationChosen();

    faroven::TMyCAD* m_cad;
    QComboBox* m_style = nullptr;
    QComboBox* m_orientation = nullptr;
    QSpinBox* m_width = nullptr;
    QSpinBox* m_height = nullptr;
    BandFields m_head;
    BandFields m_foot;
    QGroupBox* m_border = nullptr;
    QSpinBox* m_borderLeft = nullptr;
    QSpinBox* m_borderTop = nullptr;
    QSpinBox* m_borderRight = nullptr;
    QSpinBox* m_borderBottom = nullptr;
    QCheckBox* m_background = nullptr;
    faroven::TPrinterOrientation m_shownOrientation = faroven::poPortrait;
    bool m_changed = false;
};
