#pragma once

#include "widgets/Controls.h"
#include "widgets/PageScale.h"

#include <QFont>
#include <QRect>
#include <QSize>
#include <QString>
#include <optional>
#include <vector>

namespace ztv {

// The boxes of the two values that a technician reads from afar, the distance and the output. On a large page
// they are larger than the page's scale alone makes them, as far as nothing else is in their way.
class LargeReadings {
public:
    // Of a page of that size.
    LargeReadings(const PageScale &scale, const QSize &page) : scale_(scale), page_(page) {}

    // Returns true if the page is large enough.
    bool AreShown() const;

    // Returns the place of a member of TextParam in its frame; none if it isn't such a value.
    std::optional<QRect> PlaceOf(int index) const;

    // Returns the space for the texts of that value.
    std::optional<Controls::Fit> FitOf(int index, const QString &longest) const;

    // Returns the largest font in which the texts fit.
    QFont FontFor(const QFont &pageFont, const std::vector<Controls::Fit> &texts) const;

    // Returns the right edge, in the group of the chart, beyond which the distance's frame doesn't follow its
    // line: the legend is there.
    int RightmostEdge() const;

private:
    PageScale scale_;
    QSize page_;
};

} // namespace ztv
