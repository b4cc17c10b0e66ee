#include "bench/Figures.h"

#include <QStringList>
#include <algorithm>
#include <cstdio>
#include <optional>

namespace ztv {

namespace {

// Rounds to three significant digits.
QString Text(double value) {
    int decimals = 3;
    for (double bound = 1; decimals > 0 && value >= bound; bound *= 10) {
        --decimals;
    }
    return QString::number(value, 'f', decimals);
}

const Peer *JudgedBy(const Figure &figure) {
    const auto found = std::find_if(figure.peers.begin(), figure.peers.end(),
                                    [&figure](const Peer &peer) { return peer.name == figure.against; });
    return found == figure.peers.end() ? nullptr : &*found;
}

// The number to compare with the limit; empty if the peer to compare with is missing.
std::optional<double> Judged(const Figure &figure) {
    if (figure.against.isEmpty()) {
        return figure.value;
    }
    const Peer *peer = JudgedBy(figure);
    return peer != nullptr && peer->value > 0 ? std::optional(figure.value / peer->value) : std::nullopt;
}

QString JudgementOf(const Figure &figure) {
    const std::optional<double> judged = Judged(figure);
    if (figure.against.isEmpty()) {
        return QStringLiteral("as it is");
    }
    return judged ? QStringLiteral("%1 times %2").arg(Text(*judged), figure.against)
                  : QStringLiteral("not judged");
}

QString LineOf(const Figure &figure) {
    QString line = QStringLiteral("%1: %2 %3, %4, limit %5")
                       .arg(figure.name, Text(figure.value), figure.unit, JudgementOf(figure),
                            QString::number(figure.limit));
    for (const Peer &peer : figure.peers) {
        line += QStringLiteral(", peer %1 %2").arg(peer.name, Text(peer.value));
    }
    return line;
}

} // namespace

QString Figures::Heads() {
    return QStringLiteral(
        "| What | Best | Worst | Judged | Limit | Peers in the best run |\n|---|---|---|---|---|---|\n");
}

QString Figures::Rows() const {
    QString rows;
    for (const Figure &figure : figures_) {
        QStringList peers;
        for (const Peer &peer : figure.peers) {
            peers.append(QStringLiteral("%1 %2").arg(peer.name, Text(peer.value)));
        }
        rows +=
            QStringLiteral("| %1 | %2 %3 | %4 | %5 | %6 | %7 |\n")
                .arg(figure.name, Text(figure.value), figure.unit, Text(worst_.at(figure.name)),
                     JudgementOf(figure), QString::number(figure.limit), peers.join(QStringLiteral(", ")));
    }
    return rows;
}

void Figures::Add(const Figure &figure) {
    const auto same = std::find_if(figures_.begin(), figures_.end(),
                                   [&figure](const Figure &other) { return other.name == figure.name; });
    if (same == figures_.end()) {
        figures_.push_back(figure);
    } else if (Judged(figure).value_or(figure.value) < Judged(*same).value_or(same->value)) {
        *same = figure;
    }
    double &worst = worst_.try_emplace(figure.name, figure.value).first->second;
    worst = std::max(worst, figure.value);
    const QString line = LineOf(figure);
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
    const std::optional<double> judged = Judged(figure);
    if (!judged || *judged <= figure.limit) {
        kept_.insert(figure.name);
        passed_.erase(figure.name);
    } else if (!kept_.contains(figure.name)) {
        passed_.insert_or_assign(figure.name, line);
    }
}

} // namespace ztv
