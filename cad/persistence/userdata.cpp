#include "cad/persistence/userdata.h"

#include "cad/persistence/stream_io.h"

namespace faroven {

int TUserData::indexOf(const QString& key) const {
    for (size_t i = 0; i < m_records.size(); ++i)
        if (m_records[i].Key == key) return int(i);
    return -1;
}

bool TUserData::AddKeyandValue(const QString& key, const QString& value) {
    if (indexOf(key) >= 0) return false;
    m_records.push_back({key, value});
    return true;
}

bool TUserData::ChangeValueByKey(const QString& key, const QString& value) {
    const int i = indexOf(key);
    if (i < 0) return false;
    m_records[i].Value = value;
    return true;
}

bool TUserData::DeleteRecordByKey(const QString& key) {
    const int i = indexOf(key);
    if (i < 0) return false;
    m_records.erase(m_records.begin() + i);
    return true;
}

bool TUserData::ReNameKey(const QString& oldKey, const QString& newKey) {
    const int i = indexOf(oldKey);
    if (i < 0) return false;
    m_records[i].Key = newKey;
    return true;
}

QString TUserData::GetKeyByNo(int index) const {
    if (index < 0 || index >= GetCount()) return QString();
    return m_records[index].Key;
}

QString TUserData::GetValueByKey(const QString& key) const {
    const int i = indexOf(key);
    return i < 0 ? QString() : m_records[i].Value;
}

void TUserData::Assign(const TPersistent* source) {
    if (auto other = dynamic_cast<const TUserData*>(source)) {
        m_records = other->m_records;
        return;
    }
    TPersistent::Assign(source);
}

void TUserData::SaveToStream(TStream& stream) const {
    WriteInt32(stream, GetCount());
    for (const TUserDataRecord& r : m_records) {
        WriteStr(stream, r.Key);
        WriteStr(stream, r.Value);
    }
}

void TUserData::LoadFromStream(TStream& stream) {
    // Every pair takes at least its two 4-byte lengths.
    ReadPairs(stream, ReadCount(stream, 8, "User data"));
}

void TUserData::ReadPairs(TStream& stream, int32_t count) {
    const size_t before = m_records.size();
    try {
        for (int32_t i = 0; i < count; ++i) {
            const QString key = ReadStr(stream);
            const QString value = ReadStr(stream);
            AddKeyandValue(key, value);
        }
    } catch (...) {
        m_records.resize(before);
        throw;
    }
}

}  // namespace faroven
