#include "page_setup_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace faroven;

namespace {
const char* const kStyleNames[] = {"A0", "A1", "A2", "A3", "A4", "A5", "B3", "B4", "B5"};
// The largest custom paper side in millimetres.
constexpr int kMaxPaperMm = 5000;
// Wide enough for a header line and a font's name.
constexpr int kFieldWidth = 220;

QSpinBox* millimetres(const QString& name, int minimum, int maximum, int value) {
    auto box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(minimum, maximum);
    box->setValue(value);
    box->setSuffix(QStringLiteral(" mm"));
    return box;
}

// QFontDialog works in points, as TFont's Size does.
QFont toQFont(const TFont& font) {
    QFont f(font.Name());
    f.setPointSize(std::max(1, font.Size()));
    f.setBold(font.Style().Contains(fsBold));
    f.setItalic(font.Style().Contains(fsItalic));
    f.setUnderline(font.Style().Contains(fsUnderline));
    f.setStrikeOut(font.Style().Contains(fsStrikeOut));
    return f;
}

// Size and styles from the dialog, and the face when another one was chosen
// than the dialog showed at first (it shows a face that is not installed as
// the one standing in for it); colour, character set and pitch stay.
void takeQFont(TFont& font, const QFont& f, const QString& shownFamily) {
    if (f.family() != shownFamily) font.SetName(f.family());
    font.SetSize(f.pointSize() > 0 ? f.pointSize() : std::max(1, qRound(f.pointSizeF())));
    TFontStyles styles;
    if (f.bold()) styles.Include(fsBold);
    if (f.italic()) styles.Include(fsItalic);
    if (f.underline()) styles.Include(fsUnderline);
    if (f.strikeOut()) styles.Include(fsStrikeOut);
    font.SetStyle(styles);
}

QString describe(const TFont& font) {
    QString text = QStringLiteral("%1, %2 pt").arg(font.Name()).arg(font.Size());
    if (font.Style().Contains(fsBold)) text += QObject::tr(", bold");
    if (font.Style().Contains(fsItalic)) text += QObject::tr(", italic");
    return text;
}
}  // namespace

PageSetupDialog::PageSetupDialog(TMyCAD* cad, QWidget* parent) : QDialog(parent), m_cad(cad) {
    setWindowTitle(tr("Page setup"));
    const PageSettings current = PageSettings::of(cad);

    auto grid = new QGridLayout;
    grid->addWidget(paperGroup(), 0, 0);
    grid->addWidget(borderGroup(current), 0, 1);
    // Each field its own mnemonic, so Alt and a letter reaches every one.
    grid->addWidget(bandGroup(m_head, tr("Header"), QStringLiteral("head"),
                              {tr("&Text:"), tr("&Font:"), tr("&Alignment:"), tr("Distance to to&p:")}, current.head),
                    1, 0);
    grid->addWidget(bandGroup(m_foot, tr("Footer"), QStringLiteral("foot"),
                              {tr("T&ext:"), tr("Fo&nt:"), tr("A&lignment:"), tr("Distance to botto&m:")}, current.foot),
                    1, 1);
    m_background = new QCheckBox(tr("Print the bac&kground (colour and picture)"));
    m_background->setObjectName("printBackground");
    m_background->setChecked(current.background);
    grid->addWidget(m_background, 2, 0, 1, 2);

    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);

    // The paper last, so that choosing it shows the canvas's own size.
    m_shownOrientation = current.orientation;
    m_orientation->setCurrentIndex(current.orientation == poLandscape ? 1 : 0);
    m_style->setCurrentIndex(int(current.style));
    m_width->setValue(int(current.width));
    m_height->setValue(int(current.height));
    styleChosen();
    connect(m_style, &QComboBox::currentIndexChanged, this, &PageSetupDialog::styleChosen);
    connect(m_orientation, &QComboBox::currentIndexChanged, this, &PageSetupDialog::orientationChosen);
}

QGroupBox* PageSetupDialog::paperGroup() {
    auto group = new QGroupBox(tr("Paper"));
    auto form = new QFormLayout(group);
    m_style = new QComboBox;
    m_style->setObjectName("paperStyle");
    for (const char* name : kStyleNames) m_style->addItem(name);
    m_style->addItem(tr("Custom"));
    m_orientation = new QComboBox;
    m_orientation->setObjectName("orientation");
    m_orientation->addItems({tr("Portrait"), tr("Landscape")});
    m_width = millimetres("paperWidth", 1, kMaxPaperMm, 210);
    m_height = millimetres("paperHeight", 1, kMaxPaperMm, 297);
    form->addRow(tr("&Size:"), m_style);
    form->addRow(tr("&Orientation:"), m_orientation);
    form->addRow(tr("&Width:"), m_width);
    form->addRow(tr("&Height:"), m_height);
    return group;
}

QGroupBox* PageSetupDialog::bandGroup(BandFields& band, const QString& title, const QString& prefix,
                                      const QStringList& labels, const PageSettings::Band& value) {
    auto group = new QGroupBox(title);
    auto form = new QFormLayout(group);
    band.text = new QLineEdit(value.text);
    band.text->setObjectName(prefix + "Text");
    band.text->setMinimumWidth(kFieldWidth);
    band.chosenFont.Assign(value.font);
    band.font = new QPushButton(describe(band.chosenFont));
    band.font->setObjectName(prefix + "Font");
    connect(band.font, &QPushButton::clicked, this, [this, &band, title] { chooseFont(band, title); });
    band.alignment = new QComboBox;
    band.alignment->setObjectName(prefix + "Alignment");
    band.alignment->addItem(tr("Left"), int(taLeftJustify));
    band.alignment->addItem(tr("Centre"), int(taCenter));
    band.alignment->addItem(tr("Right"), int(taRightJustify));
    band.alignment->setCurrentIndex(band.alignment->findData(int(value.alignment)));
    band.distance = millimetres(prefix + "Distance", 0, 255, value.distance);
    form->addRow(labels.value(0), band.text);
    form->addRow(labels.value(1), band.font);
    form->addRow(labels.value(2), band.alignment);
    form->addRow(labels.value(3), band.distance);
    return group;
}

QGroupBox* PageSetupDialog::borderGroup(const PageSettings& value) {
    m_border = new QGroupBox(tr("Print a &border"));
    m_border->setObjectName("printBorder");
    m_border->setCheckable(true);
    m_border->setChecked(value.border);
    auto form = new QFormLayout(m_border);
    m_borderLeft = millimetres("borderLeft", 0, 255, value.borderLeft);
    m_borderTop = millimetres("borderTop", 0, 255, value.borderTop);
    m_borderRight = millimetres("borderRight", 0, 255, value.borderRight);
    m_borderBottom = millimetres("borderBottom", 0, 255, value.borderBottom);
    form->addRow(tr("Left:"), m_borderLeft);
    form->addRow(tr("Top:"), m_borderTop);
    form->addRow(tr("Right:"), m_borderRight);
    form->addRow(tr("Bottom:"), m_borderBottom);
    return m_border;
}

void PageSetupDialog::chooseFont(BandFields& band, const QString& title) {
    QFontDialog dialog(toQFont(band.chosenFont), this);
    dialog.setWindowTitle(tr("%1 font").arg(title));
    const QString shownFamily = dialog.currentFont().family();
    if (dialog.exec() != QDialog::Accepted) return;
    takeQFont(band.chosenFont, dialog.selectedFont(), shownFamily);
    band.font->setText(describe(band.chosenFont));
}

void PageSetupDialog::styleChosen() {
    const auto style = TPageStyle(m_style->currentIndex());
    const bool custom = style == CustomerPage;
    m_width->setEnabled(custom);
    m_height->setEnabled(custom);
    if (custom) return;
    const QSize size = standardPageSize(style, TPrinterOrientation(m_orientation->currentIndex()));
    m_width->setValue(size.width());
    m_height->setValue(size.height());
}

void PageSetupDialog::orientationChosen() {
    const auto orientation = TPrinterOrientation(m_orientation->currentIndex());
    if (orientation == m_shownOrientation) return;
    m_shownOrientation = orientation;
    if (TPageStyle(m_style->currentIndex()) != CustomerPage) {
        styleChosen();
        return;
    }
    const int width = m_width->value();
    m_width->setValue(m_height->value());
    m_height->setValue(width);
}

PageSettings PageSetupDialog::settings() const {
    PageSettings s;
    s.style = TPageStyle(m_style->currentIndex());
    s.orientation = TPrinterOrientation(m_orientation->currentIndex());
    s.width = uint32_t(m_width->value());
    s.height = uint32_t(m_height->value());
    for (auto [band, fields] : {std::pair{&s.head, &m_head}, std::pair{&s.foot, &m_foot}}) {
        band->text = fields->text->text();
        band->font.Assign(fields->chosenFont);
        band->alignment = TAlignment(fields->alignment->currentData().toInt());
        band->distance = fields->distance->value();
    }
    s.border = m_border->isChecked();
    s.borderLeft = m_borderLeft->value();
    s.borderTop = m_borderTop->value();
    s.borderRight = m_borderRight->value();
    s.borderBottom = m_borderBottom->value();
    s.background = m_background->isChecked();
    return s;
}

void PageSetupDialog::accept() {
    const PageSettings wanted = settings();
    m_changed = !(wanted == PageSettings::of(m_cad));
    if (m_changed) wanted.applyTo(m_cad);
    QDialog::accept();
}
