// TMyCAD: cut, copy and paste through the system clipboard.
//
// The copied shapes travel as a drawing stream of their own (the file
// format, holding only them, numbered 0..n-1) under ShapesMimeType, so that
// pasting reads them with the same checks as a file, in this program or in
// another. Beside it go a PNG and an SVG picture of them for programs that
// take pictures.
#include "cad/canvas/mycad.h"
#include "cad/canvas/drawing_image.h"
#include "cad/canvas/mycad_p.h"

#include "cad/shapes/shape_factory.h"
#include "platform/stream.h"
#include "platform/system.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <algorithm>
#include <set>

namespace faroven {

namespace {
// Pasted shapes that would cover their originals move by this much, in drawing units.
constexpr float kPasteOffset = 10;
constexpr int kMaxPasteOffsets = 100;

// A shape's class and place: two shapes with the same key cover each other.
struct PlaceKey {
    TShapeKind kind;
    float left, top, right, bottom;
    auto operator<=>(const PlaceKey&) const = default;
};
PlaceKey placeOf(const TMyShape* shape) {
    const TMyRect b = shape->GetBounds();
    return {shape->kind(), b.left, b.top, b.right, b.bottom};
}
}  // namespace

std::vector<int> TMyCAD::SelectionWithMembers() const {
    std::set<int> numbers;
    std::vector<const TMyShape*> todo(m_workingShapes.begin(), m_workingShapes.end());
    while (!todo.empty()) {
        const TMyShape* shape = todo.back();
        todo.pop_back();
        if (!shape || !numbers.insert(shape->ShapeNo()).second) continue;
        for (int child : shape->ChildShapeNos())
            if (const TMyShape* c = GetShapeByNo(child)) todo.push_back(c);
    }
    return {numbers.begin(), numbers.end()};
}

bool TMyCAD::Copy() {
    const std::vector<int> numbers = SelectionWithMembers();
    if (numbers.empty()) return false;

    // Copies numbered among themselves: references to shapes left behind
    // (a link line's far end, the group of a selected member) come loose.
    std::vector<int> oldToNew(m_myShapes.size(), -1);
    for (size_t k = 0; k < numbers.size(); ++k) oldToNew[size_t(numbers[k])] = int(k);
    std::vector<std::unique_ptr<TMyShape>> copies;
    std::vector<TMyShape*> raw;
    TRect box{};
    for (size_t k = 0; k < numbers.size(); ++k) {
        TMyShape* original = m_myShapes[size_t(numbers[k])];
        box = canvas_detail::unite(box, original->GetPaintBoundsInZoom());
        std::unique_ptr<TMyShape> copy = snapshotOf(original);
        if (!copy) continue;
        copy->remapShapeNos(oldToNew);
        copy->SetShapeNo(int(k));
        raw.push_back(copy.get());
        copies.push_back(std::move(copy));
    }
    TMemoryStream stream;
    writeDrawing(stream, raw);

    // The pictures show the originals as the canvas paints them, without marks.
    std::vector<TMyShape*> roots;
    for (int no : numbers)
        if (TMyShape* shape = m_myShapes[size_t(no)]; oldToNew[size_t(no)] >= 0 && !shape->HasParentShape())
            roots.push_back(shape);
    const int w = std::max(box.right - box.left, 1), h = std::max(box.bottom - box.top, 1);
    QImage picture(w, h, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QByteArray svg;
    {
        QBuffer svgBuffer(&svg);
        QSvgGenerator generator;
        generator.setOutputDevice(&svgBuffer);
        generator.setSize(QSize(w, h));
        generator.setViewBox(QRect(0, 0, w, h));
        generator.setTitle(QStringLiteral("Faroven shapes"));
        for (QPaintDevice* device : {static_cast<QPaintDevice*>(&picture), static_cast<QPaintDevice*>(&generator)}) {
            QPainter painter(device);
            TCanvas canvas;
            canvas.AttachPainter(&painter, TRect{0, 0, w, h});
            canvas.SetWindowOrg(box.left, box.top);
            DrawShapes(&canvas, roots);
            canvas.DetachPainter();
        }
    }
    QByteArray png;
    {
        QBuffer pngBuffer(&png);
        pngBuffer.open(QIODevice::WriteOnly);
        picture.save(&pngBuffer, "PNG");
    }
    const std::vector<std::pair<QString, QByteArray>> formats = {
        {QString::fromLatin1(ShapesMimeType), stream.ToByteArray()},
        {QStringLiteral("image/png"), png},
        {QStringLiteral("image/svg+xml"), svg}};
    Clipboard()->SetFormats(formats, picture);
    return true;
}

bool TMyCAD::Cut() {
    if (!Copy()) return false;
    DeleteSelectedShapes();
    return true;
}

bool TMyCAD::CanPaste() { return Clipboard()->HasFormat(QString::fromLatin1(ShapesMimeType)); }

bool TMyCAD::Paste() {
    const QByteArray bytes = Clipboard()->Data(QString::fromLatin1(ShapesMimeType));
    if (bytes.isEmpty() || m_layers.Count() == 0) return false;
    const std::unique_ptr<TMemoryStream> stream = TMemoryStream::FromBytes(bytes);
    DrawingImage image = readDrawing(*stream);
    if (image.shapes.empty()) return false;
    EndTextInput(false);
    CancelMouseEdit();
    takeBlockShapes(image, Merge);

    // Pasting where the copied shapes still lie moves the copies aside, as
    // often as it takes to uncover them.
    std::set<PlaceKey> taken;
    for (const TMyShape* shape : m_myShapes)
        if (shape) taken.insert(placeOf(shape));
    auto covers = [&] {
        return std::any_of(m_memShapes.begin(), m_memShapes.end(),
                           [&](const TMyShape* s) { return taken.count(placeOf(s)) > 0; });
    };
    for (int i = 0; i < kMaxPasteOffsets && covers(); ++i)
        for (TMyShape* shape : m_memShapes) {
            OffsetAllPoints(shape, kPasteOffset, kPasteOffset);
            shape->SetCenterPoint(shape->ComputeCenterPoint());
        }
    return PasteforBlock();
}

}  // namespace faroven
