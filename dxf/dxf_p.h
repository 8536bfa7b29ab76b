// Internals shared by the DXF reader and writer; not part of the API.
#pragma once

#include "platform/convert.h"

#include <QString>

namespace faroven::dxf_detail {

// Numbers in group values take a point or a comma as decimal separator: the
// process-wide separator is set from the text itself (a point when the text
// holds one, a comma otherwise) for the conversion of the trimmed text, and
// put back afterwards, also when the conversion raises.
inline double readReal(const QString& raw) {
    const DecimalSeparatorGuard guard(raw.contains(u'.') ? u'.' : u',');
    return StrToFloat(Trim(raw));
}

inline int readInteger(const QString& raw) {
    const DecimalSeparatorGuard guard(raw.contains(u'.') ? u'.' : u',');
    return StrToInt(Trim(raw));
}

}  // namespace faroven::dxf_detail
