// TUndoChangeScope: an edit made by code as one undo step.
#pragma once

#include <vector>

namespace faroven {

class TMyCAD;
class TMyShape;

// Makes an edit by code one undo step: records "ACT_CHANGE" for the shapes
// when made, and re-routes their link lines and repaints when it goes.
//     { TUndoChangeScope step(cad, {shape}); shape->SetAngle(0.5); }
class TUndoChangeScope {
public:
    TUndoChangeScope(TMyCAD& canvas, std::vector<TMyShape*> shapes);
    ~TUndoChangeScope();
    TUndoChangeScope(const TUndoChangeScope&) = delete;
    TUndoChangeScope& operator=(const TUndoChangeScope&) = delete;

private:
    TMyCAD& m_canvas;
    std::vector<TMyShape*> m_shapes;
};

}  // namespace faroven
