// What the library fuzz target checks on every input, shared with the test
// suite that replays stored inputs. Whatever the bytes of a library file,
// walking it, reading, picturing and inserting each entry and deleting one
// end with a result or EReadError; deleting an entry leaves the bytes
// around it as they were, and a canvas an entry was inserted into saves
// and loads again to the same bytes. Anything else aborts, which the fuzzer
// reports as a finding.
#pragma once

#include "cad/persistence/lib_manager.h"
#include "cad/shapes/shape.h"
#include "fuzz/drawing_harness.h"
#include "platform/bitmap.h"

namespace faroven::fuzz {

inline void failLibrary(const char* what) {
    std::fprintf(stderr, "library harness: %s\n", what);
    std::abort();
}

inline void runLibraryLoad(const uint8_t* data, size_t size) {
    ensureApplication();
    TLibManager lib;
    lib.Memory().Clear();
    lib.Memory().WriteBuffer(data, int64_t(size));
    int count = 0;
    try {
        count = lib.GetcmbShapesCount();
    } catch (const EReadError&) {
        return;
    }
    TMyCAD cad;
    for (int i = 0; i < count && i < 8; ++i) {
        const QString name = lib.GetCmbShapesNameByID(i);
        try {
            TBitmap picture;
            lib.GetCmbShapeImage(name, 0.5, picture, clWhite);
            cad.AddUserDefineShapefromLib(lib, name, {10, 10}, 100, 60);
        } catch (const EReadError&) {
        }
    }
    checkStable(cad);

    if (count == 0) return;
    const QByteArray before = lib.Bytes();
    const QString name = lib.GetCmbShapesNameByID(0);
    int64_t at = 0, length = 0;
    if (!lib.GetExistShape(name, at, length)) failLibrary("the first entry is not found by its name");
    lib.DeleteShape(name);
    if (lib.Bytes() != before.left(qsizetype(at)) + before.mid(qsizetype(at + length)))
        failLibrary("deleting an entry changed other bytes");
}

}  // namespace faroven::fuzz
