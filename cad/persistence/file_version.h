// The versions of the drawing stream. Readers accept every version a file
// may carry and branch on it field by field; writers always write the newest,
// "XP.j". The versions are an exact list, not a range: there is no "XP.b",
// "XP.c", "XP.d", "XP.f" or "XP.g", and any other string is Unknown, which
// reads only the fields every version has (and no point coordinates).
#pragma once

#include <QString>
#include <cstdint>

namespace faroven {

enum class TFileVersion : uint8_t { Unknown, XP2, XP3, XP4, XP5, XP6, XP7, XP8, XP9, XPa, XPe, XPh, XPi, XPj };

inline constexpr char CurrentFileVersion[] = "XP.j";

// The version of a version string as a file stores it (already trimmed).
TFileVersion ParseFileVersion(const QString& text);
// The version string of a version; empty for Unknown.
QString FileVersionName(TFileVersion version);

// The list position of a known version; Unknown is below every one of them
// but takes part in no "from ... on" set.
constexpr bool VersionFrom(TFileVersion v, TFileVersion first) {
    return v != TFileVersion::Unknown && uint8_t(v) >= uint8_t(first);
}
constexpr bool VersionBetween(TFileVersion v, TFileVersion first, TFileVersion last) {
    return VersionFrom(v, first) && uint8_t(v) <= uint8_t(last);
}

// How point coordinates (and the text point) are stored in a version.
enum class TCoordinateForm : uint8_t {
    None,      // "XP.2" and unknown versions: counts only, no coordinates
    Extended,  // "XP.3" to "XP.5": 10-byte x87 extended floats
    Single,    // "XP.6" on: 4-byte floats
};
constexpr TCoordinateForm CoordinateForm(TFileVersion v) {
    if (VersionFrom(v, TFileVersion::XP6)) return TCoordinateForm::Single;
    if (VersionFrom(v, TFileVersion::XP3)) return TCoordinateForm::Extended;
    return TCoordinateForm::None;
}

}  // namespace faroven
