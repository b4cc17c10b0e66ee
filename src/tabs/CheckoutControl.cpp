#include "tabs/CheckoutControl.h"

#include "model/CheckedAt.h"
#include "model/ParamDefines.h"

#include <QScopeGuard>

namespace ztv {

namespace {

constexpr int lastOption = static_cast<int>(CheckoutOptions::AnalogOut.size()) - 1;

} // namespace

CheckoutControl::CheckoutControl(ClassZentrova &zentrova, QObject *parent)
    : QObject(parent),
      zentrova_(zentrova) {}

int CheckoutControl::NextOption(int index) {
    return index < lastOption ? index + 1 : 0;
}

void CheckoutControl::SetAnalogOut(int index) {
    const bool isForced = index >= 0 && index < CheckoutOptions::FollowsDistance;
    Add(CheckoutOptions::AnalogOut[static_cast<std::size_t>(isForced ? index
                                                                     : CheckoutOptions::FollowsDistance)]);
}

void CheckoutControl::SetRange(int index) {
    Add(CheckedAt(CheckoutOptions::Range, index, "OptionRange"));
}

void CheckoutControl::ToggleRelay(int index) {
    Add({.tag = static_cast<std::int16_t>(ParamDefines::Relay1Output + index), .value = {}});
}

void CheckoutControl::ToggleClockOut() {
    Add({.tag = ParamDefines::ClockOut, .value = {}});
}

void CheckoutControl::Reinitialise() {
    Add({.tag = ParamDefines::ReinitCommand, .value = ParamDefines::FactoryDefaults});
}

void CheckoutControl::Add(const CheckoutOptions::Option &option) {
    Add({.tag = option.first.tag, .value = option.first.value});
    if (option.second) {
        Add({.tag = option.second->tag, .value = option.second->value});
    }
}

void CheckoutControl::Add(Step step) {
    // One queued call writes all steps that are added until it runs.
    if (steps_.empty() && !busy_) {
        QMetaObject::invokeMethod(this, &CheckoutControl::Finish, Qt::QueuedConnection);
    }
    steps_.push_back(step);
}

void CheckoutControl::Finish() {
    if (busy_) {
        return;
    }
    busy_ = true;
    const auto done = qScopeGuard([this] {
        steps_.clear(); // empty, except after a fault
        busy_ = false;
    });
    while (!steps_.empty()) {
        const Step step = steps_.front();
        steps_.pop_front();
        Do(step);
    }
    Q_EMIT Finished();
}

// Reads the value of a toggle only now, so that a second click reverts the first.
void CheckoutControl::Do(const Step &step) {
    zentrova_.ParamValue(step.tag, step.value.value_or(zentrova_.ParamValue(step.tag) == 0 ? 1 : 0));
}

} // namespace ztv
