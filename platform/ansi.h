// 8-bit text as the files hold it: Windows-1252. Characters outside that code
// page become '?'. Lengths and the "mod 256" rules of the file formats apply to
// these bytes.
#pragma once

#include <QByteArray>
#include <QString>

namespace faroven {

QByteArray ToAnsi(const QString& text);
QString FromAnsi(const QByteArray& bytes);
QString FromAnsi(const char* bytes, int length);

}  // namespace faroven
