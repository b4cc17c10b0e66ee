#pragma once

#include "model/ClassZentrova.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <vector>

namespace ztv {

// A value that the command line gives to a parameter.
struct Assignment {
    std::int16_t tag = 0;
    QString text; // as typed; of a row that is shown as a text, the number of that text
};

// Returns the assignments of words such as "28=12.5" and "Clock Select=External", as far as the table alone
// can judge them. Throws a Failure: wrong use for a word that assigns nothing, an unknown or repeated
// parameter and a command; refused for a row that can only be read and for an unknown text.
std::vector<Assignment> AssignmentsOf(const QStringList &words, const ClassZentrova &zentrova);

} // namespace ztv
