// Byte streams with the framework's interface. Read returns what it could;
// ReadBuffer and WriteBuffer raise an error naming the position on a short
// transfer, which every file reader relies on to stop at a truncated file.
#pragma once

#include "platform/types.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

class QFile;

namespace faroven {

enum TSeekOrigin { soBeginning, soCurrent, soEnd };
constexpr int soFromBeginning = 0, soFromCurrent = 1, soFromEnd = 2;

class TStream : public TObject {
public:
    virtual int64_t Read(void* buffer, int64_t count) = 0;
    virtual int64_t Write(const void* buffer, int64_t count) = 0;
    virtual int64_t Seek(int64_t offset, TSeekOrigin origin) = 0;
    virtual int64_t Size() const;
    virtual void SetSize(int64_t size) = 0;

    int64_t Position() const { return const_cast<TStream*>(this)->Seek(0, soCurrent); }
    void SetPosition(int64_t pos) { Seek(pos, soBeginning); }
    // Reads exactly count bytes or raises EReadError.
    void ReadBuffer(void* buffer, int64_t count);
    // Writes exactly count bytes or raises EWriteError.
    void WriteBuffer(const void* buffer, int64_t count);
    // Copies count bytes from source at its position (count 0: all of source from its start).
    int64_t CopyFrom(TStream& source, int64_t count);
};

class TMemoryStream : public TStream {
public:
    int64_t Read(void* buffer, int64_t count) override;
    int64_t Write(const void* buffer, int64_t count) override;
    int64_t Seek(int64_t offset, TSeekOrigin origin) override;
    int64_t Size() const override { return int64_t(m_data.size()); }
    void SetSize(int64_t size) override;

    uint8_t* Memory() { return m_data.data(); }
    const uint8_t* Memory() const { return m_data.data(); }
    void Clear();
    void LoadFromStream(TStream& source);
    void SaveToStream(TStream& dest) const;
    void LoadFromFile(const QString& fileName);
    void SaveToFile(const QString& fileName) const;
    QByteArray ToByteArray() const;
    static std::unique_ptr<TMemoryStream> FromBytes(const QByteArray& bytes);
private:
    std::vector<uint8_t> m_data;
    int64_t m_position = 0;
};

constexpr uint16_t fmCreate = 0xFF00;
constexpr uint16_t fmOpenRead = 0x0000;
constexpr uint16_t fmOpenWrite = 0x0001;
constexpr uint16_t fmOpenReadWrite = 0x0002;

// A file as a stream. fmCreate creates or truncates; the open modes require
// the file to exist. Failure raises EFCreateError or EFOpenError with the name.
class TFileStream : public TStream {
public:
    TFileStream(const QString& fileName, uint16_t mode);
    ~TFileStream() override;
    int64_t Read(void* buffer, int64_t count) override;
    int64_t Write(const void* buffer, int64_t count) override;
    int64_t Seek(int64_t offset, TSeekOrigin origin) override;
    int64_t Size() const override;
    void SetSize(int64_t size) override;
    QString FileName() const { return m_fileName; }
private:
    QString m_fileName;
    std::unique_ptr<QFile> m_file;
};

}  // namespace faroven
