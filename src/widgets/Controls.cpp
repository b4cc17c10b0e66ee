#include "widgets/Controls.h"

#include "widgets/PageScale.h"

#include <QFontInfo>
#include <QFontMetrics>

namespace ztv {

namespace Controls {

QRect FromTwips(double left, double top, double width, double height) {
    return PageScale().FromTwips(left, top, width, height);
}

QString Member(const char *array, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(array)).arg(index);
}

QString SpokenCaption(const QString &caption) {
    QString spoken = caption;
    return spoken.remove(u'&').remove(u'<').remove(u'>').trimmed();
}

QFont FittingFont(QFont font, const std::vector<Fit> &places, int smallest) {
    int pixels = QFontInfo(font).pixelSize();
    for (const Fit &fit : places) {
        const auto fits = [&] {
            const QFontMetrics metrics(font);
            return metrics.horizontalAdvance(fit.text) <= fit.width && metrics.height() <= fit.height;
        };
        while (pixels > smallest && !fits()) {
            font.setPixelSize(--pixels);
        }
    }
    return font;
}

} // namespace Controls

} // namespace ztv
