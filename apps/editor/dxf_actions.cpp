#include "dxf_actions.h"

#include "dxf/dxf_export.h"
#include "dxf/dxf_import.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QProgressDialog>

using namespace faroven;

namespace {
constexpr double kPixelsPerMm = 96 / 25.4;
const char* const kDxfFilter = QT_TRANSLATE_NOOP("DxfActions", "DXF drawing (*.dxf)");
const char* const kOutlineFilter = QT_TRANSLATE_NOOP("DxfActions", "DXF drawing, texts as outlines (*.dxf)");
const char* const kInterchangeFilter = QT_TRANSLATE_NOOP("DxfActions", "DXF for CAD programs (*.dxf)");
}  // namespace

DxfActions::DxfActions(TMyCAD* cad, QWidget* window, QMenu* menu) : QObject(window), m_cad(cad), m_window(window) {
    QAction* importAction = menu->addAction(tr("Import &DXF…"));
    importAction->setToolTip(tr("Add the drawing of a DXF file, in millimetres, to this drawing"));
    connect(importAction, &QAction::triggered, this, &DxfActions::importDxf);
    m_exportAction = new QAction(tr("D&XF…"), this);
    m_exportAction->setToolTip(tr("The drawing as a DXF file in millimetres"));
    connect(m_exportAction, &QAction::triggered, this, &DxfActions::exportDxf);
}

void DxfActions::importDxf() {
    const QString fileName = QFileDialog::getOpenFileName(m_window, tr("Import DXF"), QString(),
                                                          tr(kDxfFilter) + QStringLiteral(";;") + tr("All files (*)"));
    if (!fileName.isEmpty()) importFile(fileName);
}

bool DxfActions::importFile(const QString& fileName) {
    const QString name = QFileInfo(fileName).fileName();
    QStringList skipped;
    const int before = m_cad->GetShapesCount();
    try {
        TDXF2DImport importer(fileName, m_cad);
        importer.SetExtended(true);
        // Millimetres at 96 pixels per inch, y down, the drawing's top left
        // corner a little inside the view.
        importer.SetScalex(float(kPixelsPerMm));
        importer.SetScaley(float(-kPixelsPerMm));
        const double zoom = m_cad->Zoom();
        const QPoint corner = m_cad->visibleRegion().boundingRect().topLeft();
        const int x = int(corner.x() / zoom) + 20, y = int(corner.y() / zoom) + 20;
        importer.SetDestRegion(TRect{x, y, x + 1, y + 1});
        QProgressDialog progress(tr("Importing \"%1\"…").arg(name), QString(), 0, 0, m_window);
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(400);
        importer.OnProgress = [&](int entities) {
            progress.setLabelText(tr("Importing \"%1\": %2 entities").arg(name).arg(entities));
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        };
        importer.ReadDXF();
        skipped = importer.Skipped();
    } catch (const EDXFImportError& error) {
        QMessageBox::critical(m_window, tr("Import DXF"),
                              tr("Cannot import \"%1\": line %2: %3\nThe drawing is unchanged.")
                                  .arg(QDir::toNativeSeparators(fileName))
                                  .arg(error.Line())
                                  .arg(error.Message()));
        return false;
    } catch (const Exception& error) {
        QMessageBox::critical(m_window, tr("Import DXF"),
                              tr("Cannot import \"%1\".\n\n%2\nThe drawing is unchanged.")
                                  .arg(QDir::toNativeSeparators(fileName), error.Message()));
        return false;
    }
    emit changed();
    if (!skipped.isEmpty()) {
        QMessageBox box(QMessageBox::Information, tr("Import DXF"),
                        tr("%1 shapes imported from \"%2\"; %3 entities were left out.")
                            .arg(m_cad->GetShapesCount() - before)
                            .arg(name)
                            .arg(skipped.size()),
                        QMessageBox::Ok, m_window);
        box.setDetailedText(skipped.join(u'\n'));
        box.exec();
    }
    return m_cad->GetShapesCount() > before;
}

void DxfActions::exportDxf() {
    QString filter = tr(kInterchangeFilter);
    QString fileName = QFileDialog::getSaveFileName(
        m_window, tr("Export as DXF"), QString(),
        QStringList{tr(kInterchangeFilter), tr(kDxfFilter), tr(kOutlineFilter)}.join(QStringLiteral(";;")), &filter);
    if (fileName.isEmpty()) return;
    if (QFileInfo(fileName).suffix().isEmpty()) fileName += QStringLiteral(".dxf");
    TDxfExportOptions options;
    options.GlyphOutlines = filter == tr(kOutlineFilter);
    options.Interchange = filter == tr(kInterchangeFilter);
    try {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        m_cad->SaveToDxf(fileName, options);
        QApplication::restoreOverrideCursor();
    } catch (const Exception& error) {
        QApplication::restoreOverrideCursor();
        QMessageBox::critical(m_window, tr("Export as DXF"),
                              tr("Cannot export to \"%1\".\n\n%2").arg(QDir::toNativeSeparators(fileName), error.Message()));
    }
}
