#include "platform/printer.h"

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/system.h"

#include <QCoreApplication>
#include <QPrinter>

namespace faroven {

struct TPrinter::Job {
    QPagedPaintDevice* device = nullptr;
    QPainter painter;
    TCanvas canvas;
};

TPrinter::TPrinter() = default;
TPrinter::~TPrinter() {
    if (m_job) Abort();
}

QPrinter* TPrinter::Device() {
    if (!m_device) {
        m_device = std::make_unique<QPrinter>(QPrinter::HighResolution);
        // The printer belongs to the application's print support, so it goes
        // with the application rather than at the end of the process.
        if (QCoreApplication::instance()) qAddPostRoutine([] { Printer()->m_device.reset(); });
    }
    return m_device.get();
}

bool TPrinter::IsDevice(const QPagedPaintDevice* device) const {
    return device && m_device && static_cast<const QPagedPaintDevice*>(m_device.get()) == device;
}

void TPrinter::BeginDoc() { BeginDoc(Device()); }

void TPrinter::BeginDoc(QPagedPaintDevice* device) {
    if (m_job) throw EPrinter(QStringLiteral("Printing is already in progress"));
    if (!device) throw EPrinter(QStringLiteral("There is no printer"));
    auto job = std::make_unique<Job>();
    job->device = device;
    if (!job->painter.begin(device)) {
        QString what = QStringLiteral("The printer cannot start printing");
        if (auto* printer = dynamic_cast<QPrinter*>(device); printer && !printer->outputFileName().isEmpty())
            what = QStringLiteral("Cannot print to \"%1\"").arg(printer->outputFileName());
        throw EPrinter(what);
    }
    job->canvas.AttachPainter(&job->painter, TRect{0, 0, job->painter.device()->width(), job->painter.device()->height()});
    m_job = std::move(job);
}

void TPrinter::NewPage() {
    if (!m_job) throw EPrinter(QStringLiteral("Printing has not begun"));
    if (!m_job->device->newPage()) throw EPrinter(QStringLiteral("The printer cannot start a new page"));
}

void TPrinter::EndDoc() {
    if (!m_job) throw EPrinter(QStringLiteral("Printing has not begun"));
    m_job->canvas.DetachPainter();
    const bool ok = m_job->painter.end();
    m_job.reset();
    if (!ok) throw EPrinter(QStringLiteral("The printer did not take the pages"));
}

void TPrinter::Abort() {
    if (!m_job) return;
    if (auto* printer = dynamic_cast<QPrinter*>(m_job->device)) printer->abort();
    m_job->canvas.DetachPainter();
    m_job->painter.end();
    m_job.reset();
}

QPainter* TPrinter::Painter() { return m_job ? &m_job->painter : nullptr; }

TCanvas* TPrinter::Canvas() {
    if (m_job) return &m_job->canvas;
    if (!m_page) {
        m_page = std::make_unique<TBitmap>();
        // An A4 page at the screen's resolution stands in for the device page.
        m_page->SetSize(Round(210 * ScreenPixelsPerInch() / 25.4), Round(297 * ScreenPixelsPerInch() / 25.4));
    }
    return m_page->Canvas();
}

bool TPrinter::IsPrinterCanvas(const TCanvas* canvas) const {
    if (!canvas) return false;
    if (m_job) return &m_job->canvas == canvas;
    return m_page && m_page->Canvas() == canvas;
}

int TPrinter::PageWidth() const {
    if (m_job) return m_job->painter.device()->width();
    return m_page ? m_page->Width() : Round(210 * ScreenPixelsPerInch() / 25.4);
}
int TPrinter::PageHeight() const {
    if (m_job) return m_job->painter.device()->height();
    return m_page ? m_page->Height() : Round(297 * ScreenPixelsPerInch() / 25.4);
}

TPrinter* Printer() {
    static TPrinter printer;
    return &printer;
}

}  // namespace faroven
