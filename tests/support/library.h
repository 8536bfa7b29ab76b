// Libraries of older formats for tests: a current library's entries
// rewritten in the layout of an older tag, as that version wrote them.
#pragma once

#include "cad/persistence/lib_manager.h"
#include "cad/shapes/shape.h"

#include <gtest/gtest.h>

namespace faroven::test {

inline void RewriteInOlderLayout(TLibManager& lib, TFileVersion version, const char* tag) {
    lib.HiddenCanvas().SetRecordWriteVersion(version);
    for (const QString& name : lib.GetCmbShapesNames()) {
        TArrMyPoint linkPoints;
        TLibShapes shapes;
        ASSERT_TRUE(lib.GetCmbShape(name, linkPoints, nullptr, shapes, 0, 0, false));
        std::vector<TMyShape*> raw;
        for (auto& shape : shapes) raw.push_back(shape.get());
        ASSERT_TRUE(lib.RepalceExistShape(name, raw, nullptr));
    }
    lib.WriteLibTag(QString::fromLatin1(tag));
}

}  // namespace faroven::test
