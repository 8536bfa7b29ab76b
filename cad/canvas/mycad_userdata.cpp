// TMyCAD: the canvas's user data as a flat string list, the form in which a
// form designer stores it.
#include "cad/canvas/mycad.h"

namespace faroven {

QStringList TMyCAD::userDataPairs() const {
    QStringList pairs;
    pairs.reserve(2 * m_userData.GetCount());
    for (const TUserDataRecord& record : m_userData.Records()) pairs << record.Key << record.Value;
    return pairs;
}

void TMyCAD::setUserDataPairs(const QStringList& pairs) {
    m_userData.ClearAll();
    for (qsizetype i = 0; i < pairs.size(); i += 2)
        m_userData.AddKeyandValue(pairs[i], i + 1 < pairs.size() ? pairs[i + 1] : QString());
}

}  // namespace faroven
