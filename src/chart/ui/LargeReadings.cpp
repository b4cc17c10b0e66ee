#include "chart/ui/LargeReadings.h"

#include "chart/BasicFields.h"

#include <QFontMetrics>
#include <algorithm>
#include <array>

namespace ztv {

namespace {

constexpr double leastFactor = 1.1;

// Twips. A box is as wide as its frame, as far as the page reaches, and so high that it stays clear of what
// is below it.
struct Box {
    int index;
    BasicFields::Rectangle frame;
    BasicFields::Rectangle place;
};

constexpr int height = 300;
constexpr std::array boxes = {
    Box{BasicFields::ActualDistance,
        BasicFields::FrameActualDist,
        {15, 240, BasicFields::FrameActualDist.width - 30, height}},
    Box{BasicFields::OutputVoltage,
        BasicFields::FrameOutputVoltage,
        {120, 345, BasicFields::FrameOutputVoltage.width - 135, height}},
};
constexpr int legendLeft = 8640;
constexpr int legendGap = 30;

// Pixels at any factor.
constexpr int besideText = 6;
constexpr int aroundDigits = 10; // above and below them

const Box *BoxOf(int index) {
    const auto *found = std::ranges::find(boxes, index, &Box::index);
    return found == boxes.end() ? nullptr : found;
}

} // namespace

bool LargeReadings::AreShown() const {
    return scale_.Factor() >= leastFactor;
}

std::optional<QRect> LargeReadings::PlaceOf(int index) const {
    const Box *box = BoxOf(index);
    if (box == nullptr || !AreShown()) {
        return std::nullopt;
    }
    // The frames lie in the group of the chart, whose left edge is the drawing's.
    const double pageRight = scale_.ToTwips(page_.width() - scale_.Corner(page_).x());
    const double most = pageRight - box->frame.left - box->place.left;
    const double width = box->index == BasicFields::OutputVoltage
                             ? std::min(static_cast<double>(box->place.width), most)
                             : box->place.width;
    return scale_.FromTwips(box->place.left, box->place.top, width, box->place.height);
}

std::optional<Controls::Fit> LargeReadings::FitOf(int index, const QString &longest) const {
    const std::optional<QRect> place = PlaceOf(index);
    if (!place) {
        return std::nullopt;
    }
    return Controls::Fit{.text = longest, .width = place->width() - besideText};
}

// The digits alone have to fit into the height: no value has a letter that goes below the line.
QFont LargeReadings::FontFor(const QFont &pageFont, const std::vector<Controls::Fit> &texts) const {
    const int boxHeight = scale_.Rounded(height);
    QFont font = pageFont;
    font.setPixelSize(boxHeight);
    const int digits = std::max(QFontMetrics(font).capHeight(), 1);
    font.setPixelSize(boxHeight * (boxHeight - aroundDigits) / digits);
    return Controls::FittingFont(font, texts);
}

int LargeReadings::RightmostEdge() const {
    return scale_.Rounded(legendLeft - legendGap);
}

} // namespace ztv
