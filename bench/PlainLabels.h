#pragma once

#include "bench/Figures.h"

#include <QLabel>
#include <QWidget>
#include <memory>
#include <vector>

namespace ztv {

// A peer for what has none: a plain window of the main form's size whose labels all change and are painted.
// Measured in the same moment it tells the pace of the machine.
class PlainLabels {
public:
    PlainLabels();

    // Processor time and time of a clock for one change of all labels: the median of several, with a pause in
    // front of each, since a processor that has slept is slower.
    double ProcessorMs();
    double WallMs();

    // The peer of a figure.
    static Peer AsPeer(double value);
    static QString Name();

private:
    double MedianOfChanges(double (*clock)());
    void Change();

    std::unique_ptr<QWidget> window_;
    std::vector<QLabel *> labels_;
    int changes_ = 0;
};

} // namespace ztv
