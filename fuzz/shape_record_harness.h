// What the shape-record fuzz target checks on every input, shared with the
// test suite that replays stored inputs. The first byte picks the class (one
// of the factory's library classes) and the version the canvas reads; the
// rest is one record. Whatever the bytes, reading ends with the record read
// or with an exception of the library; a record that was read saves, and
// what it saved reads back into a fresh shape of the class and saves to the
// same bytes. Anything else aborts, which the fuzzer reports as a finding.
#pragma once

#include "cad/canvas/mycad.h"
#include "cad/shapes/shape.h"
#include "cad/shapes/shape_factory.h"
#include "fuzz/drawing_harness.h"
#include "platform/stream.h"

#include <array>
#include <memory>

namespace faroven::fuzz {

// The versions the first byte chooses from: every known one and one unknown string.
inline constexpr std::array<const char*, 14> kRecordVersions = {
    "XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8", "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j", "XP.x"};
inline constexpr int kRecordClasses = 17;  // the library's classes, first in ShapeClassNames()

// The first byte of an input for a class index and a version index.
inline uint8_t recordSelector(int classIndex, int versionIndex) {
    return uint8_t(versionIndex * kRecordClasses + classIndex);
}

inline QByteArray savedRecord(TMyShape& shape) {
    TMemoryStream s;
    shape.SaveToStream(s);
    return s.ToByteArray();
}

inline void runShapeRecord(const uint8_t* data, size_t size) {
    if (size == 0) return;
    ensureApplication();
    const int classIndex = data[0] % kRecordClasses;
    const int versionIndex = (data[0] / kRecordClasses) % int(kRecordVersions.size());
    const QString className = ShapeClassNames().at(classIndex);
    TMyCAD cad;
    cad.SetDiskFileVersion(QString::fromLatin1(kRecordVersions[size_t(versionIndex)]));
    std::unique_ptr<TMyShape> shape(NewShapeOfClass(className, &cad));
    auto stream = TMemoryStream::FromBytes(QByteArray(reinterpret_cast<const char*>(data + 1), int(size - 1)));
    try {
        shape->LoadFromStream(*stream);
    } catch (const Exception&) {
        return;
    }
    const QByteArray once = savedRecord(*shape);
    cad.SetDiskFileVersion(QStringLiteral("XP.j"));
    std::unique_ptr<TMyShape> again(NewShapeOfClass(className, &cad));
    auto saved = TMemoryStream::FromBytes(once);
    try {
        again->LoadFromStream(*saved);
    } catch (const Exception&) {
        failDrawing("a saved record does not read back");
    }
    if (saved->Position() != saved->Size()) failDrawing("a saved record reads back shorter than it is");
    if (savedRecord(*again) != once) failDrawing("a saved record reads back to different bytes");
}

}  // namespace faroven::fuzz
