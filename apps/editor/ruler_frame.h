// The canvas in a scroll area with a horizontal and a vertical ruler and their
// corner. The rulers follow the zoom, the page size, the scroll position and
// the canvas's unit by themselves, and show a hairline at the mouse.
#pragma once

#include "cad/canvas/mycad.h"
#include "ruler/ruler.h"

#include <QScrollArea>
#include <QWidget>

class RulerFrame : public QWidget {
    Q_OBJECT
public:
    RulerFrame(faroven::TMyCAD* cad, QWidget* parent = nullptr);
    QScrollArea* ScrollArea() const { return m_scroll; }
    // Brings the rulers up to date with the canvas's zoom, unit and position.
    void UpdateRulers();

protected:
    void resizeEvent(QResizeEvent* event) override;
    // Follows the canvas as the zoom or the page size change its size.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPoint pageOrigin() const;
    void showMouse(int x, int y);

    faroven::TMyCAD* m_cad;
    QScrollArea* m_scroll;
    faroven::TRsRuler* m_top;
    faroven::TRsRuler* m_left;
    faroven::TRsRulerCorner* m_corner;
    faroven::TUnits m_unit;
};
