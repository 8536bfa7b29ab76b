// TGridObject: the grid settings of a canvas (its GridOperation property).
// Spacings are in pixels at zoom 1; with GridInZoom they scale with the zoom.
#pragma once

#include "cad/enums.h"
#include "platform/color.h"
#include "platform/types.h"

#include <QObject>

namespace faroven {

class TGridObject : public QObject, public TPersistent {
    Q_OBJECT
    Q_PROPERTY(int GridColor READ GridColor WRITE SetGridColor)
    Q_PROPERTY(double GridHeight READ GridHeight WRITE SetGridHeight)
    Q_PROPERTY(int GridPenSize READ GridPenSize WRITE SetGridPenSize)
    Q_PROPERTY(bool GridInZoom READ GridInZoom WRITE SetGridInZoom)
    Q_PROPERTY(bool GridShow READ GridShow WRITE SetGridShow)
    Q_PROPERTY(faroven::TGridType GridType READ GridType WRITE SetGridType)
    Q_PROPERTY(double GridWidth READ GridWidth WRITE SetGridWidth)
public:
    TColor GridColor() const { return m_gridColor; }
    void SetGridColor(TColor v) { m_gridColor = v; changed(); }
    double GridHeight() const { return m_gridHeight; }
    void SetGridHeight(double v) { m_gridHeight = v; changed(); }
    uint8_t GridPenSize() const { return m_gridPenSize; }
    void SetGridPenSize(int v) { m_gridPenSize = uint8_t(v); changed(); }
    bool GridInZoom() const { return m_gridInZoom; }
    void SetGridInZoom(bool v) { m_gridInZoom = v; changed(); }
    bool GridShow() const { return m_gridShow; }
    void SetGridShow(bool v) { m_gridShow = v; changed(); }
    TGridType GridType() const { return m_gridType; }
    void SetGridType(TGridType v) { m_gridType = v; changed(); }
    double GridWidth() const { return m_gridWidth; }
    void SetGridWidth(double v) { m_gridWidth = v; changed(); }

    void Assign(const TPersistent* source) override;
    void Assign(const TGridObject& source) { Assign(&source); }

    // Raised after any setting changes (the canvas repaints).
    TNotifyEvent OnChange;

private:
    void changed() { if (OnChange) OnChange(this); }
    TColor m_gridColor = clSilver;
    double m_gridHeight = 20.0;
    uint8_t m_gridPenSize = 1;
    bool m_gridInZoom = false;
    bool m_gridShow = true;
    TGridType m_gridType = gLine;
    double m_gridWidth = 20.0;
};

}  // namespace faroven
