// TPictureEditor: the modal editor of a picture (the canvas's BkBitmap, the
// picture of image shapes). A preview scaled down to fit, the size in
// pixels, Load… (any image format Qt reads), Save… and Clear. A file that
// cannot be read or written is reported by name and the picture stays as it
// was.
//
// Child widgets, by object name: "preview" (the picture's view), "sizeLabel"
// (QLabel: "640 × 480", or "(none)"), "loadButton", "saveButton",
// "clearButton".
#pragma once

#include "platform/bitmap.h"

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;

namespace faroven {

class TPictureEditor : public QDialog {
    Q_OBJECT
public:
    explicit TPictureEditor(QWidget* parent = nullptr);
    ~TPictureEditor() override;

    void SetPicture(const TBitmap& picture);
    const TBitmap& Picture() const { return m_picture; }

    // Reads an image file into the picture. Transparent parts become white,
    // as the picture has no alpha. On failure the picture is kept and false
    // returned; the message, which names the file, goes to *error when given,
    // else to OnError.
    bool LoadFromFile(const QString& path, QString* error = nullptr);
    // Writes the picture: a ".bmp" file as the library's BMP, any other
    // suffix in the format Qt knows by it. Failures are reported as by LoadFromFile.
    bool SaveToFile(const QString& path, QString* error = nullptr);
    // Leaves no picture.
    void Clear();

    QLabel* SizeLabel() const { return m_sizeLabel; }

    // Reports a file that could not be read or written; a message box when not set.
    std::function<void(const QString& message)> OnError;

    // Shows the dialog on picture; true when OK was pressed and the picture
    // changed (then picture holds the new one).
    static bool Edit(TBitmap& picture, QWidget* parent = nullptr, const QString& title = QString());

private:
    void chooseFileToLoad();
    void chooseFileToSave();
    bool fail(const QString& message, QString* error);
    void pictureChanged();

    TBitmap m_picture;
    QWidget* m_preview = nullptr;
    QLabel* m_sizeLabel = nullptr;
    QPushButton* m_save = nullptr;
    QPushButton* m_clear = nullptr;
};

}  // namespace faroven
