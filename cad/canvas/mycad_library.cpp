// TMyCAD: inserting a shape library entry as a combined shape.
#include "cad/canvas/mycad.h"

#include "cad/persistence/lib_manager.h"
#include "cad/shapes/rectangle.h"
#include "cad/shapes/shape_factory.h"

namespace faroven {

TMyShape* TMyCAD::AddUserDefineShapefromLib(TLibManager& library, const QString& name, TMyPoint topLeft,
                                            double width, double height) {
    if (m_layers.Count() == 0) return nullptr;
    int storedWidth = 0, storedHeight = 0;
    if (!library.GetCmbShapeSize(name, storedWidth, storedHeight)) return nullptr;
    if (width <= 0 || height <= 0) {
        width = storedWidth;
        height = storedHeight;
    }
    TArrMyPoint linkPoints;
    TUserData userData;
    TLibShapes read;
    if (!library.GetCmbShape(name, linkPoints, &userData, read, width, height, true) || read.empty()) return nullptr;

    // Copies for this canvas, numbered 0..n-1 as read, moved to the place;
    // the combined shape takes number n and holds the root shapes.
    EndTextInput(false);
    CancelMouseEdit();
    freeMemShapes();
    const int n = int(read.size());
    auto* combine = new TMyCombine(this);
    std::vector<int32_t> roots;
    for (int i = 0; i < n; ++i) {
        TMyShape* copy = CreateShapeByName(ShapeClassName(read[size_t(i)].get()));
        copy->Assign(read[size_t(i)].get());
        OffsetAllPoints(copy, topLeft.x, topLeft.y);
        copy->SetCenterPoint(copy->ComputeCenterPoint());
        copy->SetShapeId(m_nextShapeId + i);
        copy->SetShapeNo(i);
        copy->SetLayerId(CurrentLayerId());
        if (!copy->HasParentShape()) {
            copy->SetParentShapeNo(n);
            roots.push_back(i);
        }
        m_memShapes.push_back(copy);
    }
    const float left = topLeft.x, top = topLeft.y, right = float(topLeft.x + width), bottom = float(topLeft.y + height);
    combine->AddPoint({left, top});
    combine->AddPoint({right, top});
    combine->AddPoint({right, bottom});
    combine->AddPoint({left, bottom});
    for (TMyPoint& p : linkPoints) p = {p.x + topLeft.x, p.y + topLeft.y};
    combine->SetLinkPoints(linkPoints);
    combine->SetChildShapeNos(roots);
    combine->SetUserData(userData);
    combine->SetShapeId(m_nextShapeId + n);
    combine->SetShapeNo(n);
    combine->SetLayerId(CurrentLayerId());
    const TMyPoint centre = combine->ComputeCenterPoint();
    combine->SetCenterPoint(centre);
    combine->SetTextPoint({centre.x, bottom + 10});
    m_memShapes.push_back(combine);
    PasteforBlock();
    return combine;
}

}  // namespace faroven
