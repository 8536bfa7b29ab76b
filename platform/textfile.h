// Text files of 8-bit lines, as the framework's text-file records read and
// write them. The reader takes a file name, a byte buffer or a stream, so that
// tests and fuzzers feed it from memory; it accepts CR, LF and CR LF line ends
// and, as DOS text files do, takes a Ctrl-Z (0x1A) byte as the end of the text.
// The writer ends every line with CR LF. Input/output failures raise
// EInOutError with a message naming the file (or the given stream name).
#pragma once

#include "platform/types.h"

#include <QByteArray>
#include <QString>
#include <memory>

class QFile;

namespace faroven {

class TStream;

class TTextFileReader {
public:
    // Lines longer than this raise EInOutError instead of filling memory.
    static constexpr qsizetype kDefaultMaxLineLength = 16 * 1024 * 1024;

    // Opens the file; raises EInOutError when it cannot be opened.
    explicit TTextFileReader(const QString& fileName);
    // Reads the bytes (shared, not copied); the name appears in messages.
    TTextFileReader(const QByteArray& bytes, const QString& name);
    // Reads the stream from its current position; the stream must outlive
    // the reader.
    TTextFileReader(TStream& stream, const QString& name);
    ~TTextFileReader();
    TTextFileReader(const TTextFileReader&) = delete;
    TTextFileReader& operator=(const TTextFileReader&) = delete;

    // True when no text is left (end of data or a Ctrl-Z).
    bool Eof();
    // The next line without its line end; an empty line at the end of the text.
    QByteArray ReadLine();
    // The same line as a view, valid until the next ReadLine, ReadLineView,
    // Eof or Reset: no copy when the line lies whole in the read buffer.
    QByteArrayView ReadLineView();
    // Back to the start: a file is closed and opened again, a stream is sought
    // back to where it stood when the reader was made.
    void Reset();

    // Lines read so far; the line just read has this number.
    int LineNumber() const { return m_lineNumber; }
    const QString& Name() const { return m_name; }
    qsizetype MaxLineLength() const { return m_maxLineLength; }
    void SetMaxLineLength(qsizetype length) { m_maxLineLength = length; }

private:
    void openFile();
    bool fill();
    qint64 readSource(char* data, qint64 count);

    QString m_name;
    std::unique_ptr<QFile> m_file;
    TStream* m_stream = nullptr;
    int64_t m_streamStart = 0;
    QByteArray m_bytes;      // the whole text when reading from memory
    bool m_fromMemory = false;
    QByteArray m_buffer;
    QByteArray m_scratch;    // a line that ReadLineView had to assemble
    qsizetype m_pos = 0;
    bool m_exhausted = false;
    bool m_ctrlZ = false;
    int m_lineNumber = 0;
    qsizetype m_maxLineLength = kDefaultMaxLineLength;
};

class TTextFileWriter {
public:
    // Creates or truncates the file; raises EInOutError when it cannot.
    explicit TTextFileWriter(const QString& fileName);
    // Writes to the stream from its current position; the stream must
    // outlive the writer. The name appears in messages.
    TTextFileWriter(TStream& stream, const QString& name);
    // Flushes; an error at this point is lost, call Flush first to see it.
    ~TTextFileWriter();
    TTextFileWriter(const TTextFileWriter&) = delete;
    TTextFileWriter& operator=(const TTextFileWriter&) = delete;

    void Write(const QByteArray& bytes);
    // Text is written in Windows-1252.
    void Write(const QString& text);
    void WriteLine(const QByteArray& bytes);
    void WriteLine(const QString& text);
    void WriteLine() { WriteLine(QByteArray()); }
    // Hands everything written so far to the file or stream.
    void Flush();
    // Drops what was written and starts again at the beginning: a file is
    // truncated, a stream cut back to where it stood when the writer was made.
    void Rewrite();
    const QString& Name() const { return m_name; }

private:
    void writeOut(const char* data, qint64 count);

    QString m_name;
    std::unique_ptr<QFile> m_file;
    TStream* m_stream = nullptr;
    int64_t m_streamStart = 0;
    QByteArray m_buffer;
    QByteArray m_scratch;    // a line that ReadLineView had to assemble
};

}  // namespace faroven
