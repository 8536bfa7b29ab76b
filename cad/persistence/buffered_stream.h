// Streams that read from or write to another stream or a device through a
// buffer, so that the many small field reads and writes of a drawing cost a
// memory copy each instead of a call into the file.
#pragma once

#include "platform/stream.h"

#include <vector>

class QIODevice;

namespace faroven {

// Reads a source stream through a buffer. Read-only; seeking drops the buffer.
class TReadBufferStream : public TStream {
public:
    explicit TReadBufferStream(TStream& source, int bufferSize = 1 << 16);
    int64_t Read(void* buffer, int64_t count) override;
    int64_t Write(const void* buffer, int64_t count) override;
    int64_t Seek(int64_t offset, TSeekOrigin origin) override;
    int64_t Size() const override { return m_size; }
    void SetSize(int64_t size) override;

private:
    TStream& m_source;
    std::vector<uint8_t> m_buffer;
    int64_t m_size;
    int64_t m_bufferStart = 0;  // the source position of m_buffer[0]
    int64_t m_bufferEnd = 0;    // bytes held
    int64_t m_position = 0;
};

// Writes to a device through a buffer; Flush (or destruction) writes the
// rest. A device that refuses bytes raises EWriteError.
class TWriteBufferStream : public TStream {
public:
    explicit TWriteBufferStream(QIODevice& device, int bufferSize = 1 << 16);
    ~TWriteBufferStream() override;
    int64_t Read(void* buffer, int64_t count) override;
    int64_t Write(const void* buffer, int64_t count) override;
    int64_t Seek(int64_t offset, TSeekOrigin origin) override;
    int64_t Size() const override { return m_position; }
    void SetSize(int64_t size) override;
    void Flush();

private:
    QIODevice& m_device;
    std::vector<uint8_t> m_buffer;
    size_t m_used = 0;
    int64_t m_position = 0;
};

}  // namespace faroven
