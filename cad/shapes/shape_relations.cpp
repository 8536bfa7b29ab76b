#include "cad/shapes/shape_relations.h"

#include "cad/persistence/stream_io.h"
#include "cad/shapes/line.h"

namespace faroven {

void CheckShapeRelations(const std::vector<std::unique_ptr<TMyShape>>& shapes, const std::vector<int64_t>& starts) {
    const int n = int(shapes.size());
    const auto inRange = [n](int64_t no) { return no >= 0 && no < n; };
    for (int i = 0; i < n; ++i) {
        const TMyShape& s = *shapes[size_t(i)];
        const auto refuse = [&](const QString& what) {
            throw EFileFormatError(QStringLiteral("Shape %1 %2").arg(i).arg(what), starts[size_t(i)]);
        };
        if (s.ShapeNo() != i) refuse(QStringLiteral("is stored as number %1").arg(s.ShapeNo()));
        if (s.ParentShapeNo() != -1 && (!inRange(s.ParentShapeNo()) || s.ParentShapeNo() == i))
            refuse(QStringLiteral("has no valid group (%1)").arg(s.ParentShapeNo()));
        for (int child : s.ChildShapeNos())
            if (!inRange(child) || shapes[size_t(child)]->ParentShapeNo() != i)
                refuse(QStringLiteral("lists %1 as a member, which is not in it").arg(child));
        for (uint32_t link : s.LinkShapeNos())
            if (!inRange(link)) refuse(QStringLiteral("lists a link line %1 that does not exist").arg(link));
        if (const auto* line = dynamic_cast<const TMyLine*>(&s))
            for (int end : {line->StartSpNo(), line->EndSpNo()})
                if (end != -1 && !inRange(end)) refuse(QStringLiteral("ends at a shape %1 that does not exist").arg(end));
    }
    // Up the groups from every shape: meeting the walk's own path again is a circle.
    std::vector<uint8_t> state(size_t(n), 0);  // 0 unseen, 1 on the current walk, 2 known good
    std::vector<int> path;
    for (int i = 0; i < n; ++i) {
        int up = i;
        while (up != -1 && state[size_t(up)] == 0) {
            state[size_t(up)] = 1;
            path.push_back(up);
            up = shapes[size_t(up)]->ParentShapeNo();
        }
        if (up != -1 && state[size_t(up)] == 1)
            throw EFileFormatError(QStringLiteral("Shape %1 is inside itself").arg(up), starts[size_t(up)]);
        for (int no : path) state[size_t(no)] = 2;
        path.clear();
    }
}

}  // namespace faroven
