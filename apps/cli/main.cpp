// faroven: the command-line tool. Reads drawings, libraries and DXF files
// without a display and prints what they hold, renders them as pictures and
// converts between drawings and DXF. Errors go to stderr naming the file and
// the place; long work reports its progress on stderr.
//
// Exit codes: 0 done, 1 the work failed (a file could not be read or
// written), 2 the command line is wrong.
#include "documents.h"
#include "render.h"

#include "cad/canvas/mycad.h"
#include "cad/persistence/lib_manager.h"
#include "cad/shapes/shape_factory.h"
#include "dxf/dxf_import.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <cstdio>
#include <map>

using namespace faroven;
using namespace faroven::cli;

namespace {

const char* const kUsage =
    "Usage: faroven COMMAND [OPTIONS] FILE...\n"
    "\n"
    "Commands:\n"
    "  info FILE                     what a drawing (.fvd), library (.fvl) or DXF file holds:\n"
    "                                kind, version, size, layers, shapes by class\n"
    "  render FILE -o OUT            a picture of a drawing or DXF file:\n"
    "                                OUT.png, .jpg, .bmp, .svg, .pdf or .wmf\n"
    "      --zoom Z                  at zoom Z (default 1)\n"
    "      --layer NAME              only the shapes of layer NAME\n"
    "      --page                    the page as the editor shows (pixel pictures) or prints\n"
    "                                it (SVG, PDF: every sheet, WMF), instead of the shapes alone\n"
    "  convert IN OUT                between drawings (.fvd) and DXF (.dxf), or to a picture\n"
    "\n"
    "DXF options (info, render, convert):\n"
    "  --extended                    read MTEXT, splines, bulges, elliptic arcs, block\n"
    "                                references and entity colours too\n"
    "  --scale S                     DXF millimetres to pixels at 96 per inch times S (default 1)\n"
    "  --offset X,Y                  add X,Y millimetres before scaling (default: the drawing's\n"
    "                                top left corner goes to the origin)\n"
    "  --interchange                 write a complete DXF file for CAD programs\n"
    "\n"
    "  -h, --help                    this text\n"
    "\n"
    "Exit codes: 0 done, 1 a file could not be read or written, 2 a wrong command line.\n";

struct UsageError {
    QString message;
};

struct Arguments {
    QString command;
    QStringList files;
    QString output;
    QString layer;
    double zoom = 1;
    bool page = false;
    DxfOptions dxf;
};

double number(const QString& option, const QString& text) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value)) throw UsageError{QStringLiteral("%1 needs a number, not \"%2\"").arg(option, text)};
    return value;
}

Arguments parse(const QStringList& args) {
    Arguments a;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& arg = args[i];
        auto value = [&]() -> QString {
            if (i + 1 >= args.size()) throw UsageError{QStringLiteral("%1 needs a value").arg(arg)};
            return args[++i];
        };
        if (arg == u"-o" || arg == u"--output") a.output = value();
        else if (arg == u"--zoom") a.zoom = number(arg, value());
        else if (arg == u"--layer") a.layer = value();
        else if (arg == u"--page") a.page = true;
        else if (arg == u"--scale") a.dxf.scale = number(arg, value());
        else if (arg == u"--offset") {
            const QStringList xy = value().split(u',');
            if (xy.size() != 2) throw UsageError{QStringLiteral("--offset needs X,Y")};
            a.dxf.offsetX = number(arg, xy[0]);
            a.dxf.offsetY = number(arg, xy[1]);
            a.dxf.offsetGiven = true;
        } else if (arg == u"--extended") a.dxf.extended = true;
        else if (arg == u"--interchange") a.dxf.interchange = true;
        else if (arg.startsWith(u'-') && arg.size() > 1) throw UsageError{QStringLiteral("unknown option %1").arg(arg)};
        else if (a.command.isEmpty()) a.command = arg;
        else a.files << arg;
    }
    if (a.zoom <= 0 || a.zoom > 64) throw UsageError{QStringLiteral("--zoom must lie between 0 and 64")};
    if (a.dxf.scale <= 0) throw UsageError{QStringLiteral("--scale must be positive")};
    return a;
}

void print(const QString& text) { std::fputs(qPrintable(text + u'\n'), stdout); }

// Progress on stderr, at most a few times a second, and only for work that takes a while.
Progress stderrProgress() {
    auto timer = std::make_shared<QElapsedTimer>();
    timer->start();
    auto last = std::make_shared<qint64>(0);
    return [timer, last](const QString& what, qint64 done, qint64 total) {
        if (timer->elapsed() < 1000 || timer->elapsed() - *last < 250) return;
        *last = timer->elapsed();
        if (total > 0) std::fprintf(stderr, "\r%s: %lld%%", qPrintable(what), done * 100 / total);
        else std::fprintf(stderr, "\r%s: %lld entities", qPrintable(what), done);
        std::fflush(stderr);
    };
}

void info(const Arguments& a) {
    if (a.files.size() != 1) throw UsageError{QStringLiteral("info takes one file")};
    const QString& path = a.files[0];
    if (!QFileInfo(path).isFile()) throw EFOpenError(QStringLiteral("%1: no such file").arg(path));
    const FileKind kind = KindOf(path);
    print(QStringLiteral("file: %1").arg(path));
    print(QStringLiteral("size: %1 bytes").arg(QFileInfo(path).size()));
    if (kind == FileKind::Library) {
        TLibManager library;
        library.LoadFromFile(path);
        const QStringList names = library.GetCmbShapesNames();
        print(QStringLiteral("kind: library (%1)").arg(ReadLibFileTag(path)));
        print(QStringLiteral("entries: %1").arg(names.size()));
        for (const QString& name : names) print("  " + name);
        return;
    }
    TMyCAD canvas;
    const QStringList skipped = OpenInto(canvas, path, a.dxf, stderrProgress());
    if (kind == FileKind::Drawing) print(QStringLiteral("kind: drawing (version %1)").arg(canvas.DiskFileVersion()));
    else print(QStringLiteral("kind: DXF"));
    print(QStringLiteral("layers: %1").arg(canvas.GetLayersCount()));
    for (int i = 0; i < canvas.GetLayersCount(); ++i) {
        const int id = canvas.GetLayerIdByNo(i);
        print(QStringLiteral("  %1 (%2, %3 shapes)")
                  .arg(canvas.GetLayerNameByID(id), canvas.IsVisibleLayerByID(id) ? "visible" : "hidden")
                  .arg(canvas.GetShapesCountInALayer(id)));
    }
    std::map<QString, int> counts;
    for (TMyShape* shape : canvas.MyShapes()) ++counts[ShapeClassName(shape)];
    print(QStringLiteral("shapes: %1").arg(canvas.GetShapesCount()));
    for (const auto& [name, count] : counts) print(QStringLiteral("  %1 %2").arg(name).arg(count));
    if (!skipped.isEmpty()) {
        print(QStringLiteral("left out: %1").arg(skipped.size()));
        for (const QString& line : skipped) print("  " + line);
    }
}

void render(const Arguments& a) {
    if (a.files.size() != 1 || a.output.isEmpty()) throw UsageError{QStringLiteral("render takes one file and -o OUT")};
    TMyCAD canvas;
    OpenInto(canvas, a.files[0], a.dxf, stderrProgress());
    if (!a.layer.isEmpty()) {
        const int keep = canvas.GetLayerIdByName(a.layer);
        if (keep < 0) throw EReadError(QStringLiteral("%1: no layer \"%2\"").arg(a.files[0], a.layer));
        for (int i = 0; i < canvas.GetLayersCount(); ++i)
            if (const int id = canvas.GetLayerIdByNo(i); id != keep) canvas.InVisibleLayerByID(id);
        canvas.VisibleLayerByID(keep);
    }
    if (!IsPictureSuffix(QFileInfo(a.output).suffix().toLower()))
        throw UsageError{QStringLiteral("render writes .png, .jpg, .bmp, .svg, .pdf or .wmf, not \"%1\"").arg(a.output)};
    SaveFrom(canvas, a.output, a.dxf, a.zoom, a.page);
}

void convert(const Arguments& a) {
    if (a.files.size() != 2) throw UsageError{QStringLiteral("convert takes an input and an output file")};
    TMyCAD canvas;
    const QStringList skipped = OpenInto(canvas, a.files[0], a.dxf, stderrProgress());
    SaveFrom(canvas, a.files[1], a.dxf, a.zoom, a.page);
    if (!skipped.isEmpty())
        std::fprintf(stderr, "faroven: %s: %lld entities left out (see \"faroven info\")\n", qPrintable(a.files[0]),
                     qlonglong(skipped.size()));
}

}  // namespace

int main(int argc, char** argv) {
    // No display is needed: the canvas paints into images.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt's notes about the headless session are not the user's concern.
    if (qEnvironmentVariableIsEmpty("FAROVEN_DEBUG"))
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
            if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(message));
        });
    QApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 2 || args.contains("-h") || args.contains("--help")) {
        std::fputs(kUsage, args.size() < 2 ? stderr : stdout);
        return args.size() < 2 ? 2 : 0;
    }
    try {
        const Arguments a = parse(args);
        if (a.command == u"info") info(a);
        else if (a.command == u"render") render(a);
        else if (a.command == u"convert") convert(a);
        else throw UsageError{QStringLiteral("unknown command \"%1\"").arg(a.command)};
    } catch (const UsageError& e) {
        std::fprintf(stderr, "faroven: %s\n%s", qPrintable(e.message), "Try \"faroven --help\".\n");
        return 2;
    } catch (const EDXFImportError& e) {
        std::fprintf(stderr, "faroven: %s:%d: %s\n", qPrintable(e.FileName()), e.Line(), qPrintable(e.Message()));
        return 1;
    } catch (const Exception& e) {
        std::fprintf(stderr, "faroven: %s\n", qPrintable(e.Message()));
        return 1;
    }
    return 0;
}
