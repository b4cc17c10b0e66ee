#include "widgets/PageScale.h"

#include "widgets/Controls.h"

#include <QFontInfo>
#include <algorithm>
#include <cmath>

namespace ztv {

PageScale::PageScale(double factor) : factor_(std::clamp(factor, Least, Most)) {}

PageScale PageScale::Fitting(const QSize &page) {
    return PageScale(std::min(static_cast<double>(page.width()) / LeastPage.width(),
                              static_cast<double>(page.height()) / LeastPage.height()));
}

int PageScale::Rounded(double twips) const {
    return static_cast<int>(std::lround(ToPixels(twips)));
}

QRect PageScale::FromTwips(double left, double top, double width, double height) const {
    const QPoint topLeft(Rounded(left), Rounded(top));
    return {topLeft, QSize(Rounded(left + width) - topLeft.x(), Rounded(top + height) - topLeft.y())};
}

int PageScale::Pixels(double pixels) const {
    return static_cast<int>(std::lround(pixels * factor_));
}

QFont PageScale::Font(QFont font) const {
    const int before = QFontInfo(font).pixelSize();
    const int pixels = Pixels(before);
    if (pixels != before) {
        font.setPixelSize(pixels);
    }
    return font;
}

int PageScale::LeastLegible() const {
    return std::min(Pixels(Controls::LeastLegible), Controls::LeastLegible);
}

QPoint PageScale::Corner(const QSize &page) const {
    const QSize content = Pixels(LeastPage);
    return {std::max(page.width() - content.width(), 0) / 2,
            std::max(page.height() - content.height(), 0) / 2};
}

} // namespace ztv
