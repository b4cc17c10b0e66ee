#pragma once

#include "link/CommSettings.h"
#include "model/ValueState.h"

#include <QString>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// A cell of the status bar: one fact, in few letters.
struct StatusCell {
    // By worth: where there is no room for all, the last ones are hidden.
    enum class Kind {
        State,
        NotSaved,
        OutputForced,
        LineQuality,
        Address,
        Device,
        LineSetting,
        Sensor,
        Echo,
        File
    };
    enum class Tone { Plain, Dimmed, Good, Warning, Alarm };
    enum class Shape { None, Circle, Triangle, Bars, Square };

    Kind kind = Kind::State;
    Tone tone = Tone::Plain;
    Shape shape = Shape::None; // tells states apart without their colours
    QString text = {};
    QString spoken = {}; // the fact in words
    QString action = {}; // of a click
    QString widest = {}; // keeps room for this text, so that a number doesn't move the cells beside it

    bool operator==(const StatusCell &) const = default;
};

// The facts that the cells show.
struct StatusFacts {
    // As the last poll gave it.
    struct Sensor {
        std::int32_t serialNumber = 0;
        QString firmware;
        int echoStrength = 0; // percent
        bool echoIsReceived = true;
        bool outputIsForced = false; // doesn't follow the distance

        bool operator==(const Sensor &) const = default;
    };

    bool isOnline = false;
    ValueState state = ValueState::NeverRead;
    std::optional<int> tenthsBetweenPolls; // of a second
    std::optional<std::chrono::seconds> age;
    CommSettings comm;
    QString device;               // of comm.port
    std::optional<Sensor> sensor; // none before the first poll
    std::optional<int> lineQuality;
    std::size_t exchanges = 0; // that lineQuality is of
    std::size_t unsaved = 0;   // settings that the sensor forgets
    QString openFile;          // the settings file's name; empty for none
    bool fileChangesNeedSaving = false;

    bool operator==(const StatusFacts &) const = default;
};

// Returns the cells by worth.
std::vector<StatusCell> CellsOf(const StatusFacts &facts);

// Returns how many cells of these widths, from the first one on, fit into the room with that gap between
// them.
std::size_t CellsThatFit(const std::vector<int> &widths, int gap, int room);

// Returns such as "1 change not saved in the sensor"; empty for none.
QString UnsavedWords(std::size_t count);

} // namespace ztv
