#include "bench/PlainLabels.h"

#include "bench/Measure.h"

#include <QCoreApplication>
#include <QGridLayout>

namespace ztv {

namespace {

constexpr int labels = 40;
constexpr int columns = 4;
constexpr int warmUp = 3;
constexpr int rounds = 15;
constexpr int pauseMs = 20;

} // namespace

PlainLabels::PlainLabels() : window_(std::make_unique<QWidget>()) {
    window_->resize(680, 596);
    auto *grid = new QGridLayout(window_.get());
    for (int number = 0; number < labels; ++number) {
        labels_.push_back(new QLabel);
        grid->addWidget(labels_.back(), number / columns, number % columns);
    }
}

double PlainLabels::ProcessorMs() {
    return MedianOfChanges(Measure::ProcessorMs);
}

double PlainLabels::WallMs() {
    return MedianOfChanges(Measure::NowMs);
}

Peer PlainLabels::AsPeer(double value) {
    return {.name = Name(), .value = value};
}

QString PlainLabels::Name() {
    return QStringLiteral("%1 plain Qt labels").arg(labels);
}

void PlainLabels::Change() {
    ++changes_;
    for (QLabel *label : labels_) {
        label->setText(QString::number(10000 + changes_));
    }
    QCoreApplication::processEvents();
}

double PlainLabels::MedianOfChanges(double (*clock)()) {
    window_->show();
    std::vector<double> times;
    for (int round = 0; round < warmUp + rounds; ++round) {
        Measure::Idle(pauseMs);
        const double start = clock();
        Change();
        if (round >= warmUp) {
            times.push_back(clock() - start);
        }
    }
    window_->hide();
    return Measure::Median(times);
}

} // namespace ztv
