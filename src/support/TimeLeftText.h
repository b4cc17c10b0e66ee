#pragma once

#include <QString>

// The time that something still takes, in words: seconds, rounded up, with minutes where there are some.
QString TimeLeftText(double milliseconds);
