#include "page_settings.h"

using namespace faroven;

namespace {
PageSettings::Band band(const QString& text, TFont* font, TAlignment alignment, int distance) {
    PageSettings::Band b;
    b.text = text;
    // Assign copies the font's values without the canvas's change handler.
    b.font.Assign(*font);
    b.alignment = alignment;
    b.distance = distance;
    return b;
}

bool sameFont(const TFont& a, const TFont& b) {
    return a.Name() == b.Name() && a.Size() == b.Size() && a.Color() == b.Color() && a.Style() == b.Style() &&
           a.Charset() == b.Charset() && a.Pitch() == b.Pitch();
}

bool operator==(const PageSettings::Band& a, const PageSettings::Band& b) {
    return a.text == b.text && sameFont(a.font, b.font) && a.alignment == b.alignment && a.distance == b.distance;
}
}  // namespace

PageSettings PageSettings::of(TMyCAD* cad) {
    PageSettings s;
    s.style = cad->PageStyle();
    s.orientation = cad->PageOrientation();
    s.width = cad->PageWidth();
    s.height = cad->PageHeight();
    s.head = band(cad->PageHead(), cad->PageHeadFont(), cad->PageHeadAlignment(), cad->PageHeadToTop());
    s.foot = band(cad->PageFoot(), cad->PageFootFont(), cad->PageFootAlignment(), cad->PageFootToBottom());
    s.border = cad->PrintABorder();
    s.borderLeft = cad->PrintABordertoLeft();
    s.borderTop = cad->PrintABordertoTop();
    s.borderRight = cad->PrintABordertoRight();
    s.borderBottom = cad->PrintABordertoBottom();
    s.background = cad->PrintBackground();
    return s;
}

void PageSettings::applyTo(TMyCAD* cad) const {
    // The canvas sizes a standard style by the orientation set before it.
    cad->SetPageOrientation(orientation);
    if (style != CustomerPage) {
        cad->SetPageStyle(style);
    } else {
        cad->SetPageWidth(width);
        cad->SetPageHeight(height);
        const TRect page = cad->PageRectAt(cad->Zoom());
        cad->resize(page.Width(), page.Height());
    }
    cad->SetPageHead(head.text);
    cad->SetPageHeadFont(head.font);
    cad->SetPageHeadAlignment(head.alignment);
    cad->SetPageHeadToTop(head.distance);
    cad->SetPageFoot(foot.text);
    cad->SetPageFootFont(foot.font);
    cad->SetPageFootAlignment(foot.alignment);
    cad->SetPageFootToBottom(foot.distance);
    cad->SetPrintABorder(border);
    cad->SetPrintABordertoLeft(borderLeft);
    cad->SetPrintABordertoTop(borderTop);
    cad->SetPrintABordertoRight(borderRight);
    cad->SetPrintABordertoBottom(borderBottom);
    cad->SetPrintBackground(background);
    cad->Invalidate();
}

bool operator==(const PageSettings& a, const PageSettings& b) {
    return a.style == b.style && a.orientation == b.orientation && a.width == b.width && a.height == b.height &&
           a.head == b.head && a.foot == b.foot && a.border == b.border && a.borderLeft == b.borderLeft &&
           a.borderTop == b.borderTop && a.borderRight == b.borderRight && a.borderBottom == b.borderBottom &&
           a.background == b.background;
}

QSize standardPageSize(TPageStyle style, TPrinterOrientation orientation) {
    const QSize portrait = TMyCAD::PageStyleSize(style);
    return orientation == poLandscape ? portrait.transposed() : portrait;
}
