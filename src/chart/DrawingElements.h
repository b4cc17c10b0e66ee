#pragma once

#include <QString>
#include <optional>
#include <string_view>

namespace ztv {

// The elements of the Basic tab's picture. All coordinates are twips within the parent, in single precision.
namespace Drawing {

// The controls and lines by name. The name of an array is its first member; the other members follow it.
enum class ControlId {
    FrameGraphGroup,
    FrameGraph,
    FrameOutputVoltage,
    FrameManOutput,
    FrameActualDist,
    FrameRange,
    FrameTransducer,
    FrameZentrova,
    FrameTarget,
    LabelMode,
    Label2,
    Label3,
    LabelTarget,
    LabelRelayDist,
    LabelRelays,
    LabelEcho,
    LabelNoEcho,
    LabelDiameter,
    TextParam,
    LabelParam = TextParam + 9,
    LampRelay = LabelParam + 9,
    MarkRelay = LampRelay + 2,
    PicRelay = MarkRelay + 4,
};

enum class LineId {
    Line0V,
    LineLinearSlope,
    Line10V,
    LineNearDistExt,
    LineFarDistExt = LineNearDistExt + 2,
    LineMinRange = LineFarDistExt + 2,
    LineMaxRange,
    LineDistExt,
    LineVoltExt = LineDistExt + 2,
    LineManual = LineVoltExt + 2,
    ZentrovaLine,
    Line1,
    Line2,
    LineRelay,
};

// Returns the id of the array's member `index`.
template <typename Id>
constexpr Id Member(Id array, int index) {
    return static_cast<Id>(static_cast<int>(array) + index);
}

enum class Colour { Text, Blue, Green, Red, Olive, Amber, Gray, Dimmed };
enum class LineStyle { Solid, Dot, Dash, DashDot };
enum class Outline { Rectangle, Circle };
enum class Figure { None, Lamp, Warning };

struct Name {
    std::string_view text;
    int index = -1; // in its array; -1: not in an array

    bool operator==(const Name &) const = default;
};

// Returns the name as text: "TextParam(3)".
inline QString ToString(const Name &name) {
    const QString text = QString::fromLatin1(name.text.data(), static_cast<qsizetype>(name.text.size()));
    return name.index < 0 ? text : QStringLiteral("%1(%2)").arg(text).arg(name.index);
}

struct Line {
    Name name;
    ControlId parent = {};
    float x1 = 0;
    float y1 = 0;
    float x2 = 0;
    float y2 = 0;
    Colour colour = Colour::Text;
    LineStyle style = LineStyle::Solid;
    int width = 1; // pixels
    bool visible = true;
    bool measured = false; // shows a value that the sensor measures

    bool operator==(const Line &) const = default;
};

// A filled outline that never changes.
struct Shape {
    Name name;
    ControlId parent = {};
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    Outline outline = {};
    Colour fill = {};
    bool measured = false;
};

// A frame, label, text box, lamp, mark or relay marker. Its widget takes its place, appearance and texts from
// here.
struct Control {
    Name name;
    std::optional<ControlId> parent; // none: the page itself
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;
    bool visible = true;
    bool enabled = true;
    bool border = false;
    bool held = false; // by the user: nothing else moves it
    QString caption = {};
    QString toolTip = {};
    Colour colour = Colour::Text;
    Figure figure = Figure::None;
    bool lit = false;      // a lamp: filled
    bool measured = false; // shows a value that the sensor measures

    bool operator==(const Control &) const = default;
};

struct Point {
    float x = 0;
    float y = 0;
};

} // namespace Drawing

} // namespace ztv
