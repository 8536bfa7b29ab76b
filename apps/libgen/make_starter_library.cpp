// make_starter_library OUT.fvl: writes the editor's starter library.
#include "apps/libgen/starter_library.h"

#include "cad/persistence/lib_manager.h"
#include "platform/types.h"

#include <QApplication>
#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);  // the library's hidden canvas is a widget
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_starter_library OUT.fvl\n");
        return 2;
    }
    try {
        faroven::TLibManager library;
        BuildStarterLibrary(library);
        library.SaveToFile(QString::fromLocal8Bit(argv[1]));
    } catch (const faroven::Exception& e) {
        std::fprintf(stderr, "make_starter_library: %s\n", qPrintable(e.Message()));
        return 1;
    }
    return 0;
}
