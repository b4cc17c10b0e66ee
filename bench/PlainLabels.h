#pragma once

#include "bench/Figures.h"

#include <QLabel>
#include <QWidget>
#include <memory>
#include <vector>

namespace ztv {

// The peer of figures that have no other: a plain window of the main form's size, all of whose labels change
// and are painted. Measured at the same moment, it shows how fast the machine is.
class PlainLabels {
public:
    PlainLabels();

    // Processor time and clock time of one change of all labels: the median of several. Each follows a pause,
    // because a processor that has slept is slower.
    double ProcessorMs();
    double WallMs();

    // Wraps a time of the labels as the peer of a figure.
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
