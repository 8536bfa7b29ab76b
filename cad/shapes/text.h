// TMyText: a text box. The rectangle's four points are its frame; Lines is
// the text (Info when Lines is empty), drawn with the shape's font inside the
// frame with the chosen alignment, word wrap and character spacing, turned
// with the shape's angle and clipped to the frame. IsSolid fills the frame
// with the brush (or the gradient), IsBorder outlines it with the pen. The
// handles, the hit test (inside the frame) and sizing are the rectangle's.
//
// Sizes: the font's Size is the character height in drawing units, scaled by
// the zoom like the captions; CharacterSpace and the 2-unit margin inside the
// frame are drawing units too.
#pragma once

#include "cad/shapes/rectangle.h"

#include <QFont>
#include <QRectF>
#include <vector>

namespace faroven {

class TMyText : public TMyRectangle {
    Q_OBJECT
    Q_PROPERTY(bool IsBorder READ IsBorder WRITE SetIsBorder)
    Q_PROPERTY(bool IsSolid READ IsSolid WRITE SetIsSolid)
    Q_PROPERTY(QStringList Lines READ linesList WRITE setLinesList)
    Q_PROPERTY(faroven::TVJustification VAlignment READ VAlignment WRITE SetVAlignment)
    Q_PROPERTY(faroven::THJustification HAlignment READ HAlignment WRITE SetHAlignment)
    Q_PROPERTY(bool WordWrap READ WordWrap WRITE SetWordWrap)
    Q_PROPERTY(int CharacterSpace READ CharacterSpace WRITE SetCharacterSpace)
public:
    static constexpr TShapeKind Kind = TShapeKind::Text;
    TShapeKind kind() const override { return Kind; }
    explicit TMyText(TMyCAD* canvas);

    // The frame is drawn with the shape's pen.
    bool IsBorder() const { return m_isBorder; }
    void SetIsBorder(bool v) { m_isBorder = v; changed(); }
    // The frame is filled with the shape's brush.
    bool IsSolid() const { return m_isSolid; }
    void SetIsSolid(bool v) { m_isSolid = v; changed(); }
    TStrings* Lines() { return &m_lines; }
    const TStrings* Lines() const { return &m_lines; }
    void SetLines(const TStrings& v) { m_lines.Assign(v); changed(); }
    TVJustification VAlignment() const { return m_vAlignment; }
    void SetVAlignment(TVJustification v) { m_vAlignment = v; changed(); }
    THJustification HAlignment() const { return m_hAlignment; }
    void SetHAlignment(THJustification v) { m_hAlignment = v; changed(); }
    bool WordWrap() const { return m_wordWrap; }
    void SetWordWrap(bool v) { m_wordWrap = v; changed(); }
    // Extra space between characters in drawing units (not stored in files).
    int CharacterSpace() const { return m_characterSpace; }
    void SetCharacterSpace(int v) { m_characterSpace = v; changed(); }

    // The text shown: the lines joined by line breaks, or Info when there
    // are no lines.
    QString Text() const;
    // The frame, the fill and the border, then the text (no caption).
    void Draw(TCanvas* canvas) override;
    // "Text: 2 lines, width 26.46 mm, height 13.23 mm, angle 0.0°".
    QString GetInfo() override;
    // Makes the frame just hold the text at the font's size (unwrapped, with
    // the margin): point 0 stays where it is (the origin without points) and
    // the frame is turned by Angle about it. The importer calls this after
    // SetInfo and SetAngle.
    void reCaclpoints();
    // The outlines of the glyphs exactly where Draw puts them, in pixels at
    // the current zoom, as a path of the platform's kind: a point type per
    // point, 6 move-to, 2 line-to, 4 for each of the three points of a
    // Bézier curve-to, and 1 added to the last point of every closed figure
    // (its closing segment back to the move-to is implied).
    void GetPathPoints(TCanvas* canvas, TArrPoint& points, std::vector<uint8_t>& types);

    // Where Draw puts the rows before the turn: the upright frame in drawing
    // units, the centre it turns about by Angle, the font in drawing units,
    // and per row its text, baseline start and width. Exporters place text
    // from this.
    struct TRowLayout {
        QRectF frame;
        QPointF centre;
        QFont font;
        struct Row {
            QString text;
            QPointF baseline;
            double width = 0;
        };
        std::vector<Row> rows;
    };
    TRowLayout RowLayout() const;

    // The rows as laid out in a frame of the given width in drawing units:
    // the lines, each broken at spaces to fit when WordWrap is on. The same
    // at every zoom.
    QStringList LayoutRows(double frameWidth) const;

    // The record: the parent's, then IsBorder, IsSolid and, from "XP.a" on, Lines, VAlignment,
    // HAlignment and WordWrap.
    void LoadFromStream(TStream& stream) override;
    void SaveToStream(TStream& stream) override;

protected:
    void assignOwnFields(const TMyShape* source, bool withRelations) override;

private:
    // The text's path in the upright frame and the turn that puts it in
    // place, at the current zoom.
    struct Layout;
    Layout layout() const;
    QStringList linesList() const { return m_lines.Lines(); }
    void setLinesList(const QStringList& v) { m_lines.SetLines(v); changed(); }

    bool m_isBorder = false;
    bool m_isSolid = false;
    TStrings m_lines;
    TVJustification m_vAlignment = jvTop;
    THJustification m_hAlignment = jhLeft;
    bool m_wordWrap = false;
    int m_characterSpace = 0;
};

}  // namespace faroven
