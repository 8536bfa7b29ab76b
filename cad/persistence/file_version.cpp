#include "cad/persistence/file_version.h"

namespace faroven {

namespace {
constexpr struct {
    const char* name;
    TFileVersion version;
} kVersions[] = {
    {"XP.2", TFileVersion::XP2}, {"XP.3", TFileVersion::XP3}, {"XP.4", TFileVersion::XP4},
    {"XP.5", TFileVersion::XP5}, {"XP.6", TFileVersion::XP6}, {"XP.7", TFileVersion::XP7},
    {"XP.8", TFileVersion::XP8}, {"XP.9", TFileVersion::XP9}, {"XP.a", TFileVersion::XPa},
    {"XP.e", TFileVersion::XPe}, {"XP.h", TFileVersion::XPh}, {"XP.i", TFileVersion::XPi},
    {"XP.j", TFileVersion::XPj},
};
}  // namespace

TFileVersion ParseFileVersion(const QString& text) {
    for (const auto& v : kVersions)
        if (text == QLatin1String(v.name)) return v.version;
    return TFileVersion::Unknown;
}

QString FileVersionName(TFileVersion version) {
    for (const auto& v : kVersions)
        if (v.version == version) return QString::fromLatin1(v.name);
    return {};
}

}  // namespace faroven
