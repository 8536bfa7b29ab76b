// TUserData: an ordered list of key/value text pairs that applications attach
// to every shape and to the canvas. The library never interprets the pairs.
// Keys are compared exactly (case-sensitive). AddKeyandValue keeps keys
// unique; ReNameKey and SetUserDataRecord do not check, and when duplicates
// arise every lookup finds the first.
#pragma once

#include "platform/types.h"

#include <QString>
#include <vector>

namespace faroven {

class TStream;

struct TUserDataRecord {
    QString Key;
    QString Value;
    friend bool operator==(const TUserDataRecord&, const TUserDataRecord&) = default;
};

class TUserData : public TPersistent {
public:
    bool AddKeyandValue(const QString& key, const QString& value);
    bool ChangeValueByKey(const QString& key, const QString& value);
    bool DeleteRecordByKey(const QString& key);
    bool ReNameKey(const QString& oldKey, const QString& newKey);
    int GetCount() const { return int(m_records.size()); }
    // The key at a 0-based index; empty when the index is out of range.
    QString GetKeyByNo(int index) const;
    // The value of the first pair with the key; empty when there is none.
    QString GetValueByKey(const QString& key) const;
    void SetUserDataRecord(const std::vector<TUserDataRecord>& records) { m_records = records; }
    const std::vector<TUserDataRecord>& Records() const { return m_records; }
    void Assign(const TPersistent* source) override;
    void Assign(const TUserData& other) { m_records = other.m_records; }
    void ClearAll() { m_records.clear(); }

    // Stream form: Int32 count, then key and value of each pair as length-prefixed
    // 8-bit text (lengths modulo 256). Reading appends with AddKeyandValue, so a
    // stored duplicate key is dropped and the first occurrence wins.
    // A count that is negative reads as none; one the rest of the stream
    // cannot hold raises EFileFormatError. A read that fails leaves the pairs
    // as they were.
    void SaveToStream(TStream& stream) const;
    void LoadFromStream(TStream& stream);
    // The pairs after a count already read (and checked with ReadCount),
    // appended as LoadFromStream does. Shape records use it so that a shape
    // without user data creates none.
    void ReadPairs(TStream& stream, int32_t count);

    friend bool operator==(const TUserData& a, const TUserData& b) { return a.m_records == b.m_records; }

private:
    int indexOf(const QString& key) const;
    std::vector<TUserDataRecord> m_records;
};

}  // namespace faroven
