// faroven-editor: the demo editor. A file argument opens that drawing at
// start. With --screenshot FILE it paints its window once, saves the picture
// and exits (used where there is no display).
#include "library_panel.h"
#include "main_window.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("faroven-editor");
    // The recent files are kept in the settings under these names.
    QApplication::setOrganizationName("Faroven");
    QCommandLineParser parser;
    parser.setApplicationDescription("Faroven demo editor");
    parser.addHelpOption();
    QCommandLineOption screenshot("screenshot", "Save a picture of the window to <file> and exit.", "file");
    parser.addOption(screenshot);
    QCommandLineOption zoom("zoom", "Open the drawing at <factor> (1 is actual size).", "factor", "1");
    parser.addOption(zoom);
    QCommandLineOption empty("empty", "Start with an empty page instead of the sample drawing.");
    parser.addOption(empty);
    parser.addPositionalArgument("drawing", "The drawing (.fvd) to open, or a DXF file (.dxf) to import.", "[drawing]");
    parser.process(app);
    const QString drawing = parser.positionalArguments().value(0);

    // A drawing to open replaces the sample; should it fail, the page is empty.
    MainWindow window(parser.isSet(empty) || !drawing.isEmpty());
    window.setStartZoom(parser.value(zoom).toDouble() > 0 ? parser.value(zoom).toDouble() : 1.0);
    window.show();
    if (!drawing.isEmpty()) window.openFile(drawing);
    if (parser.isSet(screenshot)) {
        const QString file = parser.value(screenshot);
        QTimer::singleShot(200, [&] {
            window.Library()->finishThumbnails();
            const bool ok = window.grab().save(file);
            if (!ok) std::fprintf(stderr, "faroven-editor: cannot write %s\n", qPrintable(file));
            QApplication::exit(ok ? 0 : 1);
        });
    }
    return app.exec();
}
