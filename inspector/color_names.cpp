#include "inspector/color_names.h"

#include <QPainter>

namespace faroven {

const std::vector<TColorName>& StandardColorNames() {
    static const std::vector<TColorName> names = {
        {clBlack, "clBlack"},   {clMaroon, "clMaroon"}, {clGreen, "clGreen"},   {clOlive, "clOlive"},
        {clNavy, "clNavy"},     {clPurple, "clPurple"}, {clTeal, "clTeal"},     {clGray, "clGray"},
        {clSilver, "clSilver"}, {clRed, "clRed"},       {clLime, "clLime"},     {clYellow, "clYellow"},
        {clBlue, "clBlue"},     {clFuchsia, "clFuchsia"}, {clAqua, "clAqua"},   {clWhite, "clWhite"},
        {clMoneyGreen, "clMoneyGreen"}, {clSkyBlue, "clSkyBlue"}, {clCream, "clCream"},
        {clMedGray, "clMedGray"}, {clNone, "clNone"},   {clDefault, "clDefault"},
    };
    return names;
}

const std::vector<TColorName>& SystemColorNames() {
    static const std::vector<TColorName> names = {
        {clScrollBar, "clScrollBar"}, {clBackground, "clBackground"}, {clActiveCaption, "clActiveCaption"},
        {clInactiveCaption, "clInactiveCaption"}, {clMenu, "clMenu"}, {clWindow, "clWindow"},
        {clWindowFrame, "clWindowFrame"}, {clMenuText, "clMenuText"}, {clWindowText, "clWindowText"},
        {clCaptionText, "clCaptionText"}, {clActiveBorder, "clActiveBorder"},
        {clInactiveBorder, "clInactiveBorder"}, {clAppWorkSpace, "clAppWorkSpace"},
        {clHighlight, "clHighlight"}, {clHighlightText, "clHighlightText"}, {clBtnFace, "clBtnFace"},
        {clBtnShadow, "clBtnShadow"}, {clGrayText, "clGrayText"}, {clBtnText, "clBtnText"},
        {clInactiveCaptionText, "clInactiveCaptionText"}, {clBtnHighlight, "clBtnHighlight"},
        {cl3DDkShadow, "cl3DDkShadow"}, {cl3DLight, "cl3DLight"}, {clInfoText, "clInfoText"},
        {clInfoBk, "clInfoBk"}, {clHotLight, "clHotLight"},
        {clGradientActiveCaption, "clGradientActiveCaption"},
        {clGradientInactiveCaption, "clGradientInactiveCaption"}, {clMenuHighlight, "clMenuHighlight"},
        {clMenuBar, "clMenuBar"},
    };
    return names;
}

QString ColorToString(TColor color) {
    for (const auto* list : {&StandardColorNames(), &SystemColorNames()})
        for (const TColorName& n : *list)
            if (n.Color == color) return QLatin1String(n.Name);
    return QStringLiteral("$%1").arg(uint32_t(color), 8, 16, QLatin1Char('0')).toUpper();
}

TColor StringToColor(const QString& text, bool* ok) {
    const QString t = text.trimmed();
    bool good = false;
    TColor value = 0;
    for (const auto* list : {&StandardColorNames(), &SystemColorNames()})
        for (const TColorName& n : *list)
            if (t.compare(QLatin1String(n.Name), Qt::CaseInsensitive) == 0) {
                good = true;
                value = n.Color;
            }
    if (!good && !t.isEmpty()) {
        qulonglong v = 0;
        if (t.startsWith(QLatin1Char('$'))) v = t.mid(1).toULongLong(&good, 16);
        else if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) v = t.mid(2).toULongLong(&good, 16);
        else {
            const qlonglong d = t.toLongLong(&good);
            good = good && d >= INT32_MIN && d <= qlonglong(UINT32_MAX);
            v = qulonglong(d) & 0xFFFFFFFFu;
        }
        good = good && v <= 0xFFFFFFFFu;
        value = good ? TColor(uint32_t(v)) : 0;
    }
    if (ok) *ok = good;
    return value;
}

QPixmap ColorSwatch(TColor color, const QSize& size) {
    QPixmap swatch(size);
    swatch.fill(ToQColor(color));
    QPainter painter(&swatch);
    painter.setPen(QColor(64, 64, 64));
    painter.drawRect(0, 0, size.width() - 1, size.height() - 1);
    return swatch;
}

}  // namespace faroven
