#pragma once

#include <QString>
#include <QtGlobal>

// What a transfer that has run for so long, and has done that much of the whole (0 to 1), will still take, in
// words. Empty while that can't be told.
QString TimeLeft(qint64 elapsedMs, double done);
