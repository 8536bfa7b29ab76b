// The canvas's in-place text input: an editor box over a shape for its
// caption or, for a text shape, its lines. The box only edits; the text
// reaches the shape here, as one undo step, when the input is committed.
#include "cad/canvas/mycad.h"
#include "cad/canvas/text_input_box.h"
#include "cad/shapes/text.h"

#include <algorithm>

namespace faroven {

namespace {

// Smallest editor sizes in pixels, so that an empty or tiny shape can still be typed into.
constexpr int kMinCaptionBoxWidth = 80;
constexpr int kMinTextBoxWidth = 40;

QString textOf(TMyShape* shape) {
    if (const TMyText* text = shape_cast<TMyText>(shape)) return text->Lines()->Lines().join(QLatin1Char('\n'));
    return shape->Info();
}

// The caption's font at the zoom, as DrawInfo and the text shape size it.
QFont zoomedFont(const TMyShape* shape, double zoom) {
    const TFont& font = shape->FontRef();
    return font.ToQFont(std::max(1, Round(font.Size() * zoom)));
}

}  // namespace

void TMyCAD::BeginTextInput(TMyShape* shape) {
    EndTextInput(true);
    if (!shape) return;
    const TMyText* text = shape_cast<TMyText>(shape);
    auto* box = new TTextInputBox(this, text != nullptr);
    box->setFont(zoomedFont(shape, m_zoom));
    box->setPlainText(textOf(shape));
    box->selectAll();
    if (text) {
        // Over the frame, as large as the frame is at the zoom.
        const TMyRect b = shape->GetBounds();
        const int left = Round(b.left * m_zoom), top = Round(b.top * m_zoom);
        box->setGeometry(left, top, std::max(Round(b.right * m_zoom) - left, kMinTextBoxWidth),
                         std::max(Round(b.bottom * m_zoom) - top, box->OneLineHeight()));
    } else {
        // One line centred on the caption point, wide enough for the caption.
        const TMyPoint at = shape->TextPoint();
        const int width = std::max(kMinCaptionBoxWidth, box->fontMetrics().horizontalAdvance(textOf(shape)) + 16);
        const int height = box->OneLineHeight();
        box->setGeometry(Round(at.x * m_zoom) - width / 2, Round(at.y * m_zoom) - height / 2, width, height);
    }
    m_textInput = box;
    m_textInputShape = shape;
    connect(box, &TTextInputBox::finished, this, [this](bool commit) { EndTextInput(commit); });
    box->show();
    box->raise();
    box->setFocus(Qt::OtherFocusReason);
}

void TMyCAD::EndTextInput(bool commit) {
    if (!m_textInput) return;
    TTextInputBox* box = m_textInput;
    TMyShape* shape = m_textInputShape;
    m_textInput = nullptr;
    m_textInputShape = nullptr;
    // Closing moves the focus away; the box must not report that as a commit.
    box->disconnect(this);
    const QString text = box->Text();
    box->hide();
    // Later: this may run inside one of the box's own event handlers.
    box->deleteLater();
    if (commit && shape && GetShapeNoInMyShapes(shape) >= 0) applyTextInput(shape, text);
}

bool TMyCAD::TextInputActive() const { return !m_textInput.isNull(); }

TMyShape* TMyCAD::TextInputShape() const { return m_textInput ? m_textInputShape.data() : nullptr; }

void TMyCAD::applyTextInput(TMyShape* shape, const QString& text) {
    if (TMyText* textShape = shape_cast<TMyText>(shape)) {
        const QStringList lines = text.isEmpty() ? QStringList() : text.split(QLatin1Char('\n'));
        if (lines == textShape->Lines()->Lines()) return;
        PushtoUndoRedoShapeList({shape}, QStringLiteral("ACT_CHANGE"));
        TStrings newLines;
        newLines.SetLines(lines);
        textShape->SetLines(newLines);
    } else {
        // A caption is one line.
        QString caption = text;
        caption.replace(QLatin1Char('\n'), QLatin1Char(' '));
        if (caption == shape->Info()) return;
        PushtoUndoRedoShapeList({shape}, QStringLiteral("ACT_CHANGE"));
        shape->SetInfo(caption);
    }
    m_changed = true;
    Invalidate();
}

}  // namespace faroven
