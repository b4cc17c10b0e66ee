#pragma once

#include "model/ParamDefines.h"

#include <array>
#include <cstdint>

namespace ztv {

// The value boxes of the Basic tab: the parameter that each shows, and its place in twips.
namespace BasicFields {

struct Rectangle {
    int left;
    int top;
    int width;
    int height;
};

inline constexpr Rectangle FrameGraphGroup{0, 120, 9855, 4335};
inline constexpr Rectangle FrameGraph{1560, 1080, 6855, 2295};
inline constexpr Rectangle FrameOutputVoltage{8400, 1800, 1215, 735};
inline constexpr Rectangle FrameManOutput{360, 1800, 1215, 855};
inline constexpr Rectangle FrameActualDist{4440, 240, 1215, 855};
inline constexpr Rectangle LabelMode{120, 240, 4200, 240};

inline constexpr int BoxWidth = 735;
inline constexpr int BoxHeight = 285;
inline constexpr int LabelHeight = 240;

// The parent of a box and its label: the group of the chart, or a frame that moves with a value.
enum class Home { Group, ActualDist, OutputVoltage, ManOutput };

struct Field {
    std::int16_t tag;
    const char *caption;
    Home home;
    int boxLeft;
    int boxTop;
    Rectangle label; // a label of more than one line's height wraps
    bool displayOnly;
};

// Builds a field whose label is in the group and is centred on its box.
constexpr Field InGroup(std::int16_t tag, const char *caption, int boxLeft, int boxTop, int labelLeft,
                        int labelTop) {
    return {tag,     caption, Home::Group,
            boxLeft, boxTop,  {labelLeft, labelTop, 2 * (boxLeft - labelLeft) + BoxWidth, LabelHeight},
            false};
}

// Indexed like TextParam and LabelParam. In the moving frames a box is level with the line that joins the
// frame to its cursor, and a caption that the page's edge would cut off wraps.
inline constexpr std::array Table = {
    InGroup(ParamDefines::FarVoltage, "Far Voltage", 600, 1200, 480, 960),
    InGroup(ParamDefines::NearVoltage, "Near Voltage", 600, 3120, 480, 2880),
    InGroup(ParamDefines::MinRange, "Min Range", 1200, 3960, 1080, 3720),
    InGroup(ParamDefines::NearDistance, "Near Distance", 3120, 3960, 2880, 3720),
    InGroup(ParamDefines::FarDistance, "Far Distance", 6120, 3960, 6000, 3720),
    InGroup(ParamDefines::MaxRange, "Max Range", 8040, 3960, 7920, 3720),
    Field{
        ParamDefines::ActualDistance, "Actual Distance", Home::ActualDist, 240, 240, {0, 0, 1215, 240}, true},
    Field{ParamDefines::OutputVoltage,
          "Output Voltage",
          Home::OutputVoltage,
          240,
          345,
          {165, 0, 885, 345},
          true},
    Field{ParamDefines::ManualOutput, "Manual Output", Home::ManOutput, 105, 345, {30, 0, 885, 345}, false},
};

// Indices of the fields that the chart moves, hides, disables or enlarges.
inline constexpr int FarVoltage = 0;
inline constexpr int NearVoltage = 1;
inline constexpr int NearDistance = 3;
inline constexpr int ActualDistance = 6;
inline constexpr int OutputVoltage = 7;

} // namespace BasicFields

} // namespace ztv
