#include "bench/Figures.h"

#include <QStringList>
#include <algorithm>
#include <cstdio>

namespace {

// Three digits that count.
QString Text(double value) {
    int decimals = 3;
    for (double bound = 1; decimals > 0 && value >= bound; bound *= 10) {
        --decimals;
    }
    return QString::number(value, 'f', decimals);
}

QString LineOf(const Figure &figure) {
    QString line = QStringLiteral("%1: %2 %3, limit %4")
                       .arg(figure.name, Text(figure.value), figure.unit, QString::number(figure.limit));
    for (const Peer &peer : figure.peers) {
        line += QStringLiteral(", peer %1 %2").arg(peer.name, Text(peer.value));
    }
    return line;
}

} // namespace

QString Figures::Rows() const {
    QString rows;
    for (const Figure &figure : figures_) {
        QStringList peers;
        for (const Peer &peer : figure.peers) {
            peers.append(QStringLiteral("%1 %2").arg(peer.name, Text(peer.value)));
        }
        rows += QStringLiteral("| %1 | %2 %3 | %4 | %5 | %6 |\n")
                    .arg(figure.name, Text(figure.value), figure.unit, Text(worst_.at(figure.name)),
                         QString::number(figure.limit), peers.join(QStringLiteral(", ")));
    }
    return rows;
}

void Figures::Add(const Figure &figure) {
    const auto same = std::find_if(figures_.begin(), figures_.end(),
                                   [&figure](const Figure &other) { return other.name == figure.name; });
    if (same == figures_.end()) {
        figures_.push_back(figure);
    } else if (figure.value < same->value) {
        *same = figure;
    }
    double &worst = worst_.try_emplace(figure.name, figure.value).first->second;
    worst = std::max(worst, figure.value);
    const QString line = LineOf(figure);
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
    if (figure.value <= figure.limit) {
        kept_.insert(figure.name);
        passed_.erase(figure.name);
    } else if (!kept_.contains(figure.name)) {
        passed_.insert_or_assign(figure.name, line);
    }
}
