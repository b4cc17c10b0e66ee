#include "ui/Controls.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <cmath>

namespace Controls {

namespace {

constexpr int smallestLegiblePixels = 8;
constexpr double legibleContrast = 4.5;

double Luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double Contrast(const QColor &one, const QColor &other) {
    const double a = Luminance(one);
    const double b = Luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor Between(const QColor &from, const QColor &to, double part) {
    const auto mix = [part](double a, double b) { return static_cast<float>(a + (b - a) * part); };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()));
}

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
    return spoken.remove(u'&');
}

QFont FittingFont(QFont font, const std::vector<Fit> &fits) {
    int pixels = QFontInfo(font).pixelSize();
    for (const Fit &fit : fits) {
        while (pixels > smallestLegiblePixels && QFontMetrics(font).horizontalAdvance(fit.text) > fit.width) {
            font.setPixelSize(--pixels);
        }
    }
    return font;
}

QColor LegibleDisabledText(const QPalette &palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor base = palette.color(QPalette::Active, QPalette::Base);
    QColor colour = palette.color(QPalette::Disabled, QPalette::Text);
    constexpr int steps = 20;
    for (int step = 1; step <= steps && Contrast(colour, base) < legibleContrast; ++step) {
        colour = Between(palette.color(QPalette::Disabled, QPalette::Text), text, 1.0 * step / steps);
    }
    return colour;
}

} // namespace Controls
