// TMyCAD: the drawing as a stream and a file, and blocks.
#include "cad/canvas/mycad.h"
#include "cad/canvas/mycad_p.h"

#include "cad/persistence/stream_io.h"

namespace faroven {

void TMyCAD::SetDiskFileVersion(const QString& v) {
    m_diskFileVersion = v;
    m_fileVersion = ParseFileVersion(v);
}

bool TMyCAD::WriteStrBuffer(TStream& stream, const QString& text, uint8_t count) {
    return faroven::WriteStrBuffer(stream, text, count);
}
bool TMyCAD::ReadBitmapBuffer(TStream& stream, std::unique_ptr<TBitmap>& bitmap) {
    return faroven::ReadBitmapBuffer(stream, bitmap);
}
bool TMyCAD::WriteBitmapBuffer(TStream& stream, const TBitmap* bitmap) {
    return faroven::WriteBitmapBuffer(stream, bitmap);
}

// Filled in next.
bool TMyCAD::SaveToStream(TStream&) { return false; }
bool TMyCAD::LoadFromStream(TStream&) { return false; }
bool TMyCAD::SaveToFile(const QString&) { return false; }
bool TMyCAD::LoadFromFile(const QString&) { return false; }
bool TMyCAD::IsZEMAFile(const QString&) { return false; }
bool TMyCAD::LoadFromStreamforBlock(TStream&, TBlockLayerMode) { return false; }
bool TMyCAD::PasteforBlock() { return false; }
bool TMyCAD::AddBlockfromZEMAFile(const QString&, TBlockLayerMode) { return false; }
bool TMyCAD::Copy() { return false; }
bool TMyCAD::Cut() { return false; }
bool TMyCAD::Paste() { return false; }
bool TMyCAD::CanPaste() { return false; }

}  // namespace faroven
