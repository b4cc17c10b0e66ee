#pragma once

#include <QString>
#include <map>
#include <set>
#include <vector>

namespace ztv {

// The same measurement of somebody else's work.
struct Peer {
    QString name;
    double value = 0;
};

struct Figure {
    QString name;
    double value = 0;
    QString unit;
    double limit = 0; // of the value; with `against`, of the value as a multiple of that peer's
    std::vector<Peer> peers;
    QString against = {}; // the peer that it is judged by: the pace of the machine tells on both alike
};

// Prints each figure as it comes, one line each, and remembers which passed their limits. A figure that is
// measured more than once needs to keep its limit once: what else the machine does can only add to it. Where
// the peer that a figure is judged by isn't installed, the figure is printed and not judged.
class Figures {
public:
    void Add(const Figure &figure);

    // Each figure as a row of a Markdown table: the best of its values, with what it was judged as, the limit
    // and the peers of that run, and the worst, which says how much the machine adds.
    QString Rows() const;
    static QString Heads();

    // The lines of the figures past their limits, by name.
    const std::map<QString, QString> &Passed() const { return passed_; }

private:
    std::vector<Figure> figures_; // the best of each
    std::map<QString, double> worst_;
    std::set<QString> kept_;
    std::map<QString, QString> passed_;
};

} // namespace ztv
