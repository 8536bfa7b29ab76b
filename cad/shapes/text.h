// TMyText: a text box. The rectangle's four points are its frame; Lines is
// the text, drawn with the shape's font inside the frame with the chosen
// alignment, word wrap and character spacing, turned with the shape's angle.
#pragma once

#include "cad/shapes/rectangle.h"

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
    // Extra pixels between characters (not stored in files).
    int CharacterSpace() const { return m_characterSpace; }
    void SetCharacterSpace(int v) { m_characterSpace = v; changed(); }

private:
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
