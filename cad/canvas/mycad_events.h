// The event types of the canvas: the handlers an application assigns to
// TMyCAD's On... members.
#pragma once

#include "platform/types.h"

#include <QString>
#include <functional>

namespace faroven {

class TMyShape;

using TActionToolToSelecting = std::function<void()>;
using TChildhapeSelected = std::function<void(TMyShape* SelectedChildShape, bool& AcceptSelect)>;
using TLayerOp = std::function<void(int LayerId, const QString& LayerName, bool Visible)>;
using TEnterLeaveShape = std::function<void(TMyShape* AShape)>;
using TNodeAdded = std::function<void(TMyShape*& AShape, int NewPointIndex)>;
using TNodeDeleted = std::function<void(TMyShape*& AShape, int DeletedPointIndex)>;
using TShapeAdded = std::function<void(TMyShape*& AShape, int ShapeCount)>;
using TShapeCodeDraggingSizing = std::function<void(TMyShape* AShape, float dx, float dy)>;
using TShapeCodeRotating = std::function<void(TMyShape* AShape, float AAngle)>;
using TShapeDeleted = std::function<void(TMyShape* AShape)>;
using TShapeMouseDraggingSizingRotating = std::function<void(TMyShape* AShape, TPoint FromPoint, TPoint& ToPoint)>;
using TShapeSelected = std::function<void(TMyShape* LastSelectedShape, TMyShape* SelectedShape)>;
using TWholeDragOperation = std::function<void()>;

}  // namespace faroven
