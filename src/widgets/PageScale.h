#pragma once

#include <QFont>
#include <QRect>
#include <QSize>

namespace ztv {

// The factor by which a page is larger or smaller than in the smallest form: converts between twips and
// device-independent pixels, both ways. At factor 1, 15 twips are a pixel.
class PageScale {
public:
    static constexpr int TwipsPerPixel = 15; // at factor 1
    static constexpr double Least = 0.7;     // texts would be illegible below
    static constexpr double Most = 3;

    // The page's size in the smallest form, in pixels: factor 1.
    static constexpr QSize LeastPage{630, 389};

    // Of factor 1.
    PageScale() = default;

    // Clamps the factor.
    explicit PageScale(double factor);

    // Returns the largest scale at which all of a page fits into `page` pixels.
    static PageScale Fitting(const QSize &page);

    double Factor() const { return factor_; }

    double ToPixels(double twips) const { return twips * factor_ / TwipsPerPixel; }
    double ToTwips(double pixels) const { return pixels * TwipsPerPixel / factor_; }

    // Converts a length in twips to whole pixels.
    int Rounded(double twips) const;

    // Converts a rectangle from twips. Rounds its edges, so that neighbours meet.
    QRect FromTwips(double left, double top, double width, double height) const;

    // Returns a length in pixels that is `pixels` at factor 1.
    int Pixels(double pixels) const;
    QSize Pixels(const QSize &pixels) const { return {Pixels(pixels.width()), Pixels(pixels.height())}; }

    // Returns the font in the size of this scale. At factor 1 that is the font itself.
    QFont Font(QFont font) const;

    // Returns the smallest size of a text, in pixels. It is smaller below factor 1, where a screen of little
    // room has more pixels of the device for it.
    int LeastLegible() const;

    // Returns the top left corner at which a page's content is centred in `page` pixels.
    QPoint Corner(const QSize &page) const;

    bool operator==(const PageScale &) const = default;

private:
    double factor_ = 1;
};

} // namespace ztv
