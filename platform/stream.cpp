#include "platform/stream.h"

#include <QFile>
#include <cstring>

namespace faroven {

int64_t TStream::Size() const {
    auto self = const_cast<TStream*>(this);
    const int64_t pos = self->Seek(0, soCurrent);
    const int64_t size = self->Seek(0, soEnd);
    self->Seek(pos, soBeginning);
    return size;
}

void TStream::ReadBuffer(void* buffer, int64_t count) {
    if (count < 0)
        throw EReadError(QStringLiteral("Stream read error: negative count %1 at position %2").arg(count).arg(Position()));
    // The position is asked only on failure: readers call this for every field.
    const int64_t got = count ? Read(buffer, count) : 0;
    if (got != count)
        throw EReadError(QStringLiteral("Stream read error: %1 bytes wanted at position %2, %3 available")
                             .arg(count).arg(Position() - got).arg(got));
}

void TStream::WriteBuffer(const void* buffer, int64_t count) {
    const int64_t start = Position();
    const int64_t put = count > 0 ? Write(buffer, count) : 0;
    if (put != std::max<int64_t>(count, 0))
        throw EWriteError(QStringLiteral("Stream write error: %1 bytes at position %2, %3 written")
                              .arg(count).arg(start).arg(put));
}

int64_t TStream::CopyFrom(TStream& source, int64_t count) {
    if (count == 0) {
        source.SetPosition(0);
        count = source.Size();
    }
    char buffer[65536];
    int64_t left = count;
    while (left > 0) {
        const int64_t n = std::min<int64_t>(left, sizeof buffer);
        source.ReadBuffer(buffer, n);
        WriteBuffer(buffer, n);
        left -= n;
    }
    return count;
}

int64_t TMemoryStream::Read(void* buffer, int64_t count) {
    if (count <= 0 || m_position >= Size()) return 0;
    const int64_t n = std::min(count, Size() - m_position);
    std::memcpy(buffer, m_data.data() + m_position, size_t(n));
    m_position += n;
    return n;
}

int64_t TMemoryStream::Write(const void* buffer, int64_t count) {
    if (count <= 0) return 0;
    if (m_position + count > Size()) m_data.resize(size_t(m_position + count));
    std::memcpy(m_data.data() + m_position, buffer, size_t(count));
    m_position += count;
    return count;
}

int64_t TMemoryStream::Seek(int64_t offset, TSeekOrigin origin) {
    int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? m_position : Size();
    m_position = std::max<int64_t>(0, base + offset);
    return m_position;
}

void TMemoryStream::SetSize(int64_t size) {
    m_data.resize(size_t(std::max<int64_t>(size, 0)));
    if (m_position > Size()) m_position = Size();
}

void TMemoryStream::Clear() {
    m_data.clear();
    m_position = 0;
}

void TMemoryStream::LoadFromStream(TStream& source) {
    source.SetPosition(0);
    const int64_t n = source.Size();
    m_data.resize(size_t(n));
    m_position = 0;
    if (n) source.ReadBuffer(m_data.data(), n);
}

void TMemoryStream::SaveToStream(TStream& dest) const {
    if (!m_data.empty()) dest.WriteBuffer(m_data.data(), Size());
}

void TMemoryStream::LoadFromFile(const QString& fileName) {
    TFileStream file(fileName, fmOpenRead);
    LoadFromStream(file);
}

void TMemoryStream::SaveToFile(const QString& fileName) const {
    TFileStream file(fileName, fmCreate);
    SaveToStream(file);
}

QByteArray TMemoryStream::ToByteArray() const {
    return QByteArray(reinterpret_cast<const char*>(m_data.data()), qsizetype(m_data.size()));
}

std::unique_ptr<TMemoryStream> TMemoryStream::FromBytes(const QByteArray& bytes) {
    auto stream = std::make_unique<TMemoryStream>();
    stream->Write(bytes.constData(), bytes.size());
    stream->SetPosition(0);
    return stream;
}

TFileStream::TFileStream(const QString& fileName, uint16_t mode)
    : m_fileName(fileName), m_file(std::make_unique<QFile>(fileName)) {
    if (mode == fmCreate) {
        if (!m_file->open(QIODevice::ReadWrite | QIODevice::Truncate))
            throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(fileName, m_file->errorString()));
        return;
    }
    QIODevice::OpenMode qmode = QIODevice::ReadOnly;
    if ((mode & 3) == fmOpenWrite) qmode = QIODevice::WriteOnly | QIODevice::ExistingOnly;
    if ((mode & 3) == fmOpenReadWrite) qmode = QIODevice::ReadWrite | QIODevice::ExistingOnly;
    if (!m_file->open(qmode))
        throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(fileName, m_file->errorString()));
}

TFileStream::~TFileStream() = default;

int64_t TFileStream::Read(void* buffer, int64_t count) {
    if (count <= 0) return 0;
    const qint64 n = m_file->read(static_cast<char*>(buffer), count);
    return n < 0 ? 0 : n;
}

int64_t TFileStream::Write(const void* buffer, int64_t count) {
    if (count <= 0) return 0;
    const qint64 n = m_file->write(static_cast<const char*>(buffer), count);
    return n < 0 ? 0 : n;
}

int64_t TFileStream::Seek(int64_t offset, TSeekOrigin origin) {
    const int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? m_file->pos() : m_file->size();
    m_file->seek(std::max<int64_t>(0, base + offset));
    return m_file->pos();
}

int64_t TFileStream::Size() const { return m_file->size(); }

void TFileStream::SetSize(int64_t size) {
    if (!m_file->resize(size))
        throw EWriteError(QStringLiteral("Cannot resize file \"%1\" to %2 bytes. %3")
                              .arg(m_fileName).arg(size).arg(m_file->errorString()));
}

}  // namespace faroven
