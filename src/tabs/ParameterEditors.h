#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <QStringList>
#include <cstdint>

// How the values of the Advanced list are edited.
namespace ParameterEditors {

enum class Kind { None, OutputDialog, Text, Choice };

Kind KindOf(const ClassZentrova &zentrova, std::int16_t tag);

// The drop-down list of a parameter with Kind::Choice.
struct Choice {
    QStringList texts;
    std::int32_t start = 0; // the index that it opens on

    bool CanOpen() const { return start >= 0 && start < texts.size(); }
};

// That of the parameter in the list's row `row`, counted from 0. Fault (subscript) when its unit has no text
// for one of its values.
Choice ChoiceOf(const ClassZentrova &zentrova, std::int16_t tag, int row);

// Explains to the user why the list can't open.
QString WhyItCannotOpen(const ClassZentrova &zentrova, std::int16_t tag, int row);

// The tool tip of a row about its drop-down list; empty where that opens on the parameter's own value, or
// where there is none.
QString NoteOf(const ClassZentrova &zentrova, std::int16_t tag, int row);

} // namespace ParameterEditors
