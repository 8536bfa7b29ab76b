// The page settings of a canvas as one value: paper, orientation, header,
// footer, printed border and background. The page setup dialog edits such a
// value and applies it to the canvas in one go.
#pragma once

#include "cad/canvas/mycad.h"

#include <QSize>

struct PageSettings {
    // A header or a footer line; distance is from the paper's top (header)
    // or bottom (footer) in millimetres.
    struct Band {
        QString text;
        faroven::TFont font;
        faroven::TAlignment alignment = faroven::taCenter;
        int distance = 0;
    };

    faroven::TPageStyle style = faroven::A4;
    faroven::TPrinterOrientation orientation = faroven::poPortrait;
    // The page in millimetres, as oriented.
    uint32_t width = 210;
    uint32_t height = 297;
    Band head;
    Band foot;
    bool border = false;
    // The border's distances from the paper's edges in millimetres.
    int borderLeft = 0;
    int borderTop = 0;
    int borderRight = 0;
    int borderBottom = 0;
    bool background = false;

    // The canvas's settings now.
    static PageSettings of(faroven::TMyCAD* cad);
    // Sets every setting on the canvas. A custom size resizes the canvas
    // control too, which the canvas leaves to its owner, so that the screen
    // and the pictures show the whole page.
    void applyTo(faroven::TMyCAD* cad) const;
};

bool operator==(const PageSettings& a, const PageSettings& b);

// The size in millimetres of a standard paper style (not CustomerPage) in an
// orientation: the sizes the canvas gives its page styles.
QSize standardPageSize(faroven::TPageStyle style, faroven::TPrinterOrientation orientation);
