#pragma once

#include <QString>
#include <QtGlobal>

// The time left, in words, of a transfer that has run for so long and done that fraction (0 to 1) of the
// whole. Empty while that can't be told.
QString TimeLeft(qint64 elapsedMs, double done);
