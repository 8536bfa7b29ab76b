#include "cad/persistence/buffered_stream.h"

#include <QIODevice>
#include <algorithm>
#include <cstring>

namespace faroven {

TReadBufferStream::TReadBufferStream(TStream& source, int bufferSize)
    : m_source(source), m_buffer(size_t(std::max(bufferSize, 16))), m_size(source.Size()),
      m_bufferStart(source.Position()), m_position(m_bufferStart) {}

int64_t TReadBufferStream::Read(void* buffer, int64_t count) {
    auto* out = static_cast<uint8_t*>(buffer);
    int64_t done = 0;
    while (done < count) {
        const int64_t offset = m_position - m_bufferStart;
        if (offset >= 0 && offset < m_bufferEnd) {
            const int64_t n = std::min(count - done, m_bufferEnd - offset);
            std::memcpy(out + done, m_buffer.data() + offset, size_t(n));
            done += n;
            m_position += n;
            continue;
        }
        // Big reads go straight through; small ones refill the buffer.
        m_source.Seek(m_position, soBeginning);
        if (count - done >= int64_t(m_buffer.size())) {
            const int64_t got = m_source.Read(out + done, count - done);
            done += std::max<int64_t>(got, 0);
            m_position += std::max<int64_t>(got, 0);
            break;
        }
        m_bufferStart = m_position;
        m_bufferEnd = std::max<int64_t>(m_source.Read(m_buffer.data(), int64_t(m_buffer.size())), 0);
        if (m_bufferEnd == 0) break;
    }
    return done;
}

int64_t TReadBufferStream::Write(const void*, int64_t) { return 0; }

int64_t TReadBufferStream::Seek(int64_t offset, TSeekOrigin origin) {
    const int64_t base = origin == soBeginning ? 0 : origin == soCurrent ? m_position : m_size;
    m_position = std::max<int64_t>(base + offset, 0);
    return m_position;
}

void TReadBufferStream::SetSize(int64_t) {
    throw EStreamError(QStringLiteral("A read buffer cannot change the size of its stream"));
}

TWriteBufferStream::TWriteBufferStream(QIODevice& device, int bufferSize)
    : m_device(device), m_buffer(size_t(std::max(bufferSize, 16))) {}

TWriteBufferStream::~TWriteBufferStream() {
    // A destructor must not throw: an unflushed error shows in the device.
    try {
        Flush();
    } catch (...) {
    }
}

int64_t TWriteBufferStream::Read(void*, int64_t) { return 0; }

int64_t TWriteBufferStream::Write(const void* buffer, int64_t count) {
    if (count <= 0) return 0;
    const auto* in = static_cast<const uint8_t*>(buffer);
    if (m_used + size_t(count) > m_buffer.size()) Flush();
    if (size_t(count) >= m_buffer.size()) {
        if (m_device.write(reinterpret_cast<const char*>(in), count) != count)
            throw EWriteError(QStringLiteral("Cannot write %1 bytes at position %2: %3")
                                  .arg(count).arg(m_position).arg(m_device.errorString()));
    } else {
        std::memcpy(m_buffer.data() + m_used, in, size_t(count));
        m_used += size_t(count);
    }
    m_position += count;
    return count;
}

void TWriteBufferStream::Flush() {
    if (m_used == 0) return;
    const int64_t n = int64_t(m_used);
    m_used = 0;
    if (m_device.write(reinterpret_cast<const char*>(m_buffer.data()), n) != n)
        throw EWriteError(QStringLiteral("Cannot write %1 bytes before position %2: %3")
                              .arg(n).arg(m_position).arg(m_device.errorString()));
}

int64_t TWriteBufferStream::Seek(int64_t offset, TSeekOrigin origin) {
    // Writing is sequential: only asking for the position is supported.
    if (offset == 0 && (origin == soCurrent || origin == soEnd)) return m_position;
    if (origin == soBeginning && offset == m_position) return m_position;
    throw EStreamError(QStringLiteral("A write buffer cannot seek"));
}

void TWriteBufferStream::SetSize(int64_t) {
    throw EStreamError(QStringLiteral("A write buffer cannot change its size"));
}

}  // namespace faroven
