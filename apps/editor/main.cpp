// faroven-editor: the demo editor. With --screenshot FILE it paints its window
// once, saves the picture and exits (used where there is no display).
#include "main_window.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("faroven-editor");
    QCommandLineParser parser;
    parser.setApplicationDescription("Faroven demo editor");
    parser.addHelpOption();
    QCommandLineOption screenshot("screenshot", "Save a picture of the window to <file> and exit.", "file");
    parser.addOption(screenshot);
    QCommandLineOption zoom("zoom", "Open the drawing at <factor> (1 is actual size).", "factor", "1");
    parser.addOption(zoom);
    QCommandLineOption empty("empty", "Start with an empty page instead of the sample drawing.");
    parser.addOption(empty);
    parser.process(app);

    MainWindow window(parser.isSet(empty));
    window.setZoom(parser.value(zoom).toDouble() > 0 ? parser.value(zoom).toDouble() : 1.0);
    window.show();
    if (parser.isSet(screenshot)) {
        const QString file = parser.value(screenshot);
        QTimer::singleShot(200, [&] {
            const bool ok = window.grab().save(file);
            if (!ok) std::fprintf(stderr, "faroven-editor: cannot write %s\n", qPrintable(file));
            QApplication::exit(ok ? 0 : 1);
        });
    }
    return app.exec();
}
