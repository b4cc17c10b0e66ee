#include "widgets/Controls.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <cmath>

namespace ztv {

namespace Controls {

namespace {

constexpr int smallestLegiblePixels = 8;

int ToPixels(double twips) {
    return static_cast<int>(std::lround(twips / TwipsPerPixel));
}

} // namespace

QRect FromTwips(double left, double top, double width, double height) {
    const QPoint topLeft(ToPixels(left), ToPixels(top));
    return {topLeft, QSize(ToPixels(left + width) - topLeft.x(), ToPixels(top + height) - topLeft.y())};
}

QString Member(const char *array, int index) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(array)).arg(index);
}

QString SpokenCaption(const QString &caption) {
    QString spoken = caption;
    return spoken.remove(u'&').remove(u'<').remove(u'>').trimmed();
}

QFont FittingFont(QFont font, const std::vector<Fit> &places) {
    int pixels = QFontInfo(font).pixelSize();
    for (const Fit &fit : places) {
        const auto fits = [&] {
            const QFontMetrics metrics(font);
            return metrics.horizontalAdvance(fit.text) <= fit.width && metrics.height() <= fit.height;
        };
        while (pixels > smallestLegiblePixels && !fits()) {
            font.setPixelSize(--pixels);
        }
    }
    return font;
}

} // namespace Controls

} // namespace ztv
