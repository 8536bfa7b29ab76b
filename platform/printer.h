// TPrinter: the current printer. Outside a print job its canvas draws into a
// page-sized bitmap that stands in for the device page; between BeginDoc and
// EndDoc it draws on the pages of a Qt print device, so the system's printers
// and printing to a PDF file work alike. Shapes ask IsPrinterCanvas to print
// in the printer's colours.
#pragma once

#include "platform/types.h"

#include <QPainter>
#include <memory>

class QPagedPaintDevice;
class QPrinter;

namespace faroven {

class TBitmap;
class TCanvas;

// Printing cannot begin or go on (no printer, no output file, a job already running).
class EPrinter : public Exception { using Exception::Exception; };

class TPrinter {
public:
    TPrinter();
    ~TPrinter();
    TPrinter(const TPrinter&) = delete;
    TPrinter& operator=(const TPrinter&) = delete;

    // The system printer Qt prints through, made on first use at high resolution.
    QPrinter* Device();
    // Whether device is Device() (without making it).
    bool IsDevice(const QPagedPaintDevice* device) const;
    // Starts a job on Device() or on another paged device (a print preview's
    // printer, a PDF writer). Canvas() then draws on the first page with its
    // origin at the corner of the paper and one unit per device pixel.
    // EPrinter when a job is running or the device cannot be painted on.
    void BeginDoc();
    void BeginDoc(QPagedPaintDevice* device);
    void NewPage();
    // Ends the job: the pages go to the printer or file.
    void EndDoc();
    // Ends the job without printing what is not yet sent.
    void Abort();
    bool Printing() const { return m_job != nullptr; }
    // The painter of the running job (nullptr outside a job).
    QPainter* Painter();

    TCanvas* Canvas();
    // Whether canvas is the printer's (without creating the stand-in page).
    bool IsPrinterCanvas(const TCanvas* canvas) const;
    // Device capability NUMCOLORS: 2 on a black-and-white printer.
    int NumColors() const { return m_numColors; }
    void SetNumColors(int n) { m_numColors = n; }
    // The page in device pixels: the job's paper, else the stand-in A4 page.
    int PageWidth() const;
    int PageHeight() const;

private:
    struct Job;
    int m_numColors = 16777216;
    std::unique_ptr<QPrinter> m_device;
    std::unique_ptr<TBitmap> m_page;
    std::unique_ptr<Job> m_job;
};
TPrinter* Printer();

}  // namespace faroven
