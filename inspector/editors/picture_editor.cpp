#include "inspector/editors/picture_editor.h"

#include "platform/types.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QImageReader>
#include <QImageWriter>
#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace faroven {

namespace {
// The picture scaled down to fit (never up, so small pictures stay sharp),
// centred; "(None)" when there is none.
class PicturePreview : public QWidget {
public:
    explicit PicturePreview(const TBitmap& picture) : m_picture(picture) {
        setObjectName(QStringLiteral("preview"));
        setMinimumSize(240, 180);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().base());
        painter.setPen(palette().mid().color());
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
        const QImage& image = m_picture.Image();
        if (image.isNull()) {
            painter.setPen(palette().placeholderText().color());
            painter.drawText(rect(), Qt::AlignCenter, tr("(None)"));
            return;
        }
        const QRect room = rect().adjusted(4, 4, -4, -4);
        QSize shown = image.size();
        if (shown.width() > room.width() || shown.height() > room.height())
            shown.scale(room.size(), Qt::KeepAspectRatio);
        QRect target(QPoint(), shown.expandedTo(QSize(1, 1)));
        target.moveCenter(room.center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(target, image);
    }

private:
    const TBitmap& m_picture;
};

QString shownPath(const QString& path) { return QDir::toNativeSeparators(path); }
}  // namespace

TPictureEditor::TPictureEditor(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Picture"));
    m_preview = new PicturePreview(m_picture);
    m_sizeLabel = new QLabel;
    m_sizeLabel->setObjectName(QStringLiteral("sizeLabel"));
    auto load = new QPushButton(tr("&Load…"));
    load->setObjectName(QStringLiteral("loadButton"));
    m_save = new QPushButton(tr("&Save…"));
    m_save->setObjectName(QStringLiteral("saveButton"));
    m_clear = new QPushButton(tr("C&lear"));
    m_clear->setObjectName(QStringLiteral("clearButton"));
    auto buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto side = new QVBoxLayout;
    side->addWidget(load);
    side->addWidget(m_save);
    side->addWidget(m_clear);
    side->addStretch(1);
    auto layout = new QGridLayout(this);
    layout->addWidget(m_preview, 0, 0);
    layout->addLayout(side, 0, 1);
    layout->addWidget(m_sizeLabel, 1, 0, 1, 2);
    layout->addWidget(buttons, 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(0, 1);
    setMinimumSize(420, 320);
    resize(560, 420);

    connect(load, &QPushButton::clicked, this, &TPictureEditor::chooseFileToLoad);
    connect(m_save, &QPushButton::clicked, this, &TPictureEditor::chooseFileToSave);
    connect(m_clear, &QPushButton::clicked, this, &TPictureEditor::Clear);
    pictureChanged();
}

TPictureEditor::~TPictureEditor() = default;

void TPictureEditor::SetPicture(const TBitmap& picture) {
    m_picture.Assign(picture);
    pictureChanged();
}

bool TPictureEditor::LoadFromFile(const QString& path, QString* error) {
    QImageReader reader(path);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        return fail(tr("Cannot read the picture \"%1\": %2.").arg(shownPath(path), reader.errorString()), error);
    if (image.hasAlphaChannel()) {
        QImage flat(image.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter(&flat).drawImage(0, 0, image);
        image = flat;
    }
    m_picture.SetImage(image);
    pictureChanged();
    return true;
}

bool TPictureEditor::SaveToFile(const QString& path, QString* error) {
    if (m_picture.Empty()) return fail(tr("There is no picture to save as \"%1\".").arg(shownPath(path)), error);
    if (QFileInfo(path).suffix().compare(QLatin1String("bmp"), Qt::CaseInsensitive) == 0) {
        try {
            m_picture.SaveToFile(path);
            return true;
        } catch (const Exception& e) {
            return fail(tr("Cannot write the picture \"%1\": %2").arg(shownPath(path), e.Message()), error);
        }
    }
    QImageWriter writer(path);
    if (!writer.write(m_picture.Image()))
        return fail(tr("Cannot write the picture \"%1\": %2.").arg(shownPath(path), writer.errorString()), error);
    return true;
}

void TPictureEditor::Clear() {
    m_picture.Assign(nullptr);
    pictureChanged();
}

bool TPictureEditor::fail(const QString& message, QString* error) {
    if (error) *error = message;
    else if (OnError) OnError(message);
    else QMessageBox::warning(this, windowTitle(), message);
    return false;
}

void TPictureEditor::pictureChanged() {
    m_sizeLabel->setText(m_picture.Empty() ? tr("(none)")
                                           : tr("%1 × %2").arg(m_picture.Width()).arg(m_picture.Height()));
    m_save->setEnabled(!m_picture.Empty());
    m_clear->setEnabled(!m_picture.Empty());
    m_preview->update();
}

void TPictureEditor::chooseFileToLoad() {
    QStringList patterns;
    for (const QByteArray& format : QImageReader::supportedImageFormats())
        patterns << QStringLiteral("*.") + QString::fromLatin1(format);
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Load picture"), QString(),
        tr("Pictures (%1);;All files (*)").arg(patterns.join(QLatin1Char(' '))));
    if (!path.isEmpty()) LoadFromFile(path);
}

void TPictureEditor::chooseFileToSave() {
    const QStringList filters = {tr("PNG (*.png)"), tr("Bitmap (*.bmp)"), tr("JPEG (*.jpg *.jpeg)")};
    const QStringList suffixes = {QStringLiteral(".png"), QStringLiteral(".bmp"), QStringLiteral(".jpg")};
    QString selected;
    QString path = QFileDialog::getSaveFileName(this, tr("Save picture"), QString(),
                                                filters.join(QStringLiteral(";;")), &selected);
    if (path.isEmpty()) return;
    // The format comes from the suffix: a name typed without one gets the chosen filter's.
    if (QFileInfo(path).suffix().isEmpty()) path += suffixes.value(std::max(0, int(filters.indexOf(selected))));
    SaveToFile(path);
}

bool TPictureEditor::Edit(TBitmap& picture, QWidget* parent, const QString& title) {
    TPictureEditor editor(parent);
    if (!title.isEmpty()) editor.setWindowTitle(title);
    editor.SetPicture(picture);
    if (editor.exec() != QDialog::Accepted) return false;
    const TBitmap& edited = editor.Picture();
    if (edited.Image() == picture.Image() && edited.Width() == picture.Width() && edited.Height() == picture.Height())
        return false;
    picture.Assign(edited);
    return true;
}

}  // namespace faroven
