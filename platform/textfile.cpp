#include "platform/textfile.h"

#include "platform/ansi.h"
#include "platform/stream.h"

#include <QFile>

namespace faroven {

namespace {
constexpr qint64 kChunk = 64 * 1024;
constexpr char kCtrlZ = 0x1A;
}  // namespace

// ---------------------------------------------------------------- reader

TTextFileReader::TTextFileReader(const QString& fileName) : m_name(fileName) { openFile(); }

TTextFileReader::TTextFileReader(const QByteArray& bytes, const QString& name)
    : m_name(name), m_bytes(bytes), m_fromMemory(true) {
    Reset();
}

TTextFileReader::TTextFileReader(TStream& stream, const QString& name)
    : m_name(name), m_stream(&stream), m_streamStart(stream.Position()) {}

TTextFileReader::~TTextFileReader() = default;

void TTextFileReader::openFile() {
    m_file = std::make_unique<QFile>(m_name);
    if (!m_file->open(QIODevice::ReadOnly))
        throw EInOutError(QStringLiteral("Cannot open file \"%1\" for reading: %2").arg(m_name, m_file->errorString()));
}

void TTextFileReader::Reset() {
    m_buffer.clear();
    m_pos = 0;
    m_exhausted = false;
    m_ctrlZ = false;
    m_lineNumber = 0;
    if (m_fromMemory) {
        m_buffer = m_bytes;
        m_exhausted = true;
    } else if (m_stream) {
        m_stream->SetPosition(m_streamStart);
    } else {
        m_file.reset();
        openFile();
    }
}

qint64 TTextFileReader::readSource(char* data, qint64 count) {
    if (m_stream) {
        const int64_t n = m_stream->Read(data, count);
        if (n < 0) throw EInOutError(QStringLiteral("Read error on \"%1\"").arg(m_name));
        return n;
    }
    const qint64 n = m_file->read(data, count);
    if (n < 0) throw EInOutError(QStringLiteral("Read error on file \"%1\": %2").arg(m_name, m_file->errorString()));
    return n;
}

// Makes sure that an unread byte is in the buffer; false when none is left.
bool TTextFileReader::fill() {
    if (m_pos < m_buffer.size()) return true;
    if (m_exhausted) return false;
    m_buffer.resize(kChunk);
    const qint64 n = readSource(m_buffer.data(), kChunk);
    m_pos = 0;
    if (n <= 0) {
        m_buffer.clear();
        m_exhausted = true;
        return false;
    }
    m_buffer.resize(n);
    return true;
}

bool TTextFileReader::Eof() {
    if (m_ctrlZ) return true;
    if (!fill()) return true;
    if (m_buffer.at(m_pos) == kCtrlZ) m_ctrlZ = true;
    return m_ctrlZ;
}

QByteArray TTextFileReader::ReadLine() {
    QByteArray line;
    if (Eof()) return line;
    ++m_lineNumber;
    while (!m_ctrlZ && fill()) {
        const char* begin = m_buffer.constData() + m_pos;
        const char* end = m_buffer.constData() + m_buffer.size();
        const char* p = begin;
        while (p != end && *p != '\n' && *p != '\r' && *p != kCtrlZ) ++p;
        if (line.size() + (p - begin) > m_maxLineLength)
            throw EInOutError(QStringLiteral("Line %1 of \"%2\" is longer than %3 bytes")
                                  .arg(m_lineNumber).arg(m_name).arg(m_maxLineLength));
        line.append(begin, p - begin);
        m_pos += p - begin;
        if (p == end) continue;  // the line goes on in the next chunk
        if (*p == kCtrlZ) {
            m_ctrlZ = true;
            break;
        }
        ++m_pos;
        if (*p == '\r' && fill() && m_buffer.at(m_pos) == '\n') ++m_pos;
        break;
    }
    return line;
}

QByteArrayView TTextFileReader::ReadLineView() {
    if (Eof()) return {};
    // Eof() left an unread byte in the buffer. A line that ends inside the
    // buffer (a CR not as its last byte, where an LF might follow in the
    // next chunk) is handed out in place; any other takes the copying path.
    const char* begin = m_buffer.constData() + m_pos;
    const char* end = m_buffer.constData() + m_buffer.size();
    const char* p = begin;
    while (p != end && *p != '\n' && *p != '\r' && *p != kCtrlZ) ++p;
    if (p == end || (*p == '\r' && p + 1 == end) || p - begin > m_maxLineLength) {
        m_scratch = ReadLine();
        return m_scratch;
    }
    ++m_lineNumber;
    m_pos += p - begin;
    if (*p == kCtrlZ) {
        m_ctrlZ = true;
    } else {
        ++m_pos;
        if (*p == '\r' && m_buffer.at(m_pos) == '\n') ++m_pos;
    }
    return QByteArrayView(begin, p - begin);
}

// ---------------------------------------------------------------- writer

TTextFileWriter::TTextFileWriter(const QString& fileName)
    : m_name(fileName), m_file(std::make_unique<QFile>(fileName)) {
    if (!m_file->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        throw EInOutError(QStringLiteral("Cannot create file \"%1\": %2").arg(m_name, m_file->errorString()));
}

TTextFileWriter::TTextFileWriter(TStream& stream, const QString& name)
    : m_name(name), m_stream(&stream), m_streamStart(stream.Position()) {}

TTextFileWriter::~TTextFileWriter() {
    try {
        Flush();
    } catch (const Exception&) {
        // Nothing can be reported from a destructor; callers that care call Flush.
    }
}

void TTextFileWriter::writeOut(const char* data, qint64 count) {
    if (count <= 0) return;
    if (m_stream) {
        try {
            m_stream->WriteBuffer(data, count);
        } catch (const Exception& e) {
            throw EInOutError(QStringLiteral("Write error on \"%1\": %2").arg(m_name, e.Message()));
        }
        return;
    }
    const qint64 n = m_file->write(data, count);
    if (n != count)
        throw EInOutError(QStringLiteral("Write error on file \"%1\": %2").arg(m_name, m_file->errorString()));
}

void TTextFileWriter::Write(const QByteArray& bytes) {
    m_buffer.append(bytes);
    if (m_buffer.size() >= kChunk) Flush();
}

void TTextFileWriter::Write(const QString& text) { Write(ToAnsi(text)); }

void TTextFileWriter::WriteLine(const QByteArray& bytes) {
    m_buffer.append(bytes);
    m_buffer.append("\r\n", 2);
    if (m_buffer.size() >= kChunk) Flush();
}

void TTextFileWriter::WriteLine(const QString& text) { WriteLine(ToAnsi(text)); }

void TTextFileWriter::Flush() {
    const QByteArray pending = std::exchange(m_buffer, QByteArray());
    writeOut(pending.constData(), pending.size());
}

void TTextFileWriter::Rewrite() {
    m_buffer.clear();
    if (m_stream) {
        try {
            m_stream->SetSize(m_streamStart);
            m_stream->SetPosition(m_streamStart);
        } catch (const Exception& e) {
            throw EInOutError(QStringLiteral("Cannot rewrite \"%1\": %2").arg(m_name, e.Message()));
        }
        return;
    }
    if (!m_file->resize(0) || !m_file->seek(0))
        throw EInOutError(QStringLiteral("Cannot rewrite file \"%1\": %2").arg(m_name, m_file->errorString()));
}

}  // namespace faroven
