#pragma once

#include <QString>
#include <map>
#include <set>
#include <vector>

namespace ztv {

// The same measurement of another program.
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
    QString against = {}; // the peer to compare with: the machine's speed affects both alike
};

// Prints each figure as it is added, one line each, and remembers which exceeded their limits. A figure that
// is measured several times must keep its limit once, because other load can only make it worse. A figure
// whose peer isn't installed is printed but not judged.
class Figures {
public:
    void Add(const Figure &figure);

    // Each figure as a row of a Markdown table: its best value with the judged number, the limit and the
    // peers of that run; and its worst value, which shows the machine's noise.
    QString Rows() const;
    static QString Heads();

    // The printed lines of the figures that exceeded their limits, by name.
    const std::map<QString, QString> &Passed() const { return passed_; }

private:
    std::vector<Figure> figures_; // the best of each
    std::map<QString, double> worst_;
    std::set<QString> kept_;
    std::map<QString, QString> passed_;
};

} // namespace ztv
