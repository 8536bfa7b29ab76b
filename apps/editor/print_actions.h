// The editor's printing commands in the File menu: the page setup dialog,
// the print preview and printing, and exporting the page as a picture (PNG,
// JPG, BMP, SVG, WMF) or a PDF document in the "Export as" submenu.
#pragma once

#include "cad/canvas/mycad.h"
#include "document_state.h"

#include <QObject>
#include <vector>

class QAction;
class QMenu;
class QWidget;

class PrintActions : public QObject {
    Q_OBJECT
public:
    enum class Picture { Png, Jpg, Bmp, Svg, Pdf, Wmf };

    // Adds the page setup, print preview and print items to menu and one
    // item per picture kind to exportMenu. document gives the drawing's name.
    PrintActions(faroven::TMyCAD* cad, const DocumentState* document, QWidget* window, QMenu* menu,
                 QMenu* exportMenu);

    // Writes the page as that picture under a wait cursor; a failure is
    // shown in a message box and leaves an existing file as it was. True
    // when the file was written.
    bool exportTo(Picture picture, const QString& fileName, int jpgQuality = 90);
    // The file the export proposes: the drawing's file with the picture's
    // suffix, or "Untitled" with it for a drawing never saved.
    QString suggestedFileName(Picture picture) const;
    // Enables the pixel pictures (PNG, JPG, BMP) while the page at the
    // current zoom is small enough for one; runs whenever the submenu opens.
    void update();

signals:
    // The page setup dialog changed the page settings.
    void pageChanged();

private:
    void pageSetup();
    void printPreview();
    void print();
    // Asks for the file (and the JPG quality), then exports.
    void exportPicture(Picture picture);
    void showError(const QString& title, const QString& message);

    faroven::TMyCAD* m_cad;
    const DocumentState* m_document;
    QWidget* m_window;
    int m_jpgQuality = 90;
    std::vector<QAction*> m_pixelActions;
};
