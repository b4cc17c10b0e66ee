#include "tabs/CheckoutControl.h"

#include "model/CheckedAt.h"
#include "model/ParamDefines.h"

namespace ztv {

namespace {

constexpr int lastOption = static_cast<int>(CheckoutOptions::AnalogOut.size()) - 1;

} // namespace

int CheckoutControl::NextOption(int index) {
    return index < lastOption ? index + 1 : 0;
}

void CheckoutControl::SetAnalogOut(int index) {
    const bool isForced = index >= 0 && index < CheckoutOptions::FollowsDistance;
    Write(CheckoutOptions::AnalogOut[static_cast<std::size_t>(isForced ? index
                                                                       : CheckoutOptions::FollowsDistance)]);
}

void CheckoutControl::SetRange(int index) {
    Write(CheckedAt(CheckoutOptions::Range, index, "OptionRange"));
}

void CheckoutControl::ToggleRelay(int index) {
    Toggle(static_cast<std::int16_t>(ParamDefines::Relay1Output + index));
}

void CheckoutControl::ToggleClockOut() {
    Toggle(ParamDefines::ClockOut);
}

void CheckoutControl::Reinitialise() {
    zentrova_.WriteEach(ParamDefines::ReinitCommand, ParamDefines::FactoryDefaults);
}

void CheckoutControl::Write(const CheckoutOptions::Option &option) {
    zentrova_.WriteEach(option.first.tag, option.first.value);
    if (option.second) {
        zentrova_.WriteEach(option.second->tag, option.second->value);
    }
}

void CheckoutControl::Toggle(std::int16_t tag) {
    zentrova_.WriteEach(tag, zentrova_.ParamValue(tag) == 0 ? 1 : 0);
}

} // namespace ztv
