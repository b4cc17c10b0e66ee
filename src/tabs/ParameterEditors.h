#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <QStringList>
#include <cstdint>

namespace ztv {

// Chooses the editors for the values of the Advanced list.
namespace ParameterEditors {

enum class Kind { None, OutputDialog, Text, Choice };

Kind KindOf(const ClassZentrova &zentrova, std::int16_t tag);

// The drop-down list of a parameter with Kind::Choice.
struct Choice {
    QStringList texts;
    std::int32_t start = 0; // the index that is selected at first

    bool CanOpen() const { return start >= 0 && start < texts.size(); }
};

// Returns the drop-down list of the parameter in row `row`, counted from 0. Throws a Fault (subscript) if the
// unit has no text for one of the values.
Choice ChoiceOf(const ClassZentrova &zentrova, std::int16_t tag, int row);

// Explains to the user why the list can't open.
QString WhyItCannotOpen(const ClassZentrova &zentrova, std::int16_t tag, int row);

// Returns a row's tool tip about its drop-down list; empty if that opens on the parameter's own value or if
// the row has none.
QString NoteOf(const ClassZentrova &zentrova, std::int16_t tag, int row);

} // namespace ParameterEditors

} // namespace ztv
